#pragma once

#include <iosfwd>
#include <string>
#include <vector>

namespace Tinkra::CommandLine {

/// Rows of text under headings, each column as wide as its widest cell, nothing cut off. Cells are made
/// printable as they are added.
class Table {
public:
    explicit Table(std::vector<std::string> headings);

    /// `cells` has as many entries as there are headings.
    void add(const std::vector<std::string>& cells);

    bool isEmpty() const { return m_rows.size() == 1; }

    void print(std::ostream& out) const;

private:
    std::vector<std::vector<std::string>> m_rows; ///< the first holds the headings
};

}
