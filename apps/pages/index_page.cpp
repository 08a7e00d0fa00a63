#include "apps/pages/index_page.h"

#include "apps/display/aircraft_columns.h"
#include "apps/pages/explanations.h"
#include "apps/pages/html.h"
#include "apps/pages/style_sheets.h"
#include "apps/pages/time_text.h"
#include "apps/pages/track_map.h"

#include <algorithm>
#include <string_view>

namespace tolvarin::ondrel::client {

namespace {

// Units of the two pictures of the map. The style sheet shows one of them.
constexpr double wideMap = 1200;
constexpr double wideMapHeight = 580;
constexpr double narrowMap = 420;
constexpr double narrowMapHeight = 520;

std::string legend() {
    std::string items;
    for (const AltitudeBand& band : altitudeBands()) {
        items += element("li", band.style, htmlText(band.label));
    }
    return element("figcaption", element("ul", "legend", items)) + "\n";
}

std::string map(const IndexContents& contents) {
    const auto hasPosition = [](const TrackedAircraft& aircraft) {
        return aircraft.position.has_value();
    };
    if (std::none_of(contents.aircraft.begin(), contents.aircraft.end(), hasPosition)) {
        return element("p", "quiet", "No aircraft has a position.") + "\n";
    }
    const auto picture = [&contents](std::string_view style, double width, double height) {
        constexpr std::string_view name = "Map of the aircraft and their tracks";
        return TrackMap(contents.aircraft, contents.history, contents.showing, width, height)
            .svg(style, name);
    };
    return element("figure", "picture",
                   "\n" + picture("wide", wideMap, wideMapHeight) +
                       picture("narrow", narrowMap, narrowMapHeight) + legend()) +
           "\n";
}

std::string tableHead(const std::vector<AircraftColumn>& columns) {
    std::string cells;
    for (const AircraftColumn& column : columns) {
        std::string text = explained(column.name, column.key);
        if (!column.unit.empty()) {
            text += " " + element("small", htmlText(column.unit));
        }
        cells += headCell("col", column.alignment == Alignment::Right ? "number" : "", text);
    }
    return element("thead", element("tr", cells)) + "\n";
}

std::string tableCell(const AircraftColumn& column, const TrackedAircraft& aircraft,
                      const Showing& showing) {
    const auto cell = column.cell(aircraft, showing);
    std::string style = column.alignment == Alignment::Right ? "number" : std::string(column.key);
    if (!cell) {
        return element("td", style + " quiet", dash);
    }
    style += cell->isOld ? " old" : "";
    const std::string& text = cell->value.text;
    if (column.key == "address") {
        return headCell("row", style, link(pageName(aircraft.icaoAddress()), text));
    }
    if (const std::string_view meaning = emergencyOf(aircraft);
        column.key == "squawk" && !meaning.empty()) {
        return element("td", style, htmlText(text) + " " + element("small", htmlText(meaning)));
    }
    if (column.key == "mops_version" && !aircraft.mopsVersionConfirmed()) {
        return element("td", style, unconfirmedVersion(text));
    }
    return element("td", style, htmlText(text));
}

/// The squawk says the emergency, so its column is left out.
std::vector<AircraftColumn> shownColumns(const IndexContents& contents) {
    auto columns = columnsFor(contents.aircraft, contents.showing);
    columns.erase(
        std::remove_if(columns.begin(), columns.end(),
                       [](const AircraftColumn& column) { return column.key == "emergency"; }),
        columns.end());
    return columns;
}

std::string table(const IndexContents& contents) {
    const auto columns = shownColumns(contents);
    std::string rows = "\n";
    for (const TrackedAircraft& aircraft : contents.aircraft) {
        std::string cells;
        for (const AircraftColumn& column : columns) {
            cells += tableCell(column, aircraft, contents.showing);
        }
        rows += element("tr", !emergencyOf(aircraft).empty() ? "alarm" : "", cells) + "\n";
    }
    // The table can be wider than the screen: the keyboard moves it once it has the focus.
    return "<div class=\"table\" role=\"region\" aria-label=\"Table of aircraft\" "
           "tabindex=\"0\">\n" +
           element("table", "aircraft", "\n" + tableHead(columns) + element("tbody", rows)) +
           "\n</div>\n";
}

/// Nothing if all feeds are connected.
std::string lostFeeds(const Showing& showing) {
    if (showing.lostFeeds == 0) {
        return "";
    }
    const std::string text = showing.lostFeeds == 1
                                 ? "1 feed is not connected."
                                 : std::to_string(showing.lostFeeds) + " feeds are not connected.";
    return element("p", "lost", text) + "\n";
}

} // namespace

Page indexPage(const IndexContents& contents) {
    const std::string summary = std::to_string(contents.aircraft.size()) + " aircraft in " +
                                contents.recording + ", as of " +
                                dateAndTime(contents.showing.timeMs) + ". " + greyIsOld();
    return {"Aircraft", std::string(commonStyle) + std::string(mapStyle) + std::string(indexStyle),
            element("h1", "Aircraft") + "\n" + element("p", "quiet", htmlText(summary)) + "\n" +
                lostFeeds(contents.showing) + map(contents) + table(contents)};
}

} // namespace tolvarin::ondrel::client
