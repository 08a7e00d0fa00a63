#include "apps/terminal/text_table.h"

#include "apps/common/text.h"
#include "apps/display/showing.h"

#include <algorithm>
#include <cstddef>
#include <string_view>

namespace tolvarin::ondrel::client {

namespace {

/// Stands behind a cell, in the gap between two columns.
constexpr std::string_view oldMark = "*";

std::size_t widthOf(const TableColumn& column) {
    std::size_t width = 0;
    for (const std::string& line : column.head) {
        width = std::max(width, line.size());
    }
    for (const TableCell& cell : column.cells) {
        width = std::max(width, cell.text.size());
    }
    return width;
}

bool hasOld(const TableColumn& column) {
    return std::any_of(column.cells.begin(), column.cells.end(),
                       [](const TableCell& cell) { return cell.isOld; });
}

std::size_t lineWidth(const std::vector<TableColumn>& columns) {
    std::size_t width = hasOld(columns.back()) ? oldMark.size() : 0;
    for (const TableColumn& column : columns) {
        width += widthOf(column) + columnGap.size();
    }
    return width - columnGap.size();
}

/// Takes out columns until the others fit. Gives the names of those that left.
std::vector<std::string> takeOut(std::vector<TableColumn>& columns, std::size_t width) {
    const auto isLower = [](const TableColumn& one, const TableColumn& other) {
        return one.rank < other.rank;
    };
    const int lowest = std::min_element(columns.begin(), columns.end(), isLower)->rank;
    std::vector<std::string> left;
    while (lineWidth(columns) > width) {
        const int rank = std::max_element(columns.begin(), columns.end(), isLower)->rank;
        if (rank == lowest) {
            break;
        }
        const auto leaves = [rank](const TableColumn& column) { return column.rank == rank; };
        for (const TableColumn& column : columns) {
            if (leaves(column)) {
                left.push_back(column.name);
            }
        }
        columns.erase(std::remove_if(columns.begin(), columns.end(), leaves), columns.end());
    }
    return left;
}

/// The text of the cell with its mark and colour: dim, dim red, or bold red.
std::string shown(const TableCell& cell, bool colour) {
    std::string text = cell.text + std::string(cell.isOld ? oldMark : "");
    if (!colour || text.empty() || !(cell.isOld || cell.isUrgent)) {
        return text;
    }
    const std::string start = !cell.isUrgent ? "\033[2m" : cell.isOld ? "\033[2;31m" : "\033[1;31m";
    return start + text + "\033[0m";
}

/// One line of the table: the cells that `cellOf` gives for each column, without blanks at the end.
template <class CellOf>
std::string lineOf(const std::vector<TableColumn>& columns, const std::vector<std::size_t>& widths,
                   bool colour, const CellOf& cellOf) {
    std::string line;
    for (std::size_t i = 0; i < columns.size(); ++i) {
        const TableCell cell = cellOf(columns[i]);
        const std::size_t spare = widths[i] - cell.text.size();
        const bool right = columns[i].alignment == Alignment::Right;
        line.append(right ? spare : 0, ' ');
        line += shown(cell, colour);
        line.append((right ? 0 : spare) + columnGap.size() - (cell.isOld ? oldMark.size() : 0),
                    ' ');
    }
    return line.erase(line.find_last_not_of(' ') + 1) + '\n';
}

std::string linesBelow(const std::vector<TableColumn>& columns,
                       const std::vector<std::string>& left, std::size_t width) {
    std::string lines;
    if (std::any_of(columns.begin(), columns.end(), hasOld)) {
        lines += wrapped(std::string(oldMark) + " received more than " +
                             std::to_string(oldAfterMs / 1000) + " s ago",
                         width) +
                 '\n';
    }
    if (!left.empty()) {
        lines += wrapped("No room for " + listText(left, "and") +
                             "; a wider terminal, a pipe or --json shows more",
                         width) +
                 '\n';
    }
    return lines;
}

} // namespace

std::string tableText(std::vector<TableColumn> columns, const TextStyle& style) {
    const std::vector<std::string> left = takeOut(columns, style.width);
    std::vector<std::size_t> widths;
    std::size_t heads = 0;
    for (const TableColumn& column : columns) {
        widths.push_back(widthOf(column));
        heads = std::max(heads, column.head.size());
    }
    std::string table;
    for (std::size_t i = 0; i < heads; ++i) {
        table += lineOf(columns, widths, false, [i](const TableColumn& column) {
            return TableCell{i < column.head.size() ? column.head[i] : ""};
        });
    }
    for (std::size_t i = 0; i < columns.front().cells.size(); ++i) {
        table += lineOf(columns, widths, style.colour,
                        [i](const TableColumn& column) { return column.cells[i]; });
    }
    return table + linesBelow(columns, left, style.width);
}

} // namespace tolvarin::ondrel::client
