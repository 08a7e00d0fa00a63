#include "apps/tracked_lines.h"

#include "apps/common/text.h"
#include "apps/display/aircraft_data.h"
#include "apps/pages/aircraft_page.h"
#include "apps/pages/explanations.h"
#include "apps/pages/html.h"
#include "apps/pages/index_page.h"
#include "apps/pages/page_folder.h"
#include "apps/pages/style_sheets.h"

#include "simulator/frame_encoder.h"
#include "simulator/payload_encoder.h"

#include <gtest/gtest.h>

#include <cctype>
#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace tolvarin::ondrel::client {

namespace {

std::size_t countOf(const std::string& text, std::string_view part) {
    std::size_t count = 0;
    for (auto i = text.find(part); i != std::string::npos; i = text.find(part, i + 1)) {
        ++count;
    }
    return count;
}

/// The first element that is not closed in the right order; empty if all are.
std::string unbalanced(const std::string& page) {
    std::vector<std::string> open;
    for (std::size_t begin = page.find('<', 1); begin != std::string::npos;
         begin = page.find('<', begin + 1)) {
        const std::size_t end = page.find('>', begin);
        const std::string tag = page.substr(begin + 1, end - begin - 1);
        const std::string name = tag.substr(0, tag.find(' '));
        if (tag.back() == '/' || name == "meta" || name == "br") {
            continue;
        }
        if (name.front() != '/') {
            open.push_back(name);
        } else if (open.empty() || open.back() != name.substr(1)) {
            return tag + " at " + std::to_string(begin);
        } else {
            open.pop_back();
        }
    }
    return open.empty() ? "" : open.back();
}

// Published position messages of one aircraft, one of them twice; an identification and an
// emergency squawk of another one without a position.
const std::vector<std::string> lines = {
    "0.500,8D40621D58C382D690C8AC2863A7",
    "1.000,8D40621D58C386435CC412692AD6",
    "2.000,8D40621D58C382D690C8AC2863A7",
    "3.500,8D4840D6202CC371C32CE0576098",
    "4.000," + hexBytes(simulator::df5(0x4840D6, {}, 07700)),
};

struct Pages {
    Pages() {
        for (const TrackedAircraft& one : tracked.tracking.aircraft()) {
            if (one.position) {
                history.notePosition(one.icaoAddress(), *one.position);
            }
        }
    }
    std::string index(const std::string& recording) const {
        return index(recording, tracked.tracking.now());
    }
    std::string index(const std::string& recording, u64 timeMs) const {
        return wholePage(indexPage({recording, {timeMs}, tracked.tracking.aircraft(), history}));
    }
    /// The page of the first or the second aircraft.
    std::string aircraft(std::size_t number, u64 timeMs) const {
        return wholePage(aircraftPage(tracked.tracking.aircraft().at(number), {timeMs}, history));
    }

