#include "apps/pages/index_page.h"

#include "apps/common/text.h"
#include "apps/display/aircraft_columns.h"
#include "apps/pages/html_text.h"
#include "apps/pages/style_sheet.h"
#include "apps/pages/track_map.h"

#include <algorithm>
#include <string_view>

namespace tolvarin::ondrel::client {

namespace {

// The style sheet shows one of the two.
constexpr double wideMap = 1200;
constexpr double wideMapHeight = 580;
constexpr double narrowMap = 420;
constexpr double narrowMapHeight = 520;

std::string element(std::string_view name, std::string_view style, std::string_view content) {
    std::string text = "<" + std::string(name);
    if (!style.empty()) {
        text += " class=\"" + std::string(style) + "\"";
    }
    return text + ">" + std::string(content) + "</" + std::string(name) + ">";
}

std::string head(const std::string& title) {
    return "<!DOCTYPE html>\n<html lang=\"en\">\n<head>\n<meta charset=\"utf-8\">\n"
           "<meta name=\"viewport\" content=\"width=device-width, initial-scale=1\">\n" +
           element("title", "", htmlText(title)) + "\n" +
           element("style", "", "\n" + styleSheet()) + "\n</head>\n";
}

std::string legend() {
    std::string items;
    for (const AltitudeBand& band : altitudeBands()) {
        items += element("li", band.style, htmlText(band.label));
    }
    return element("figcaption", "", element("ul", "legend", items)) + "\n";
}

std::string map(const IndexContents& contents) {
    const auto hasPosition = [](const ADSBTarget& aircraft) {
        return placeOf(aircraft).has_value();
    };
    if (std::none_of(contents.aircraft.begin(), contents.aircraft.end(), hasPosition)) {
        return element("p", "quiet", "No aircraft has told its position.") + "\n";
    }
    TrackMap wide(contents.aircraft, contents.history, wideMap, wideMapHeight);
    TrackMap narrow(contents.aircraft, contents.history, narrowMap, narrowMapHeight);
    return element("figure", "map", "\n" + wide.svg("wide") + narrow.svg("narrow") + legend()) +
           "\n";
}

std::string tableHead() {
    std::string cells;
    for (const AircraftColumn& column : aircraftColumns()) {
        std::string text = htmlText(column.head);
        if (!column.unit.empty()) {
            text += " " + element("small", "", htmlText(column.unit));
        }
        cells += element("th", column.alignment == Alignment::Right ? "number" : "", text);
    }
    return element("thead", "", element("tr", "", cells)) + "\n";
}

std::string tableCell(const AircraftColumn& column, const ADSBTarget& aircraft, u64 nowMs) {
    const auto cell = column.cell(aircraft, nowMs);
    std::string style = column.alignment == Alignment::Right ? "number" : std::string(column.key);
    if (!cell) {
        return element("td", style + " quiet", "&ndash;");
    }
    std::string text = htmlText(cell->text);
    if (column.key == "address") {
        text = "<a href=\"" + htmlText(pageName(aircraft.icaoAddr())) + "\">" + text + "</a>";
    }
    return element("td", style, text);
}

std::string table(const IndexContents& contents) {
    std::string rows = "\n";
    for (const ADSBTarget& aircraft : contents.aircraft) {
        std::string cells;
        for (const AircraftColumn& column : aircraftColumns()) {
            cells += tableCell(column, aircraft, contents.nowMs);
        }
        rows += element("tr", isAlarming(aircraft) ? "alarm" : "", cells) + "\n";
    }
    return element(
               "div", "table",
               "\n" +
                   element("table", "aircraft", "\n" + tableHead() + element("tbody", "", rows)) +
                   "\n") +
           "\n";
}

} // namespace

std::string indexPage(const IndexContents& contents) {
    const std::string summary = std::to_string(contents.aircraft.size()) + " aircraft in " +
                                contents.recording + ", as of " + timeText(contents.nowMs);
    return head("Aircraft") + "<body class=\"index\">\n" + element("h1", "", "Aircraft") + "\n" +
           element("p", "quiet", htmlText(summary)) + "\n" + map(contents) + table(contents) +
           "</body>\n</html>\n";
}

} // namespace tolvarin::ondrel::client
