#include "apps/terminal/aircraft_text.h"

#include "apps/tracked_lines.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <sstream>
#include <string>
#include <vector>

namespace tolvarin::ondrel::client {

namespace {

/// The three aircraft a minute later: one tells an emergency, what the others sent is old.
const TrackedLines& aMinuteLater() {
    static const TrackedLines tracked = [] {
        std::vector<std::string> lines = threeAircraft();
        lines.push_back("65.000," + hexBytes(simulator::df5(0x4840D6, {1}, 07700)));
        return TrackedLines(lines);
    }();
    return tracked;
}

std::string tableOf(const TrackedLines& tracked, const TextStyle& style) {
    const Showing showing = {tracked.tracking.now(), 1, GeoPoint{51.5, 0}};
    return aircraftTable(tracked.tracking.aircraft(), showing, style);
}

std::string reportOf(std::size_t number, const TextStyle& style) {
    const Tracking& tracking = aMinuteLater().tracking;
    return aircraftReport(tracking.aircraft().at(number), {tracking.now()}, style);
}

std::size_t longestLine(const std::string& text) {
    std::size_t longest = 0;
    std::istringstream lines(text);
    for (std::string line; std::getline(lines, line);) {
        longest = std::max(longest, line.size());
    }
    return longest;
}

/// Lets a table begin on the line below the quotation mark.
std::string withoutFirstLine(const std::string& text) {
    return text.substr(text.find('\n') + 1);
}

std::string withoutEscapes(std::string text) {
    for (std::size_t at = 0; (at = text.find('\033', at)) != std::string::npos;) {
        text.erase(at, text.find('m', at) + 1 - at);
    }
    return text;
}

/// The words of the first line.
std::string headsOf(const std::string& table) {
    std::istringstream line(table.substr(0, table.find('\n')));
    std::string heads;
    for (std::string word; line >> word;) {
        heads += heads.empty() ? word : " " + word;
    }
    return heads;
}

TEST(AircraftTable, ShowsWhatIsKnown) {
    const TrackedLines tracked(threeAircraft());
    const Showing showing = {tracked.tracking.now()};
    EXPECT_EQ(aircraftTable(tracked.tracking.aircraft(), showing, {}), withoutFirstLine(R"(
address  callsign  category  squawk  altitude  ground  track  vertical  latitude  longitude  ground  MOPS     NIC  PIC  messages  seen
                                           ft   speed    deg      rate       deg        deg  status  version                         s
                                                   kt           ft/min
40621D   -         -         -          38000       -      -         -  52.25720    3.91937  air     0?         8   11         3     3
4840D6   KLM1023   A0        0123           -       -      -         -         -          -  ground  0?         -    -         2     0
485020   -         -         -              -     159    183      -832         -          -  -       0?         -    -         1     1
)"));
}

TEST(AircraftTable, MarksWhatIsOldAndNamesEmergencies) {
    EXPECT_EQ(tableOf(aMinuteLater(), {}), withoutFirstLine(R"(
address  callsign  category  squawk  emergency          altitude  ground  track  vertical  latitude  longitude  distance  ground  MOPS     NIC  PIC  messages  seen
                                                              ft   speed    deg      rate       deg        deg        NM  status  version                         s
                                                                      kt           ft/min
40621D   -         -         -       -                     38000*      -      -         -  52.25720*   3.91937*    152.1* air     0?         8*  11*        3    63
4840D6   KLM1023   A0        7700    general emergency         -       -      -         -         -          -         -  ground  0?         -    -         3     0
485020   -         -         -       -                         -     159*   183*     -832*        -          -         -  -       0?         -    -         1    61
* received more than 60 s ago
)"));
}

TEST(AircraftTable, MarksAnOldEmergency) {
    const auto& aircraft = aMinuteLater().tracking.aircraft();
    for (const u64 timeMs : {u64{125000}, u64{125001}}) { // of 65.000
        const bool isOld = timeMs > 125000;
        const std::string table = aircraftTable(aircraft, {timeMs}, {200, true});
        const std::string start = isOld ? "\033[2;31m" : "\033[1;31m";
        for (const char* text : {"7700", "general emergency"}) {
            EXPECT_NE(table.find(start + text + (isOld ? "*" : "") + "\033[0m"), std::string::npos)
                << table;
        }
        const std::string report = aircraftReport(aircraft.at(1), {timeMs}, {});
        EXPECT_EQ(report.find("7700*") != std::string::npos, isOld);
        EXPECT_EQ(report.find("general emergency*") != std::string::npos, isOld);
    }
}

TEST(AircraftTable, LeavesOutColumnsInTheirOrder) {
    const struct {
        std::size_t width; ///< the least for these columns
        std::string heads;
    } rows[] = {
        {163, "address callsign category squawk emergency altitude ground track vertical latitude "
              "longitude distance ground MOPS NIC PIC messages seen"},
        {154, "address callsign category squawk emergency altitude ground track vertical latitude "
              "longitude distance ground NIC PIC messages seen"},
        {149, "address callsign category squawk emergency altitude ground track vertical latitude "
              "longitude distance ground NIC messages seen"},
        {144, "address callsign category squawk emergency altitude ground track vertical latitude "
              "longitude distance ground messages seen"},
        {136, "address callsign category squawk emergency altitude ground track vertical latitude "
              "longitude distance messages seen"},
        {126, "address callsign squawk emergency altitude ground track vertical latitude longitude "
              "distance messages seen"},
        {116, "address callsign squawk emergency altitude ground track vertical latitude longitude "
              "distance seen"},
        {106, "address callsign squawk emergency altitude ground track latitude longitude distance "
              "seen"},
        {96, "address callsign squawk emergency altitude ground track latitude longitude seen"},
        {75, "address callsign squawk emergency altitude ground track seen"},
        {70, "address callsign squawk emergency altitude ground track"}, // a mark stands at the end
        {63, "address callsign squawk emergency altitude ground"},
        {55, "address callsign squawk emergency altitude"},
        {47, "address callsign emergency altitude"},
        {36, "address callsign emergency"},
        {26, "address emergency"},
        {0, "address"},
    };
    std::size_t widest = TextStyle().width;
    for (const auto& row : rows) {
        EXPECT_EQ(headsOf(tableOf(aMinuteLater(), {row.width})), row.heads) << row.width;
        EXPECT_EQ(headsOf(tableOf(aMinuteLater(), {widest})), row.heads) << widest;
        widest = row.width - 1;
    }
}

TEST(AircraftTable, NamesTheColumnsThatItLeavesOut) {
    const std::string table = tableOf(aMinuteLater(), {97});
    EXPECT_EQ(table.substr(table.find("\n* ") + 1), withoutFirstLine(R"(
* received more than 60 s ago
No room for MOPS version, PIC, NIC, ground status, category, messages, vertical rate and
distance; a wider terminal, a pipe or --json shows more
)"));
    EXPECT_EQ(tableOf(aMinuteLater(), {163}), tableOf(aMinuteLater(), {}));
}

TEST(AircraftTable, HasNoLineLongerThanItsWidth) {
    for (std::size_t width = 10; width <= 200; ++width) {
        EXPECT_LE(longestLine(tableOf(aMinuteLater(), {width})), width);
    }
}

TEST(AircraftTable, ShowsInEightyColumnsWhatAnAircraftIsAndWhereItFlies) {
    const TrackedLines tracked(threeAircraft());
    std::vector<TrackedAircraft> aircraft = tracked.tracking.aircraft();
    aircraft.front().position = {{-89.12345, -179.12345}, tracked.tracking.now()};
    const u64 aDay = 86400000;
    EXPECT_EQ(headsOf(aircraftTable(aircraft, {aDay}, {80})),
              "address callsign squawk altitude ground track latitude longitude seen");
}

TEST(AircraftTable, HasColoursBesideTheSameText) {
    const std::string coloured = tableOf(aMinuteLater(), {200, true});
    EXPECT_NE(coloured.find("\033[1;31m4840D6\033[0m  "), std::string::npos);
    EXPECT_NE(coloured.find("  \033[1;31mgeneral emergency\033[0m  "), std::string::npos);
    EXPECT_NE(coloured.find("  \033[2m38000*\033[0m "), std::string::npos);
    EXPECT_NE(coloured.find("\n40621D  "), std::string::npos);
    EXPECT_EQ(withoutEscapes(coloured), tableOf(aMinuteLater(), {200}));
}

TEST(AircraftReport, ShowsTheAgeOfEachDatum) {
    const std::string report = reportOf(0, {});
    for (const char* line : {
             "Aircraft 40621D, track number 1, last heard 2.000, 63.000 s ago\n\n",
             "Item                        Value       Valid  Age s  Last update  Last change\n",
             "Ground status                 air       yes     63.0  2.000        0.500\n",
             "Altitude                    38000* ft   yes     63.0  2.000\n",
             "SIL                             2*      yes     63.0  2.000        0.500\n"
             "* received more than 60 s ago\n\n"
             "Messages   3\n"
             "  DF-17    3\n"
             "  POS_AIR  3\n",
         }) {
        EXPECT_NE(report.find(line), std::string::npos) << line << report;
    }
    EXPECT_EQ(reportOf(1, {}).find('*'), std::string::npos);
}

TEST(AircraftReport, GivesWayToo) {
    const std::string report = reportOf(1, {50, true});
    for (const char* line : {
             "Aircraft 4840D6, track number 2, last heard\n65.000, 0.000 s ago\n\n",
             "\n\033[1;31mEmergency\033[0m               \033[1;31mgeneral emergency\033[0m      "
             "0.0\n",
             "\nNo room for Last update, Last change and Valid; a\n",
         }) {
        EXPECT_NE(report.find(line), std::string::npos) << line << report;
    }
    for (std::size_t width = 45; width <= 120; ++width) {
        EXPECT_LE(longestLine(reportOf(0, {width})), width);
    }
}

} // namespace

} // namespace tolvarin::ondrel::client
