#include "apps/terminal/text_table.h"

#include "apps/common/text.h"
#include "apps/display/showing.h"

#include <algorithm>
#include <cstddef>
#include <iterator>
#include <sstream>
#include <string_view>
#include <utility>

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

/// Appends blanks, which have no look of their own.
void appendBlanks(TextLine& line, std::size_t count) {
    const bool joined =
        !line.empty() && !line.back().isDim && !line.back().isUrgent && !line.back().isChosen;
    if (joined) {
        line.back().text.append(count, ' ');
    } else if (count > 0) {
        line.push_back({std::string(count, ' ')});
    }
}

void dropBlanksAtTheEnd(TextLine& line) {
    while (!line.empty()) {
        std::string& text = line.back().text;
        text.erase(text.find_last_not_of(' ') + 1);
        if (!text.empty()) {
            break;
        }
        line.pop_back();
    }
}

/// One line of the table: the pieces that `pieceOf` gives for each column. A mark of one character
/// stands behind the width of its column, in the gap.
template <class PieceOf>
TextLine lineOf(const std::vector<TableColumn>& columns, const std::vector<std::size_t>& widths,
                const PieceOf& pieceOf) {
    TextLine line;
    std::size_t begin = 0;
    std::size_t end = 0;
    for (std::size_t i = 0; i < columns.size(); ++i) {
        const auto [piece, mark] = pieceOf(columns[i]);
        const bool right = columns[i].alignment == Alignment::Right;
        appendBlanks(line, begin + (right ? widths[i] + mark - piece.text.size() : 0) - end);
        end = begin + (right ? widths[i] + mark : piece.text.size());
        line.push_back(piece);
        begin += widths[i] + columnGap.size();
    }
    dropBlanksAtTheEnd(line);
    return line;
}

std::string lineText(const TextLine& line, bool colour) {
    std::string text;
    for (const TextPiece& piece : line) {
        if (!colour || piece.text.empty() || !(piece.isDim || piece.isUrgent)) {
            text += piece.text;
            continue;
        }
        text += !piece.isUrgent ? "\033[2m" : piece.isDim ? "\033[2;31m" : "\033[1;31m";
        text += piece.text;
        text += "\033[0m";
    }
    return text;
}

void append(std::vector<TextLine>& lines, std::vector<TextLine> more) {
    std::move(more.begin(), more.end(), std::back_inserter(lines));
}

} // namespace

std::string linesText(const std::vector<TextLine>& lines, bool colour) {
    std::string text;
    for (const TextLine& line : lines) {
        text += lineText(line, colour);
        text += '\n';
    }
    return text;
}

std::vector<TextLine> wrappedLines(std::string_view text, std::size_t width) {
    std::vector<TextLine> lines;
    std::istringstream broken(wrapped(text, width));
    for (std::string line; std::getline(broken, line);) {
        lines.push_back({{line}});
    }
    return lines;
}

TableLines tableLines(std::vector<TableColumn> columns, std::size_t width) {
    TableLines table;
    table.left = takeOut(columns, width);
    table.hasOld = std::any_of(columns.begin(), columns.end(), hasOld);
    std::vector<std::size_t> widths;
    std::size_t heads = 0;
    for (const TableColumn& column : columns) {
        widths.push_back(widthOf(column));
        heads = std::max(heads, column.head.size());
    }
    for (std::size_t i = 0; i < heads; ++i) {
        table.heads.push_back(lineOf(columns, widths, [i](const TableColumn& column) {
            const bool isThere = i < column.head.size();
            return std::pair(
                TextPiece{isThere ? column.head[i] : "", false, false, isThere && column.isChosen},
                std::size_t{0});
        }));
    }
    for (std::size_t i = 0; i < columns.front().cells.size(); ++i) {
        table.rows.push_back(lineOf(columns, widths, [i](const TableColumn& column) {
            const TableCell& cell = column.cells[i];
            const std::size_t mark = cell.isOld ? oldMark.size() : 0;
            return std::pair(TextPiece{cell.text + std::string(oldMark.substr(0, mark)), cell.isOld,
                                       cell.isUrgent, false},
                             mark);
        }));
    }
    return table;
}

std::string oldMarkText() {
    return std::string(oldMark) + " received more than " + std::to_string(oldAfterMs / 1000) +
           " s ago";
}

std::vector<TextLine> wholeTable(std::vector<TableColumn> columns, std::size_t width) {
    TableLines table = tableLines(std::move(columns), width);
    std::vector<TextLine> lines = std::move(table.heads);
    append(lines, std::move(table.rows));
    if (table.hasOld) {
        append(lines, wrappedLines(oldMarkText(), width));
    }
    if (!table.left.empty()) {
        append(lines, wrappedLines("No room for " + listText(table.left, "and") +
                                       "; a wider terminal, a pipe or --json shows more",
                                   width));
    }
    return lines;
}

std::string tableText(std::vector<TableColumn> columns, const TextStyle& style) {
    return linesText(wholeTable(std::move(columns), style.width), style.colour);
}

} // namespace tolvarin::ondrel::client
