#pragma once

#include "apps/display/aircraft_columns.h"
#include "apps/terminal/text_style.h"

#include <string>
#include <vector>

namespace tolvarin::ondrel::client {

struct TableCell {
    std::string text;
    bool isOld = false;    ///< gets a mark, and is dim with colour
    bool isUrgent = false; ///< is red with colour
};

/// A column of text with one cell for each row.
struct TableColumn {
    std::string name;              ///< in the line on columns that are left out
    std::vector<std::string> head; ///< its lines; columns of one table may have different numbers
    Alignment alignment;
    int rank; ///< as that of an AircraftColumn
    std::vector<TableCell> cells;
};

/// The heads and the rows in whole lines. Columns leave by their rank until the lines fit into the
/// width; those of the lowest rank stay. Lines below say what the mark means, if there is one, and
/// which columns have left. There is at least one column, and all have as many cells.
std::string tableText(std::vector<TableColumn> columns, const TextStyle& style);

} // namespace tolvarin::ondrel::client
