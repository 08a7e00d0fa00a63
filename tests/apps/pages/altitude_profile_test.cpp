#include "apps/pages/altitude_profile.h"

#include "apps/tracking/track_history.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <limits>
#include <string>
#include <vector>

namespace tolvarin::ondrel::client {

namespace {

constexpr u32 address = 0x4840D6;
constexpr u64 start = 1700000000000; // ms: 2023-11-14, 22:13:20 UTC
constexpr u64 minute = 60000;
constexpr u64 day = 1440 * minute;

struct Told {
    u64 stampMs;
    i32 feet;
};

/// The profile of an aircraft that told these altitudes.
AltitudeProfile profileOf(const std::vector<Told>& altitudes) {
    TrackHistory history;
    for (const Told& altitude : altitudes) {
        history.noteAltitude(address, altitude.feet, altitude.stampMs);
    }
    return {TrackedAircraft(ADSBTarget(address)), history};
}

/// 500 units wide of which 66 and 34 are margins, and 340 high of which 14 and 26 are.
std::string svgOf(const std::vector<Told>& altitudes) {
    return profileOf(altitudes).svg("wide", 500, 340);
}

/// The texts of a picture from first to last, separated by "|".
std::string labelsOf(const std::string& svg) {
    std::string labels;
    for (std::size_t end = svg.find("</text>"); end != std::string::npos;
         end = svg.find("</text>", end + 1)) {
        const std::size_t begin = svg.rfind('>', end) + 1;
        labels += (labels.empty() ? "" : "|") + svg.substr(begin, end - begin);
    }
    return labels;
}

std::string curveOf(const std::string& svg) {
    const std::string name = R"(class="profile" d=")";
    const std::size_t begin = svg.find(name) + name.size();
    return svg.substr(begin, svg.find('"', begin) - begin);
}

TEST(AltitudeProfile, ShowsAClimb) {
    const std::vector<Told> climb = {{start, 0}, {start + 4 * minute, 5000}};
    EXPECT_EQ(curveOf(svgOf(climb)), "M66.0,314.0L466.0,14.0");
    EXPECT_EQ(labelsOf(svgOf(climb)), "0 ft|1000 ft|2000 ft|3000 ft|4000 ft|5000 ft|"
                                      "22:14|22:15|22:16|22:17");
    EXPECT_EQ(profileOf(climb).caption(),
              "Altitude, 0 to 5000 ft, 2023-11-14 22:13:20 to 22:17:20 UTC");
    EXPECT_NE(svgOf(climb).find("<svg role=\"img\" class=\"wide\""), std::string::npos);
    EXPECT_NE(svgOf(climb).find("<title>Altitude, 0 to 5000 ft"), std::string::npos);
}

TEST(AltitudeProfile, HasRoundStepsOnBothAxes) {
    struct Row {
        std::vector<Told> told;
        std::string labels;
    };
    const Row rows[] = {
        // One altitude alone.
        {{{start, 37000}},
         "36400 ft|36600 ft|36800 ft|37000 ft|37200 ft|37400 ft|37600 ft|"
         "22:13:20|22:13:25|22:13:30"},
        // Below zero.
        {{{start, -975}, {start + 1000, -800}},
         "-1400 ft|-1200 ft|-1000 ft|-800 ft|-600 ft|-400 ft|-200 ft|22:13:20|22:13:25|22:13:30"},
        // Over midnight, and over days.
        {{{start, 1000}, {start + 150 * minute, 1000}},
         "400 ft|600 ft|800 ft|1000 ft|1200 ft|1400 ft|1600 ft|23:00|00:00"},
        {{{start, 0}, {start + 4 * day, 45000}},
         "0 ft|10000 ft|20000 ft|30000 ft|40000 ft|50000 ft|"
         "2023-11-15|2023-11-16|2023-11-17|2023-11-18"},
        // Seconds of a counter.
        {{{12000, 500}, {100000, 1500}},
         "400 ft|600 ft|800 ft|1000 ft|1200 ft|1400 ft|1600 ft|"
         "30 s|60 s|90 s"},
    };
    for (const Row& row : rows) {
        EXPECT_EQ(labelsOf(svgOf(row.told)), row.labels);
    }
}

TEST(AltitudeProfile, LeavesOutWhatWasNotHeard) {
    constexpr u64 gap = TrackHistory::longestGapMs + 1;
    EXPECT_EQ(curveOf(svgOf({{start, 0}, {start + gap, 0}})), "M66.0,164.0h0M466.0,164.0h0");
    // The stamps go back: the line begins anew.
    EXPECT_EQ(curveOf(svgOf({{start + 20000, 0}, {start + 40000, 1000}, {start, 1000}})),
              "M266.0,314.0L466.0,14.0M66.0,14.0h0");
}

TEST(AltitudeProfile, IsEmptyWithoutAltitudes) {
    EXPECT_TRUE(profileOf({}).isEmpty());
    EXPECT_FALSE(profileOf({{start, 0}}).isEmpty());
}

TEST(AltitudeProfile, TakesTheExtremes) {
    constexpr u64 latest = std::numeric_limits<u64>::max();
    for (const std::vector<Told>& told : std::vector<std::vector<Told>>{
             {{latest, std::numeric_limits<i32>::max()}},
             {{0, -1000}, {latest, 126700}},
             {{0, 0}},
         }) {
        const std::string svg = svgOf(told);
        EXPECT_LT(labelsOf(svg).size(), 300U);
        EXPECT_EQ(svg.find("nan"), std::string::npos);
        EXPECT_EQ(svg.find("inf"), std::string::npos);
    }
}

} // namespace

} // namespace tolvarin::ondrel::client
