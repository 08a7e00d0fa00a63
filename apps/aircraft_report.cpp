#include "apps/aircraft_report.h"

#include "apps/aircraft_columns.h"
#include "apps/aircraft_data.h"
#include "apps/common/text.h"

#include <cstddef>
#include <initializer_list>

namespace tolvarin::ondrel::client {

namespace {

constexpr std::size_t itemWidth = 23;  // "Transponder capability"
constexpr std::size_t valueWidth = 11; // "-179.999999"
constexpr std::size_t unitWidth = 6;
constexpr std::size_t validWidth = 5;
constexpr std::size_t timeWidth = 24; // "2023-11-14T22:13:20.250Z"

std::string line(std::initializer_list<std::string> cells) {
    std::string text;
    for (const std::string& cell : cells) {
        text += text.empty() ? "" : columnGap;
        text += cell;
    }
    return text.erase(text.find_last_not_of(' ') + 1) + '\n';
}

std::string dataLine(std::string_view item, std::string_view value, std::string_view unit,
                     std::string_view valid, std::string_view update, std::string_view change) {
    return line({toTheLeft(item, itemWidth), toTheRight(value, valueWidth),
                 toTheLeft(unit, unitWidth), toTheLeft(valid, validWidth),
                 toTheLeft(update, timeWidth), std::string(change)});
}

std::string timeOrDash(u64 milliseconds) {
    return milliseconds > 0 ? timeText(milliseconds) : "-";
}

std::string dataLine(const AircraftDatum& datum) {
    return dataLine(datum.label, datum.known() ? datum.text : "-", datum.known() ? datum.unit : "",
                    datum.valid ? "yes" : "no", timeOrDash(datum.lastUpdate),
                    datum.lastChange ? timeOrDash(*datum.lastChange) : "");
}

std::string countLine(const std::string& kind, u32 count) {
    return dataLine(kind, std::to_string(count), "", "", "", "");
}

std::string countLines(const ADSBTarget& aircraft) {
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

std::string aircraftReport(const ADSBTarget& aircraft, u64 newestMs) {
    std::string lines = "Aircraft " + hex24(aircraft.icaoAddr()) + ", track number " +
                        std::to_string(aircraft.trackId()) + ", last heard " +
                        timeText(aircraft.lastUpdate()) + ", " +
                        secondsText(ageOf(aircraft, newestMs)) + " s ago\n\n";
    lines += dataLine("Item", "Value", "", "Valid", "Last update", "Last change");
    for (const AircraftDatum& datum : dataOf(aircraft)) {
        lines += dataLine(datum);
    }
    return lines + '\n' + countLines(aircraft);
}

} // namespace tolvarin::ondrel::client