    TrackedLines tracked{lines};
    TrackHistory history;
};

TEST(IndexPage, ListsAllAircraftAndDrawsThoseWithAPosition) {
    const std::string page = Pages().index("x.csv");
    EXPECT_EQ(unbalanced(page), "");
    EXPECT_EQ(
        countOf(page, R"(<th scope="row" class="address"><a href="40621D.html">40621D</a></th>)"),
        1U);
    EXPECT_EQ(
        countOf(page, R"(<th scope="row" class="address"><a href="4840D6.html">4840D6</a></th>)"),
        1U);
    EXPECT_EQ(countOf(page, R"(<tr class="alarm"><th scope="row" class="address"><a href="4840D6)"),
              1U);
    EXPECT_EQ(countOf(page, R"(<td class="number">38000</td>)"), 1U);
    EXPECT_EQ(countOf(page, R"(<td class="number quiet">&ndash;</td>)"), 11U);
    EXPECT_NE(page.find("2 aircraft in x.csv, as of 4.000 s."), std::string::npos);

    EXPECT_EQ(countOf(page, "<svg "), 2U); // for wide and for narrow screens
    EXPECT_EQ(countOf(page, "<path class=\"track b4\" d=\"M"), 2U);
    EXPECT_EQ(countOf(page, "<circle class=\"marker b4\""), 2U);
    EXPECT_EQ(countOf(page, ">40621D</text>"), 2U);
    EXPECT_EQ(countOf(page, ">KLM1023</text>"), 0U);

    const TrackHistory nothing;
    const std::string empty = wholePage(indexPage({"", {0}, {}, nothing}));
    EXPECT_EQ(countOf(empty, "<svg "), 0U);
    EXPECT_EQ(countOf(empty, "not connected"), 0U);
    EXPECT_EQ(unbalanced(empty), "");
    const std::string lost = wholePage(indexPage({"", {0, 1, std::nullopt, 2}, {}, nothing}));
    EXPECT_EQ(countOf(lost, ">2 feeds are not connected.</p>"), 1U);
}

TEST(IndexPage, ExplainsWhatIsShort) {
    const std::string page = Pages().index("x.csv");
    for (const char* name : {"MOPS version", "NIC", "PIC"}) {
        EXPECT_EQ(countOf(page, std::string(">") + name + "</abbr></th>"), 1U) << name;
    }
    EXPECT_EQ(countOf(page, ">0?</abbr></td>"), 2U);
    EXPECT_NE(page.find(R"(<td class="squawk">7700 <small>general emergency</small></td>)"),
              std::string::npos);
    EXPECT_EQ(page.find("<th>"), std::string::npos); // all have a scope
}

TEST(IndexPage, DimsWhatIsOld) {
    const std::string old = R"(<td class="number old">38000</td>)"; // of 2.000
    EXPECT_EQ(countOf(Pages().index("x.csv", 62000), old), 0U);
    EXPECT_EQ(countOf(Pages().index("x.csv", 62001), old), 1U);
    const std::string squawk = R"(<td class="squawk old">7700 <small>)"; // of 4.000
    EXPECT_EQ(countOf(Pages().index("x.csv", 64000), squawk), 0U);
    EXPECT_EQ(countOf(Pages().index("x.csv", 64001), squawk), 1U);
}

TEST(IndexPage, IsSafeWhateverTheRecordingIsCalled) {
    const std::string page = Pages().index("<script>alert('&')</script>\x1B\n\xFF\u009B.csv");
    EXPECT_NE(
        page.find("&lt;script&gt;alert(&#39;&amp;&#39;)&lt;/script&gt;\\x1B\\x0A\\xFF\\x9B.csv"),
        std::string::npos);
    EXPECT_EQ(page.find("<script"), std::string::npos);
    EXPECT_EQ(htmlText("a\"b"), "a&quot;b");
}

/// The row of a datum on the page of an aircraft, from its second cell on.
std::string rowOf(const std::string& page, const std::string& label) {
    const std::string start = R"(<th scope="row">)" + label + "</th>";
    const std::size_t begin = page.find(start) + start.size();
    return page.substr(begin, page.find("</tr>", begin) - begin);
}

TEST(AircraftPage, ShowsWhatWasReceivedAndItsAge) {
    const std::string page = Pages().aircraft(1, 5500);
    EXPECT_EQ(unbalanced(page), "");
    EXPECT_NE(page.find(R"(<a href="index.html">All aircraft</a>)"), std::string::npos);
    EXPECT_NE(page.find(R"(<h1>KLM1023 <small class="address">4840D6</small></h1>)"),
              std::string::npos);
    EXPECT_NE(
        page.find(
            "Last heard 1 s ago. Ages count to 5.500 s. Position, altitude, "
            "speed and rate are grey when they are older than 60 s. Messages: 2. Track number: 2."),
        std::string::npos);
    EXPECT_EQ(rowOf(page, "Callsign"), R"(<td class="value">KLM1023</td>)"
                                       R"(<td class="time" title="3.500 s">2 s ago</td>)"
                                       R"(<td class="time" title="3.500 s">2 s ago</td>)");
    EXPECT_EQ(countOf(rowOf(page, "Category"), "A0 no information"), 1U);
    const std::string squawk =
        rowOf(page, R"(<abbr title="Mode A code: four octal digits that the pilot sets">)"
                    "Squawk</abbr>");
    EXPECT_EQ(countOf(squawk, R"(<td class="value">7700 general emergency</td>)"), 1U);
    EXPECT_EQ(countOf(page, R"(<tr class="alarm">)"), 1U);
    EXPECT_EQ(countOf(page, ">0?</abbr></td>"), 1U);
}

TEST(AircraftPage, NamesEveryDatumInARowOrAsMissing) {
    const Pages pages;
    for (const TrackedAircraft& aircraft : pages.tracked.tracking.aircraft()) {
        const std::string page = wholePage(aircraftPage(aircraft, {5500}, pages.history));
        EXPECT_NE(page.find("Not known: "), std::string::npos);
        EXPECT_EQ(page.find("supplement C"), std::string::npos); // cannot be received
        for (const AircraftDatum& datum : dataOf(aircraft, {5500})) {
            // A row of its own would say again what another row says, or has nothing to tell.
            const bool hasNoName = datum.key == "emergency" || datum.key == "distance_nm" ||
                                   datum.key == "mops_version_confirmed";
            const std::string label = explained(datum.label, datum.key);
            const std::string row = R"(<th scope="row">)" + label + "</th>";
            const bool received = datum.lastUpdate > 0 || datum.key == "mops_version";
            EXPECT_EQ(countOf(page, row), received && !hasNoName ? 1U : 0U) << datum.key;
            EXPECT_EQ(countOf(page, ": " + label + ".") + countOf(page, ": " + label + ",") +
                          countOf(page, ", " + label + ".") + countOf(page, ", " + label + ","),
                      received || hasNoName ? 0U : 1U)
                << datum.key;
        }
    }
}

TEST(AircraftPage, ExplainsWhatIsShort) {
    const Pages pages;
    for (const AircraftDatum& datum : dataOf(pages.tracked.tracking.aircraft().front(), {0})) {
        if (datum.group == "Quality" || datum.key == "mops_version" || datum.key == "spi") {
            EXPECT_NE(explained(datum.label, datum.key), datum.label);
        }
    }
}

TEST(AircraftPage, DimsWhatIsOld) {
    const std::string old = R"(<td class="value old">38000 <small>ft</small></td>)"; // of 2.000
    EXPECT_EQ(countOf(Pages().aircraft(0, 62000), old), 0U);
    EXPECT_EQ(countOf(Pages().aircraft(0, 62001), old), 1U);
    const std::string squawk = R"(<td class="value old">7700 general emergency</td>)"; // of 4.000
    EXPECT_EQ(countOf(Pages().aircraft(1, 64000), squawk), 0U);
    EXPECT_EQ(countOf(Pages().aircraft(1, 64001), squawk), 1U);
}

TEST(AircraftPage, DrawsPathAndAltitudes) {
    const std::string page = Pages().aircraft(0, 2000);
    EXPECT_EQ(countOf(page, "<svg "), 4U); // for wide and for narrow screens
    EXPECT_EQ(countOf(page, "<path class=\"track b4\" d=\"M"), 2U);
    EXPECT_EQ(countOf(page, "<path class=\"profile\" d=\"M"), 2U);
    EXPECT_NE(page.find("<figcaption>Path, 2.000 s to 2.000 s</figcaption>"), std::string::npos);
    EXPECT_EQ(countOf(Pages().aircraft(1, 4000), "<svg "), 0U);
}

TEST(AircraftPage, CountsMessagesUnderPlainNames) {
    const std::string page = Pages().aircraft(1, 5500);
    EXPECT_EQ(rowOf(page, "DF-5"), "<td>surveillance, identity</td><td class=\"number\">1</td>");
    EXPECT_EQ(rowOf(page, "ACID"), "<td>identification</td><td class=\"number\">1</td>");
    for (i32 format : {0, 4, 5, 11, 16, 17, 18, 19, 20, 21}) {
        const std::string kind = "DF-" + std::to_string(format);
        EXPECT_NE(nameOfKind(kind), kind);
    }
    for (i32 i = 0; i <= ADSBMessage::RESERVED; ++i) {
        const std::string& kind =
            ADSBMessage::typeName(static_cast<ADSBMessage::ADSBMessageType>(i));
        EXPECT_NE(nameOfKind(kind), kind);
    }
}

TEST(Pages, NeedNoNetwork) {
    const Pages pages;
    const std::string all = pages.index("x.csv") + pages.aircraft(0, 4000);
    for (const char* way : {"http", "src=", "url(", "@import", "<link", "<script"}) {
        EXPECT_EQ(all.find(way), std::string::npos) << way;
    }
    for (const std::string_view style : {commonStyle, mapStyle, indexStyle, aircraftStyle}) {
        EXPECT_GT(countOf(std::string(style), "{"), 5U);
        EXPECT_EQ(countOf(std::string(style), "{"), countOf(std::string(style), "}"));
        EXPECT_EQ(style.find('<'), std::string::npos);
    }
}

// Two frames that no aircraft sends can solve into a latitude of 122 degrees.
TEST(IndexPage, DrawsNothingBeyondThePoles) {
    simulator::AirbornePosition position;
    position.odd = true;
    position.cpr = {0, 0};
    const std::string odd = simulator::df17(0x4840D6, 5, simulator::airbornePosition(position));
    position.odd = false;
    position.cpr = {44431, 0};
    const std::string even = simulator::df17(0x4840D6, 5, simulator::airbornePosition(position));
    const TrackedLines tracked(
        {"1," + hexBytes(odd), "2," + hexBytes(even), "3," + hexBytes(odd), "4," + hexBytes(even)});
    const std::vector<TrackedAircraft> aircraft = tracked.tracking.aircraft();
    const TrackHistory history;
    EXPECT_GT(aircraft.front().latitude(), 90);
    EXPECT_FALSE(aircraft.front().position);
    EXPECT_EQ(countOf(indexPage({"", {2000}, aircraft, history}).body, "<svg "), 0U);
}

} // namespace

} // namespace tolvarin::ondrel::client
