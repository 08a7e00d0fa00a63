#include "apps/aircraft_table.h"

#include "apps/aircraft_columns.h"
#include "apps/common/text.h"

#include <algorithm>
#include <cstddef>

namespace tolvarin::ondrel::client {

namespace {

/// A column as text: head, unit, and one entry for each aircraft, all of the same width.
std::vector<std::string> columnLines(const AircraftColumn& column,
                                     const std::vector<ADSBTarget>& aircraft, u64 newestMs) {
    std::vector<std::string> lines = {std::string(column.head), std::string(column.unit)};
    std::size_t width = std::max(column.head.size(), column.unit.size());
    for (const ADSBTarget& one : aircraft) {
        const auto cell = column.cell(one, newestMs);
        lines.push_back(cell ? cell->text : "-");
        width = std::max(width, lines.back().size());
    }
    for (std::string& line : lines) {
        line = column.toTheRight ? toTheRight(line, width) : toTheLeft(line, width);
    }
    return lines;
}

} // namespace

std::string aircraftTable(const std::vector<ADSBTarget>& aircraft, u64 newestMs) {
    std::vector<std::string> lines(aircraft.size() + 2);
    for (const AircraftColumn& column : aircraftColumns()) {
        const std::vector<std::string> added = columnLines(column, aircraft, newestMs);
        for (std::size_t i = 0; i < lines.size(); ++i) {
            lines[i] += lines[i].empty() ? "" : columnGap;
            lines[i] += added[i];
        }
    }
    std::string table;
    for (const std::string& line : lines) {
        table += line + '\n';
    }
    return table;
}

} // namespace tolvarin::ondrel::client
