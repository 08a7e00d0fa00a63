#include "apps/terminal/aircraft_text.h"

#include "apps/common/text.h"
#include "apps/display/aircraft_columns.h"
#include "apps/display/aircraft_data.h"

#include <algorithm>
#include <sstream>
#include <utility>

namespace tolvarin::ondrel::client {

namespace {

/// Each word of the name on a line of its own, and the unit below.
std::vector<std::string> headOf(const AircraftColumn& column) {
    std::vector<std::string> head;
    std::istringstream words{std::string(column.name)};
    for (std::string word; words >> word;) {
        head.push_back(word);
    }
    if (!column.unit.empty()) {
        head.emplace_back(column.unit);
    }
    return head;
}

TableColumn tableColumn(const AircraftColumn& column, const std::vector<TrackedAircraft>& aircraft,
                        const Showing& showing) {
    TableColumn texts = {
        std::string(column.name), headOf(column), column.alignment, column.rank, {}};
    for (const TrackedAircraft& one : aircraft) {
        const auto cell = column.cell(one, showing);
        texts.cells.push_back(
            {cell ? cell->value.text : "-", cell && cell->isOld, !emergencyOf(one).empty()});
    }
    return texts;
}

std::string timeOrDash(u64 milliseconds) {
    return milliseconds > 0 ? timeText(milliseconds) : "-";
}

/// The age of a datum in seconds.
std::string ageText(const AircraftDatum& datum, const Showing& showing) {
    const auto age = ageOf(datum.lastUpdate, showing);
    return datum.lastUpdate > 0 && age ? decimalText(static_cast<double>(*age) / 1000, 1) : "-";
}

/// The columns of a report, with a cell for each datum.
std::vector<TableColumn> reportColumns(const TrackedAircraft& aircraft, const Showing& showing) {
    constexpr Alignment left = Alignment::Left;
    constexpr Alignment right = Alignment::Right;
    TableColumn item = {"Item", {"Item"}, left, 0, {}};
    TableColumn value = {"Value", {"Value"}, right, 0, {}};
    TableColumn unit = {"Unit", {}, left, 1, {}};
    TableColumn age = {"Age", {"Age s"}, right, 2, {}};
    TableColumn valid = {"Valid", {"Valid"}, left, 3, {}};
    TableColumn update = {"Last update", {"Last update"}, left, 5, {}};
    TableColumn change = {"Last change", {"Last change"}, left, 4, {}};
    for (const AircraftDatum& datum : dataOf(aircraft, showing)) {
        const bool isUrgent = datum.key == "emergency" && datum.valid;
        item.cells.push_back({std::string(datum.label), false, isUrgent});
        value.cells.push_back(
            {datum.known() ? datum.value.text : "-", datum.isOld(showing), isUrgent});
        unit.cells.push_back({std::string(datum.known() ? datum.unit : "")});
        age.cells.push_back({ageText(datum, showing)});
        valid.cells.push_back({datum.valid ? "yes" : "no"});
        update.cells.push_back({timeOrDash(datum.lastUpdate)});
        change.cells.push_back({datum.lastChange ? timeOrDash(*datum.lastChange) : ""});
    }
    return {item, value, unit, valid, age, update, change};
}

/// The columns of the messages counted, without heads.
std::vector<TableColumn> countColumns(const TrackedAircraft& aircraft) {
    TableColumn kinds = {"", {}, Alignment::Left, 0, {}};
    TableColumn numbers = {"", {}, Alignment::Right, 0, {}};
    const auto add = [&](const std::string& kind, u32 count) {
        kinds.cells.push_back({kind});
        numbers.cells.push_back({std::to_string(count)});
    };
    add("Messages", aircraft.messages());
    for (const auto& counts : {countsByFormat(aircraft), countsByType(aircraft)}) {
        for (const auto& [kind, count] : counts) {
            add("  " + kind, count);
        }
    }
    return {kinds, numbers};
}

} // namespace

std::vector<TableColumn> aircraftTableColumns(const std::vector<TrackedAircraft>& aircraft,
                                              const Showing& showing) {
    std::vector<TableColumn> columns;
    for (const AircraftColumn& column : columnsFor(aircraft, showing)) {
        columns.push_back(tableColumn(column, aircraft, showing));
    }
    return columns;
}

std::string aircraftTable(const std::vector<TrackedAircraft>& aircraft, const Showing& showing,
                          const TextStyle& style) {
    return tableText(aircraftTableColumns(aircraft, showing), style);
}

std::vector<TextLine> aircraftReportLines(const TrackedAircraft& aircraft, const Showing& showing,
                                          std::size_t width) {
    const auto age = ageOf(aircraft.lastUpdate(), showing);
    const std::string title = "Aircraft " + hex24(aircraft.icaoAddress()) + ", track number " +
                              std::to_string(aircraft.trackId()) + ", last heard " +
                              timeText(aircraft.lastUpdate()) + ", " +
                              (age ? secondsText(*age) + " s ago" : "before the time went back");
    std::vector<TextLine> lines = wrappedLines(title, width);
    for (const auto& columns : {reportColumns(aircraft, showing), countColumns(aircraft)}) {
        lines.emplace_back();
        const std::vector<TextLine> table = wholeTable(columns, width);
        lines.insert(lines.end(), table.begin(), table.end());
    }
    return lines;
}

std::string aircraftReport(const TrackedAircraft& aircraft, const Showing& showing,
                           const TextStyle& style) {
    return linesText(aircraftReportLines(aircraft, showing, style.width), style.colour);
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
        return aircraftTable(aircraft, showing, _style);
    }
    const auto found =
        std::find_if(aircraft.begin(), aircraft.end(), [this](const TrackedAircraft& one) {
            return one.icaoAddress() == *_reportAddress;
        });
    return found != aircraft.end() ? aircraftReport(*found, showing, _style) : "";
}

void AircraftText::showKilled(const TrackedAircraft& aircraft, const Showing& showing) {
    const auto age = ageOf(aircraft.lastUpdate(), showing);
    _output << secondsText(showing.timeMs) << columnGap << hex24(aircraft.icaoAddress())
            << columnGap << callsignOf(aircraft).value_or("-") << columnGap << "killed, "
            << (age ? "silent for " + secondsText(*age) + " s" : "silent since the time went back")
            << '\n';
}

} // namespace tolvarin::ondrel::client
