#include "apps/pages/aircraft_page.h"

#include "apps/common/text.h"
#include "apps/display/aircraft_data.h"
#include "apps/pages/altitude_profile.h"
#include "apps/pages/explanations.h"
#include "apps/pages/html.h"
#include "apps/pages/style_sheets.h"
#include "apps/pages/time_text.h"
#include "apps/pages/track_map.h"

#include <string>
#include <string_view>
#include <vector>

namespace tolvarin::ondrel::client {

namespace {

// Units of the two forms of each picture. The style sheet shows one of them.
constexpr double wide = 640;
constexpr double narrow = 400;
constexpr double mapHeight = 380; // at most
constexpr double profileHeight = 300;

std::string agoCell(u64 milliseconds, const Showing& showing) {
    if (milliseconds == 0) {
        return element("td", "time", "");
    }
    return "<td class=\"time\"" + attribute("title", dateAndTime(milliseconds)) + ">" +
           agoText(ageOf(milliseconds, showing)) + "</td>";
}

/// Whether the page shows a datum beside another one.
bool standsBesideAnother(const AircraftDatum& datum) {
    return datum.key == "emergency" || datum.key == "mops_version_confirmed";
}

/// The tracker assumes a version before it receives one. Other data without a time were not told.
bool isShown(const AircraftDatum& datum) {
    return datum.lastUpdate > 0 || datum.key == "mops_version";
}

/// The distance is not received but worked out.
bool isMissing(const AircraftDatum& datum) {
    return !isShown(datum) && datum.key != "distance_nm";
}

bool isEmergency(const AircraftDatum& datum, const TrackedAircraft& aircraft) {
    return datum.key == "squawk" && !emergencyOf(aircraft).empty();
}

std::string valueText(const AircraftDatum& datum, const TrackedAircraft& aircraft) {
    if (datum.key == "mops_version" && !aircraft.mopsVersionConfirmed()) {
        return unconfirmedVersion(datum.value.text + "?");
    }
    std::string text = htmlText(datum.value.text);
    if (isEmergency(datum, aircraft)) {
        text += " " + htmlText(emergencyOf(aircraft));
    }
    if (!datum.unit.empty()) {
        text += " " + element("small", htmlText(datum.unit));
    }
    return datum.valid ? text : text + " (not valid)";
}

std::string dataRow(const AircraftDatum& datum, const TrackedAircraft& aircraft,
                    const Showing& showing) {
    const bool isGrey = !datum.valid || datum.isOld(showing);
    return element("tr", isEmergency(datum, aircraft) ? "alarm" : "",
                   headCell("row", "", explained(datum.label, datum.key)) +
                       element("td", isGrey ? "value old" : "value", valueText(datum, aircraft)) +
                       agoCell(datum.lastUpdate, showing) +
                       agoCell(datum.lastChange.value_or(0), showing)) +
           "\n";
}

/// A table; `heads` and `rows` are HTML.
std::string table(const std::string& heads, const std::string& rows) {
    return element("table", "\n" + element("thead", element("tr", heads)) + "\n" +
                                element("tbody", "\n" + rows) + "\n") +
           "\n";
}

std::string section(std::string_view title, const std::string& content) {
    return element("section", "\n" + element("h2", htmlText(title)) + "\n" + content) + "\n";
}

/// The data of a group that are known, and the names of the others.
std::string dataSection(std::string_view group, const std::vector<AircraftDatum>& data,
                        const TrackedAircraft& aircraft, const Showing& showing) {
    std::string rows;
    std::string missing;
    for (const AircraftDatum& datum : data) {
        if (datum.group != group || standsBesideAnother(datum)) {
            continue;
        }
        if (isShown(datum)) {
            rows += dataRow(datum, aircraft, showing);
        } else if (isMissing(datum)) {
            missing += (missing.empty() ? "" : ", ") + explained(datum.label, datum.key);
        }
    }
    const std::string heads = headCell("col", "", "Item") + headCell("col", "", "Value") +
                              headCell("col", "time", "Updated") +
                              headCell("col", "time", "Changed");
    return section(
        group,
        (rows.empty() ? "" : table(heads, rows)) +
            (missing.empty() ? "" : element("p", "quiet", "Not known: " + missing + ".") + "\n"));
}

std::string countSection(std::string_view title, const std::vector<MessageCount>& counts) {
    if (counts.empty()) {
        return "";
    }
    std::string rows;
    for (const auto& [kind, count] : counts) {
        rows += element("tr", headCell("row", "", htmlText(kind)) +
                                  element("td", htmlText(nameOfKind(kind))) +
                                  element("td", "number", std::to_string(count))) +
                "\n";
    }
    return section(title, table(headCell("col", "", "Kind") + headCell("col", "", "Name") +
                                    headCell("col", "number", "Count"),
                                rows));
}

std::string figure(const std::string& pictures, std::string_view caption) {
    return element("figure", "picture",
                   "\n" + pictures + element("figcaption", htmlText(caption)) + "\n") +
           "\n";
}

std::string pathFigure(const TrackedAircraft& aircraft, const Showing& showing,
                       const TrackHistory& history) {
    if (!aircraft.position) {
        return "";
    }
    const std::vector<PastPosition>& path = history.pathOf(aircraft.icaoAddress());
    const u64 last = aircraft.position->stampMs;
    const std::string caption = "Path, " + fromTo(path.empty() ? last : path.front().stampMs, last);
    const std::vector<TrackedAircraft> alone = {aircraft};
    const auto picture = [&](std::string_view style, double width) {
        return TrackMap(alone, history, showing, width, mapHeight).svg(style, caption);
    };
    return figure(picture("wide", wide) + picture("narrow", narrow), caption);
}

std::string profileFigure(const TrackedAircraft& aircraft, const TrackHistory& history) {
    const AltitudeProfile profile(aircraft, history);
    return profile.isEmpty() ? ""
                             : figure(profile.svg("wide", wide, profileHeight) +
                                          profile.svg("narrow", narrow, profileHeight),
                                      profile.caption());
}

std::string summary(const TrackedAircraft& aircraft, const Showing& showing) {
    return "Last heard " + agoText(ageOf(aircraft.lastUpdate(), showing)) + ". Ages count to " +
           dateAndTime(showing.timeMs) + ". " + greyIsOld() +
           " Messages: " + std::to_string(aircraft.messages()) +
           ". Track number: " + std::to_string(aircraft.trackId()) + ".";
}

} // namespace

Page aircraftPage(const TrackedAircraft& aircraft, const Showing& showing,
                  const TrackHistory& history, std::string_view links) {
    const std::string address = hex24(aircraft.icaoAddress());
    const auto callsign = callsignOf(aircraft);
    const std::string heading =
        callsign ? htmlText(*callsign) + " " + element("small", "address", address) : address;
    const std::vector<AircraftDatum> data = dataOf(aircraft, showing);
    std::string sections;
    for (const std::string_view group : dataGroups) {
        sections += dataSection(group, data, aircraft, showing);
    }
    sections += countSection("Messages by downlink format", countsByFormat(aircraft)) +
                countSection("Extended squitters by content", countsByType(aircraft));
    const std::string pictures =
        pathFigure(aircraft, showing, history) + profileFigure(aircraft, history);
    return {"Aircraft " + callsign.value_or("") + (callsign ? " " : "") + address,
            std::string(commonStyle) + std::string(mapStyle) + std::string(aircraftStyle),
            element("p", "back", link(indexName, "All aircraft") + std::string(links)) + "\n" +
                element("h1", heading) + "\n" +
                element("p", "quiet", htmlText(summary(aircraft, showing))) + "\n" +
                element("div", "pictures", "\n" + pictures) + "\n" +
                element("div", "groups", "\n" + sections) + "\n"};
}

} // namespace tolvarin::ondrel::client
