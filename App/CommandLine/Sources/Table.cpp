#include "Table.h"

#include "PrintableText.h"

#include <algorithm>
#include <cassert>
#include <ostream>

namespace Tinkra::CommandLine {

Table::Table(std::vector<std::string> headings)
{
    m_rows.push_back(std::move(headings));
}

void Table::add(const std::vector<std::string>& cells)
{
    assert(cells.size() == m_rows.front().size());
    std::vector<std::string> row;
    row.reserve(cells.size());
    for (const auto& cell : cells)
        row.push_back(printable(cell));
    m_rows.push_back(std::move(row));
}

void Table::print(std::ostream& out) const
{
    std::vector<std::size_t> widths(m_rows.front().size());
    for (const auto& row : m_rows) {
        for (std::size_t column = 0; column < row.size(); ++column)
            widths[column] = std::max(widths[column], displayWidth(row[column]));
    }
    for (const auto& row : m_rows) {
        for (std::size_t column = 0; column + 1 < row.size(); ++column)
            out << row[column] << std::string(widths[column] - displayWidth(row[column]) + 2, ' ');
        out << row.back() << '\n';
    }
}

}
