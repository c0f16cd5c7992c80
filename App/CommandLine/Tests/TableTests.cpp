#include "Table.h"

#include <gtest/gtest.h>

#include <sstream>

namespace Tinkra::CommandLine {
namespace {

std::string printed(const Table& table)
{
    std::ostringstream out;
    table.print(out);
    return out.str();
}

TEST(Table, MakesEachColumnAsWideAsItsWidestCell)
{
    Table table({"A", "LONG", "LAST"});
    table.add({"first", "x", "end"});
    table.add({"1", "y", "z"});

    EXPECT_EQ(printed(table), "A      LONG  LAST\nfirst  x     end\n1      y     z\n");
}

TEST(Table, AlignsWideCharacters)
{
    Table table({"A", "B"});
    table.add({"\xE6\x97\xA5\xE6\x9C\xAC", "x"});
    table.add({"abcd", "y"});

    EXPECT_EQ(printed(table), "A     B\n\xE6\x97\xA5\xE6\x9C\xAC  x\nabcd  y\n");
}

TEST(Table, ACellCannotBreakItsRow)
{
    Table table({"A", "B"});
    table.add({"one\ntwo", "\x1B[2J"});

    EXPECT_EQ(printed(table), "A         B\none\\ntwo  \\u{1B}[2J\n");
}

}
}
