#include "apps/pages/aircraft_page.h"

#include "apps/common/text.h"
#include "apps/display/aircraft_data.h"
#include "apps/pages/html.h"
#include "apps/pages/style_sheets.h"

#include <cstddef>
#include <string_view>
#include <vector>

namespace tolvarin::ondrel::client {

namespace {

/// "2023-11-14 22:13:20.250 UTC". The time of a counter stays in seconds.
std::string dateAndTime(u64 milliseconds) {
    std::string text = timeText(milliseconds);
    if (const std::size_t separator = text.find('T'); separator != std::string::npos) {
        text.replace(separator, 1, " ");
        text.replace(text.size() - 1, 1, " UTC");
    }
    return text;
}

/// Without the date if it is the date of `newestMs`.
std::string timeOfDay(u64 milliseconds, u64 newestMs) {
    const std::string text = dateAndTime(milliseconds);
    const std::string newest = dateAndTime(newestMs);
    const std::size_t separator = text.find(' ');
    const bool sameDay =
        separator != std::string::npos && text.compare(0, separator, newest, 0, separator) == 0;
    return sameDay ? text.substr(separator + 1, text.find(' ', separator + 1) - separator - 1)
                   : text;
}

std::string timeCell(std::string_view style, u64 milliseconds, u64 newestMs) {
    const std::string styles = "time " + std::string(style);
    return milliseconds > 0 ? element("td", styles, htmlText(timeOfDay(milliseconds, newestMs)))
                            : element("td", styles + " quiet", dash);
}

std::string valueCell(const AircraftDatum& datum) {
    if (!datum.known()) {
        return element("td", "value quiet", dash);
    }
    std::string text = htmlText(datum.value.text);
    if (!datum.unit.empty()) {
        text += " " + element("small", htmlText(datum.unit));
    }
    return datum.valid ? element("td", "value", text)
                       : element("td", "value quiet", text + " (not valid)");
}

std::string dataRow(const AircraftDatum& datum, bool alarming, u64 newestMs) {
    return element("tr", alarming ? "alarm" : "",
                   element("td", htmlText(datum.label)) + valueCell(datum) +
                       timeCell("update", datum.lastUpdate, newestMs) +
                       (datum.lastChange ? timeCell("change", *datum.lastChange, newestMs)
                                         : element("td", "time change", ""))) +
           "\n";
}

/// A section with a table; `heads` and `rows` are HTML.
std::string section(std::string_view title, std::string_view heads, const std::string& rows) {
    return element("section",
                   "\n" + element("h2", htmlText(title)) + "\n" +
                       element("table", "\n" + element("thead", element("tr", heads)) + "\n" +
                                            element("tbody", "\n" + rows) + "\n") +
                       "\n") +
           "\n";
}

std::string dataSections(const TrackedAircraft& aircraft, const Showing& showing) {
    constexpr std::string_view heads =
        "<th>Item</th><th>Value</th><th>Last update</th><th>Last change</th>";
    const std::vector<AircraftDatum> data = dataOf(aircraft, showing);
    std::string sections;
    for (const std::string_view group : dataGroups) {
        std::string rows;
        for (const AircraftDatum& datum : data) {
            if (datum.group == group) {
                const bool alarming = datum.key == "squawk" && !emergencyOf(aircraft).empty();
                rows += dataRow(datum, alarming, showing.timeMs);
            }
        }
        sections += section(group, heads, rows);
    }
    return sections;
}

std::string countRow(const std::string& kind, u32 count) {
    return element("tr", element("td", htmlText(kind)) +
                             element("td", "value", htmlText(std::to_string(count)))) +
           "\n";
}

std::string countSection(const TrackedAircraft& aircraft) {
    std::string rows = countRow("All", aircraft.statisticDfMsgCount());
    for (const auto& counts : {countsByFormat(aircraft), countsByType(aircraft)}) {
        for (const auto& [kind, count] : counts) {
            rows += countRow(kind, count);
        }
    }
    return section("Messages", "<th>Kind</th><th>Count</th>", rows);
}

} // namespace

std::string aircraftPage(const TrackedAircraft& aircraft, const Showing& showing) {
    const std::string address = hex24(aircraft.icaoAddr());
    const auto callsign = callsignOf(aircraft);
    const std::string heading =
        callsign ? htmlText(*callsign) + " " + element("small", "address", address) : address;
    const std::string summary = "Track number " + std::to_string(aircraft.trackId()) +
                                ", last heard " + dateAndTime(aircraft.lastUpdate()) + ", " +
                                secondsText(ageOf(aircraft.lastUpdate(), showing)) +
                                " s before the newest reply of all";
    return htmlPage("Aircraft " + address, std::string(commonStyle) + std::string(aircraftStyle),
                    element("p", "back", link(indexName, "All aircraft")) + "\n" +
                        element("h1", heading) + "\n" + element("p", "quiet", htmlText(summary)) +
                        "\n" +
                        element("div", "groups",
                                "\n" + dataSections(aircraft, showing) + countSection(aircraft)) +
                        "\n");
}

} // namespace tolvarin::ondrel::client
