#include "TinkraSystemLinux/ValidUtf8.h"

#include <gtest/gtest.h>

namespace Tinkra::System {
namespace {

TEST(ValidUtf8, KeepsValidTextAsItIs)
{
    EXPECT_EQ(validUtf8(""), "");
    EXPECT_EQ(validUtf8("Caf\xC3\xA9 \xF0\x9F\x98\x80 \x01\x7F"), "Caf\xC3\xA9 \xF0\x9F\x98\x80 \x01\x7F");
}

TEST(ValidUtf8, ReplacesBytesThatAreNotUtf8)
{
    EXPECT_EQ(validUtf8("Caf\xE9!"), "Caf\xEF\xBF\xBD!");
    EXPECT_EQ(validUtf8("\xC0\xAF"), "\xEF\xBF\xBD\xEF\xBF\xBD");
    EXPECT_EQ(validUtf8("cut \xF0\x9F\x98"), "cut \xEF\xBF\xBD");
}

TEST(ValidUtf8, ReplacesSurrogatesAndWhatLiesBeyondUnicode)
{
    EXPECT_EQ(validUtf8("\xED\xA0\x80"), "\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBD");
    EXPECT_EQ(validUtf8("\xF4\x90\x80\x80").find('\xF4'), std::string::npos);
}

TEST(ValidUtf8, ReplacesNul)
{
    EXPECT_EQ(validUtf8(std::string_view("a\0b", 3)),
        "a\xEF\xBF\xBD"
        "b");
}

}
}
