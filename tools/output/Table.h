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

/// Collects rows and prints them with aligned columns below a bold heading. Cells are made printable. On a terminal
/// the widest columns are shortened until a row fits; elsewhere nothing is cut.
class Table {
public:
    struct Column {
        std::string heading;
        bool alignRight = false;
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
    std::vector<std::size_t> Widths(int available) const;
    void PrintRow(Output& output, const std::vector<Cell>& row, const std::vector<std::size_t>& widths) const;

    std::vector<Column> m_columns;
    std::vector<std::vector<Cell>> m_rows;
};

}  // namespace tools
