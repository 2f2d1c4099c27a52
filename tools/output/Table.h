/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Table: rows with aligned columns
 */
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "output/Output.h"

namespace tools {

/// Collects rows and prints them with aligned columns below a bold heading. Cells are made printable.
///
/// On a terminal a row fits into its width: the names of key columns stay whole, where need be on a line of their own;
/// the last column is wrapped, and others are shortened. Elsewhere nothing is cut, each row is one line, and a cell
/// that is much longer than others stands out of its column instead of widening it.
class Table {
public:
    struct Column {
        std::string heading;
        bool alignRight = false;
        bool isKey = false;  ///< holds names that people type
    };
    struct Cell {
        Cell(std::string content, Style shown = Style::kPlain) : text(std::move(content)), style(shown) {}
        Cell(const char* content) : text(content) {}
        std::string text;
        Style style = Style::kPlain;
    };

    explicit Table(std::vector<Column> columns);

    void AddRow(std::vector<Cell> cells);
    bool Empty() const noexcept { return m_rows.empty(); }
    void PrintTo(Output& output) const;

private:
    std::vector<std::size_t> Widths(std::size_t available) const;
    void Narrow(std::vector<std::size_t>& widths, std::size_t available, bool keys) const;

    std::vector<Column> m_columns;
    std::vector<std::vector<Cell>> m_rows;
};

/// A column of names that people type.
inline Table::Column KeyColumn(std::string heading) {
    return {std::move(heading), false, true};
}

}  // namespace tools
