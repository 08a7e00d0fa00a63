#pragma once

#include "apps/display/aircraft_columns.h"
#include "apps/terminal/text_style.h"

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace tolvarin::ondrel::client {

/// Text of one look.
struct TextPiece {
    std::string text;
    bool isDim = false;
    bool isUrgent = false;
    bool isChosen = false; ///< shows only where the user can choose
};

/// The pieces of a line from left to right.
using TextLine = std::vector<TextPiece>;

/// The lines with their ends. With colour, escape sequences make pieces dim, dim red or bold red.
std::string linesText(const std::vector<TextLine>& lines, bool colour);

/// Plain text in lines of at most `width` characters.
std::vector<TextLine> wrappedLines(std::string_view text, std::size_t width);

struct TableCell {
    std::string text;
    bool isOld = false;    ///< gets a mark, and is dim
    bool isUrgent = false; ///< is red
};

/// A column of text with one cell for each row.
struct TableColumn {
    std::string name;              ///< in the line on columns that are left out
    std::vector<std::string> head; ///< its lines; columns of one table may have different numbers
    Alignment alignment;
    int rank; ///< as that of an AircraftColumn
    std::vector<TableCell> cells;
    bool isChosen = false; ///< marks the head
};

/// A table that is laid out.
struct TableLines {
    std::vector<TextLine> heads;
    std::vector<TextLine> rows;
    bool hasOld = false;           ///< whether some cell has the mark
    std::vector<std::string> left; ///< the names of the columns that found no room
};

/// Lays the table out. Columns leave by their rank until the lines fit into the width; those of the
/// lowest rank stay. There is at least one column, and all have as many cells.
TableLines tableLines(std::vector<TableColumn> columns, std::size_t width);

/// What the mark of old cells means, without the end of the line.
std::string oldMarkText();

/// The heads and the rows. Lines below say what the mark means, if there is one, and which columns
/// have left.
std::vector<TextLine> wholeTable(std::vector<TableColumn> columns, std::size_t width);

/// The same as text.
std::string tableText(std::vector<TableColumn> columns, const TextStyle& style);

} // namespace tolvarin::ondrel::client
