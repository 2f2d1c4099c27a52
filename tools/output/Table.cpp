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
constexpr std::size_t kNarrowest = 8;       // a shortened column keeps at least this much
constexpr std::size_t kWidestAligned = 40;  // without a terminal, longer cells don't widen their column
constexpr std::size_t kMostLines = 3;       // of a wrapped cell

/// Writes the lines of one row. Blanks are written only before text, so that no line ends in blanks.
class RowWriter {
public:
    RowWriter(Output& output, bool mayBreak) : m_output(output), m_mayBreak(mayBreak) {}

    /// Writes a cell at a column; on the next line, or behind what is there, when that reaches further.
    void Write(std::size_t column, const Table::Cell& cell) {
        if (cell.text.empty())
            return;
        if (m_end + kGap > column && m_end > 0) {
            if (m_mayBreak)
                EndLine();
            else
                column = std::max(column, m_end + kGap);
        }
        m_line.append(column - m_end, ' ');
        m_line += m_output.Styled(cell.style, cell.text);
        m_end = column + DisplayWidth(cell.text);
    }

    void EndLine() {
        m_output.Line(m_line);
        m_line.clear();
        m_end = 0;
    }

private:
    Output& m_output;
    bool m_mayBreak;
    std::string m_line;
    std::size_t m_end = 0;  // the column behind the last text
};

std::vector<std::string> LinesOf(const std::string& text, std::size_t width) {
    std::vector<std::string> lines;
    std::string_view left = text;
    while (!left.empty() && lines.size() < kMostLines) {
        const std::string wrapped = Wrapped(left, width, "");
        const std::size_t end = std::min(wrapped.find('\n'), wrapped.size());
        // What comes after the last line that is shown makes that one end in an ellipsis.
        const bool isLast = lines.size() + 1 == kMostLines;
        lines.push_back(Shortened(isLast ? left : left.substr(0, end), width));
        left.remove_prefix(std::min(end + 1, left.size()));
    }
    return lines;
}

}  // namespace

Table::Table(std::vector<Column> columns) : m_columns(std::move(columns)) {}

/// Adds a row; missing cells are empty, surplus ones are dropped.
void Table::AddRow(std::vector<Cell> cells) {
    cells.resize(m_columns.size(), Cell(""));
    for (Cell& cell : cells)
        cell.text = Printable(cell.text);
    m_rows.push_back(std::move(cells));
}

std::vector<std::size_t> Table::Widths(std::size_t available) const {
    std::vector<std::size_t> widths;
    for (std::size_t column = 0; column < m_columns.size(); ++column) {
        std::size_t width = DisplayWidth(m_columns[column].heading);
        for (const std::vector<Cell>& row : m_rows)
            if (const std::size_t one = DisplayWidth(row[column].text); available > 0 || one <= kWidestAligned)
                width = std::max(width, one);
        widths.push_back(width);
    }
    if (available > 0) {
        Narrow(widths, available, false);
        Narrow(widths, available, true);
    }
    return widths;
}

// Takes from the widest columns until a row fits.
void Table::Narrow(std::vector<std::size_t>& widths, std::size_t available, bool keys) const {
    const std::size_t gaps = kGap * (widths.size() - 1);
    while (std::accumulate(widths.begin(), widths.end(), gaps) > available) {
        std::size_t* widest = nullptr;
        for (std::size_t column = 0; column < widths.size(); ++column)
            if (m_columns[column].isKey == keys && (widest == nullptr || widths[column] > *widest))
                widest = &widths[column];
        if (widest == nullptr || *widest <= kNarrowest)
            return;
        --*widest;
    }
}

/// Prints the heading and the rows.
void Table::PrintTo(Output& output) const {
    const auto available = static_cast<std::size_t>(output.Width());
    const std::vector<std::size_t> widths = Widths(available);
    RowWriter writer(output, available > 0);
    const auto print = [&](const std::vector<Cell>& row) {
        std::size_t offset = 0;
        for (std::size_t column = 0; column < row.size(); offset += widths[column++] + kGap) {
            Cell cell = row[column];
            const std::size_t width = DisplayWidth(cell.text);
            const bool isTooWide = available > 0 && width > widths[column] && !m_columns[column].isKey;
            if (isTooWide && column + 1 == row.size()) {
                for (const std::string& line : LinesOf(cell.text, widths[column]))
                    writer.Write(offset, {line, cell.style});
                continue;
            }
            if (isTooWide)
                cell.text = Shortened(cell.text, widths[column]);
            const bool isRight = m_columns[column].alignRight && width < widths[column];
            writer.Write(isRight ? offset + widths[column] - width : offset, cell);
        }
        writer.EndLine();
    };
    std::vector<Cell> heading;
    for (const Column& column : m_columns)
        heading.emplace_back(column.heading, Style::kBold);
    print(heading);
    for (const std::vector<Cell>& row : m_rows)
        print(row);
}

}  // namespace tools
