/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Table: rows with aligned columns
 */
#include "output/Table.h"

#include <algorithm>
#include <numeric>

#include "output/Text.h"

namespace tools {

namespace {

constexpr std::size_t kGap = 2;
constexpr std::size_t kNarrowest = 8;  // a shortened column keeps at least this much

}  // namespace

Table::Table(std::vector<Column> columns) : m_columns(std::move(columns)) {}

/// Adds a row; missing cells are empty, surplus ones are dropped.
void Table::AddRow(std::vector<Cell> cells) {
    cells.resize(m_columns.size(), Cell(""));
    for (Cell& cell : cells)
        cell.text = Printable(cell.text);
    m_rows.push_back(std::move(cells));
}

std::vector<std::size_t> Table::Widths(int available) const {
    std::vector<std::size_t> widths;
    for (std::size_t column = 0; column < m_columns.size(); ++column) {
        std::size_t width = DisplayWidth(m_columns[column].heading);
        for (const std::vector<Cell>& row : m_rows)
            width = std::max(width, DisplayWidth(row[column].text));
        widths.push_back(width);
    }
    if (available <= 0)
        return widths;
    const std::size_t gaps = kGap * (widths.size() - 1);
    while (std::accumulate(widths.begin(), widths.end(), gaps) > static_cast<std::size_t>(available)) {
        std::size_t& widest = *std::max_element(widths.begin(), widths.end());
        if (widest <= kNarrowest)
            break;
        --widest;
    }
    return widths;
}

void Table::PrintRow(Output& output, const std::vector<Cell>& row, const std::vector<std::size_t>& widths) const {
    std::string line;
    std::string pending;  // blanks are written only before text, so no line ends in blanks
    for (std::size_t column = 0; column < row.size(); ++column) {
        const std::string text = Shortened(row[column].text, widths[column]);
        const std::string padding(widths[column] - std::min(widths[column], DisplayWidth(text)), ' ');
        if (m_columns[column].alignRight)
            pending += padding;
        if (!text.empty()) {
            line += pending + output.Styled(row[column].style, text);
            pending.clear();
        }
        if (!m_columns[column].alignRight)
            pending += padding;
        pending.append(kGap, ' ');
    }
    output.Line(line);
}

/// Prints the heading and the rows.
void Table::PrintTo(Output& output) const {
    const std::vector<std::size_t> widths = Widths(output.Width());
    std::vector<Cell> heading;
    for (const Column& column : m_columns)
        heading.emplace_back(column.heading, Style::kBold);
    PrintRow(output, heading, widths);
    for (const std::vector<Cell>& row : m_rows)
        PrintRow(output, row, widths);
}

}  // namespace tools
