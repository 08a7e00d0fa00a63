#include "tracked_lines.h"

#include "apps/common/text.h"
#include "apps/pages/html_text.h"
#include "apps/pages/index_page.h"
#include "apps/pages/page_folder.h"
#include "apps/pages/style_sheet.h"

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

/// What keeps the elements of a page from closing in the order in which they opened; empty if
/// nothing does.
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

// A published pair of position messages, an aircraft in distress without a position, and one that
// nobody would call so.
const std::vector<std::string> lines = {
    "1.000,8D40621D58C386435CC412692AD6",
    "2.000,8D40621D58C382D690C8AC2863A7",
    "3.500,8D4840D6202CC371C32CE0576098",
    "4.000," + hexBytes(simulator::df5(0x4840D6, {}, 07700)),
};

struct Pages {
    Pages() {
        for (const ADSBTarget& one : tracked.tracking.aircraft()) {
            history.note(one);
        }
    }
    std::string index(const std::string& recording) const {
        return indexPage({recording, tracked.tracking.now(), tracked.tracking.aircraft(), history});
    }

    TrackedLines tracked{lines};
    TrackHistory history;
};

TEST(IndexPage, listsAllAircraftAndDrawsWhoHasToldAPosition) {
    const std::string page = Pages().index("x.csv");
    EXPECT_EQ(unbalanced(page), "");
    EXPECT_EQ(countOf(page, R"(<td class="address"><a href="40621D.html">40621D</a></td>)"), 1U);
    EXPECT_EQ(countOf(page, R"(<td class="address"><a href="4840D6.html">4840D6</a></td>)"), 1U);
    EXPECT_EQ(countOf(page, R"(<tr class="alarm"><td class="address"><a href="4840D6)"), 1U);
    EXPECT_EQ(countOf(page, R"(<td class="number">38000</td>)"), 1U);
    EXPECT_EQ(countOf(page, R"(<td class="number quiet">&ndash;</td>)"), 11U);
    EXPECT_NE(page.find("2 aircraft in x.csv, as of 4.000"), std::string::npos);

    EXPECT_EQ(countOf(page, "<svg "), 2U); // for wide and for narrow screens
    EXPECT_EQ(countOf(page, "<path class=\"track b4\" d=\"M"), 2U);
    EXPECT_EQ(countOf(page, "<circle class=\"marker b4\""), 2U);
    EXPECT_EQ(countOf(page, ">40621D</text>"), 2U);
    EXPECT_EQ(countOf(page, ">KLM1023</text>"), 0U);

    const TrackHistory nothing;
    const std::string empty = indexPage({"", 0, {}, nothing});
    EXPECT_EQ(countOf(empty, "<svg "), 0U);
    EXPECT_EQ(unbalanced(empty), "");
}

TEST(IndexPage, isSafeWhateverTheRecordingIsCalled) {
    const std::string page = Pages().index("<script>alert('&')</script>\x1B\n.csv");
    EXPECT_NE(page.find("&lt;script&gt;alert(&#39;&amp;&#39;)&lt;/script&gt;??.csv"),
              std::string::npos);
    EXPECT_EQ(page.find("<script"), std::string::npos);
    EXPECT_EQ(htmlText("a\"b"), "a&quot;b");
}

TEST(AircraftPage, isTheLibrarysWithAWayBack) {
    const Pages pages;
    const ADSBTargetReport report = pages.tracked.tracking.aircraft().at(1).report();
    std::string page = aircraftPage(report);
    EXPECT_EQ(unbalanced(page), "");
    for (const std::string& added :
         {std::string("    <meta charset=\"utf-8\">\n"
                      "    <meta name=\"viewport\" content=\"width=device-width, "
                      "initial-scale=1\">\n"),
          std::string("    <p class=\"back\"><a href=\"index.html\">All aircraft</a> / 4840D6 "
                      "KLM1023 </p>\n")}) {
        ASSERT_EQ(countOf(page, added), 1U) << page;
        page.erase(page.find(added), added.size());
    }
    EXPECT_EQ(page, report.toHtml("\n" + styleSheet()));
}

TEST(Pages, needNoNetwork) {
    const Pages pages;
    const std::string all =
        pages.index("x.csv") + aircraftPage(pages.tracked.tracking.aircraft().front().report());
    for (const char* way : {"http", "src=", "url(", "@import", "<link", "<script"}) {
        EXPECT_EQ(all.find(way), std::string::npos) << way;
    }
    EXPECT_EQ(styleSheet().find('<'), std::string::npos);
    EXPECT_EQ(countOf(styleSheet(), "{"), countOf(styleSheet(), "}"));
}

// Two frames that no aircraft sends can solve into a latitude of 122 degrees.
TEST(TrackHistory, hasNoPlaceBeyondThePoles) {
    simulator::AirbornePosition position;
    position.odd = true;
    position.cpr = {0, 0};
    const std::string odd = simulator::df17(0x4840D6, 5, simulator::airbornePosition(position));
    position.odd = false;
    position.cpr = {44431, 0};
    const std::string even = simulator::df17(0x4840D6, 5, simulator::airbornePosition(position));
    const TrackedLines tracked({"1," + hexBytes(odd), "2," + hexBytes(even)});
    const std::vector<ADSBTarget> aircraft = tracked.tracking.aircraft();
    TrackHistory history;
    history.note(aircraft.front());
    EXPECT_GT(aircraft.front().latitude(), 90);
    EXPECT_EQ(history.trackOf(0x4840D6).size(), 0U);
    EXPECT_EQ(countOf(indexPage({"", 2000, aircraft, history}), "<svg "), 0U);
}

TEST(TrackHistory, hasThePositionsInTheirOrder) {
    Pages pages;
    EXPECT_EQ(pages.history.trackOf(0x4840D6).size(), 0U);
    ASSERT_EQ(pages.history.trackOf(0x40621D).size(), 1U);
    EXPECT_NEAR(pages.history.trackOf(0x40621D).front().latitude, 52.2572, 1e-4);
    pages.history.note(pages.tracked.tracking.aircraft().front()); // where it was
    EXPECT_EQ(pages.history.trackOf(0x40621D).size(), 1U);
    pages.history.forget(0x40621D);
    EXPECT_EQ(pages.history.trackOf(0x40621D).size(), 0U);
}

} // namespace

} // namespace tolvarin::ondrel::client
