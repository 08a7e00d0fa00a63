#include "apps/terminal/aircraft_text.h"

#include "apps/common/text.h"
#include "apps/display/aircraft_columns.h"
#include "apps/display/aircraft_data.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <string_view>

namespace tolvarin::ondrel::client {

namespace {

// The columns of a report. Each width fits the widest entry.
constexpr std::size_t itemWidth = 23;  // "Transponder capability"
constexpr std::size_t valueWidth = 11; // "-179.999999"
constexpr std::size_t unitWidth = 6;   // "ft/min"
constexpr std::size_t validWidth = 5;  // "Valid"
constexpr std::size_t timeWidth = 24;  // "2023-11-14T22:13:20.250Z"

std::string joined(const std::vector<std::string>& cells) {
    std::string line;
    for (const std::string& cell : cells) {
        line += line.empty() ? "" : columnGap;
        line += cell;
    }
    return line;
}

/// The two lines of the head: the first word of the name; the second one and the unit.
std::array<std::string, 2> headOf(const AircraftColumn& column) {
    const std::size_t blank = std::min(column.name.find(' '), column.name.size());
    std::string below(column.name.substr(std::min(blank + 1, column.name.size())));
    below += below.empty() || column.unit.empty() ? "" : " ";
    return {std::string(column.name.substr(0, blank)), below + std::string(column.unit)};
}

/// One column of a table: its head and one entry for each aircraft, all of the same width.
std::vector<std::string> columnLines(const AircraftColumn& column,
                                     const std::vector<TrackedAircraft>& aircraft,
                                     const Showing& showing) {
    const auto head = headOf(column);
    std::vector<std::string> lines(head.begin(), head.end());
    std::size_t width = std::max(head[0].size(), head[1].size());
    for (const TrackedAircraft& one : aircraft) {
        const auto cell = column.cell(one, showing);
        lines.push_back(cell ? cell->value.text : "-");
        width = std::max(width, lines.back().size());
    }
    const bool right = column.alignment == Alignment::Right;
    for (std::string& line : lines) {
        line = right ? toTheRight(line, width) : toTheLeft(line, width);
    }
    return lines;
}

/// One line of a report.
std::string reportLine(std::string_view item, std::string_view value, std::string_view unit,
                       std::string_view valid, std::string_view update, std::string_view change) {
    std::string line = joined({toTheLeft(item, itemWidth), toTheRight(value, valueWidth),
                               toTheLeft(unit, unitWidth), toTheLeft(valid, validWidth),
                               toTheLeft(update, timeWidth), std::string(change)});
    return line.erase(line.find_last_not_of(' ') + 1) + '\n';
}

std::string timeOrDash(u64 milliseconds) {
    return milliseconds > 0 ? timeText(milliseconds) : "-";
}

std::string datumLine(const AircraftDatum& datum) {
    return reportLine(datum.label, datum.known() ? datum.value.text : "-",
                      datum.known() ? datum.unit : "", datum.valid ? "yes" : "no",
                      timeOrDash(datum.lastUpdate),
                      datum.lastChange ? timeOrDash(*datum.lastChange) : "");
}

std::string countLine(const std::string& kind, u32 count) {
    return reportLine(kind, std::to_string(count), "", "", "", "");
}

std::string countLines(const TrackedAircraft& aircraft) {
    const u32 total = aircraft.statisticDfMsgCount();
    std::string lines = total > 0 ? countLine("Messages", total) : "";
    for (const auto& counts : {countsByFormat(aircraft), countsByType(aircraft)}) {
        for (const auto& [kind, count] : counts) {
            lines += countLine("  " + kind, count);
        }
    }
    return lines;
}

} // namespace

std::string aircraftTable(const std::vector<TrackedAircraft>& aircraft, const Showing& showing) {
    std::vector<std::vector<std::string>> lines(aircraft.size() + 2);
    for (const AircraftColumn& column : columnsFor(aircraft, showing)) {
        const std::vector<std::string> entries = columnLines(column, aircraft, showing);
        for (std::size_t i = 0; i < lines.size(); ++i) {
            lines[i].push_back(entries[i]);
        }
    }
    std::string table;
    for (const auto& cells : lines) {
        table += joined(cells) + '\n';
    }
    return table;
}

std::string aircraftReport(const TrackedAircraft& aircraft, const Showing& showing) {
    std::string lines = "Aircraft " + hex24(aircraft.icaoAddr()) + ", track number " +
                        std::to_string(aircraft.trackId()) + ", last heard " +
                        timeText(aircraft.lastUpdate()) + ", " +
                        secondsText(ageOf(aircraft.lastUpdate(), showing)) + " s ago\n\n";
    lines += reportLine("Item", "Value", "", "Valid", "Last update", "Last change");
    for (const AircraftDatum& datum : dataOf(aircraft, showing)) {
        lines += datumLine(datum);
    }
    return lines + '\n' + countLines(aircraft);
}

void AircraftText::show(const std::vector<TrackedAircraft>& aircraft, const Showing& showing) {
    if (_repeated) {
        _output << secondsText(showing.timeMs) << ": " << aircraft.size() << " aircraft\n";
    }
    _output << form(aircraft, showing) << (_repeated ? "\n" : "");
}

std::string AircraftText::form(const std::vector<TrackedAircraft>& aircraft,
                               const Showing& showing) const {
    if (!_reportAddress) {
        return aircraftTable(aircraft, showing);
    }
    const auto found =
        std::find_if(aircraft.begin(), aircraft.end(), [this](const TrackedAircraft& one) {
            return one.icaoAddr() == *_reportAddress;
        });
    return found != aircraft.end() ? aircraftReport(*found, showing) : "";
}

void AircraftText::showKilled(const TrackedAircraft& aircraft, const Showing& showing) {
    _output << joined({secondsText(showing.timeMs), hex24(aircraft.icaoAddr()),
                       callsignOf(aircraft).value_or("-"),
                       "killed, silent for " + secondsText(ageOf(aircraft.lastUpdate(), showing)) +
                           " s"})
            << '\n';
}

} // namespace tolvarin::ondrel::client
