#include "apps/pages/track_map.h"

#include "apps/tracked_lines.h"

#include <gtest/gtest.h>

#include <optional>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

namespace tolvarin::ondrel::client {

namespace {

bool contains(std::string_view text, std::string_view part) {
    return text.find(part) != std::string_view::npos;
}

/// A map of an aircraft that flew from 52.25N 3.92E, where it was heard last at 2 s, and of the
/// path behind it.
std::string mapOf(const std::vector<GeoPoint>& path, const std::optional<GeoPoint>& receiver,
                  u64 timeMs = 2000) {
    const TrackedLines tracked({"0.500,8D40621D58C382D690C8AC2863A7",
                                "1.000,8D40621D58C386435CC412692AD6",
                                "2.000,8D40621D58C382D690C8AC2863A7"});
    const std::vector<TrackedAircraft> aircraft = tracked.tracking.aircraft();
    TrackHistory history;
    for (const GeoPoint& place : path) {
        history.notePosition(aircraft.front().icaoAddress(), {place, 1000});
    }
    const Showing showing = {timeMs, 1, receiver};
    return TrackMap(aircraft, history, showing, 1000, 600).svg("wide", "A & B");
}

TEST(TrackMap, SaysWhatItIs) {
    const std::string map = mapOf({}, std::nullopt);
    EXPECT_TRUE(contains(map, R"( role="img">)"));
    EXPECT_TRUE(contains(map, "<title>A &amp; B</title>"));
    EXPECT_FALSE(contains(map, R"(class="receiver")"));
    EXPECT_FALSE(contains(map, R"(class="ring")"));
    EXPECT_FALSE(contains(map, "nan"));
}

TEST(TrackMap, DimsAnAircraftWhosePositionIsOld) {
    EXPECT_FALSE(contains(mapOf({}, std::nullopt, 62000), " old\""));
    const std::string map = mapOf({}, std::nullopt, 62001);
    EXPECT_TRUE(contains(map, R"(class="marker b4 old")"));
    EXPECT_TRUE(contains(map, R"(class="name old")"));
    EXPECT_TRUE(contains(map, R"(class="track b4 old")"));
}

/// The numbers that stand behind some text.
std::vector<double> numbersBehind(const std::string& text, std::string_view before, int count) {
    std::istringstream stream(text.substr(text.find(before) + before.size()));
    std::vector<double> numbers(static_cast<std::size_t>(count));
    for (double& number : numbers) {
        stream >> number;
        stream.get(); // what stands between them
    }
    return numbers;
}

// A script finds a place again on a larger map.
TEST(TrackMap, TellsItsDegrees) {
    const std::string map = mapOf({{51, 2}}, std::nullopt);
    const auto size = numbersBehind(map, "viewBox=\"0 0 ", 2);
    const auto degrees = numbersBehind(map, "data-degrees=\"", 4);
    const auto at =
        numbersBehind(map, "<a href=\"40621D.html\" tabindex=\"-1\" transform=\"translate(", 2);
    EXPECT_NEAR(degrees[0] + (at[0] / size[0] - 0.5) * degrees[2], 3.91937, 0.001);
    EXPECT_NEAR(degrees[1] - (at[1] / size[1] - 0.5) * degrees[3], 52.25720, 0.001);
}

/// The scale of distance in the corner, which tells how much the map shows.
std::string scaleOf(const std::string& map) {
    const std::string before = R"(text-anchor="end" x="986.0" y="30.0">)";
    const auto begin = map.find(before);
    return begin == std::string::npos
               ? map
               : map.substr(begin + before.size(), map.find('<', begin) - begin - before.size());
}

TEST(TrackMap, ShowsTheReceiverUnlessTheAircraftBecomeTiny) {
    const std::vector<GeoPoint> path = {{52.25, 2}};
    EXPECT_EQ(scaleOf(mapOf(path, std::nullopt)), "10 NM");
    const std::string near = mapOf(path, GeoPoint{51.9, 4.5});
    EXPECT_EQ(scaleOf(near), "10 NM");
    EXPECT_TRUE(contains(near, R"(<path class="receiver")"));
    for (const char* label : {">20 NM</text>", ">40 NM</text>", ">80 NM</text>"}) {
        EXPECT_TRUE(contains(near, label)) << label;
    }
    EXPECT_EQ(scaleOf(mapOf(path, GeoPoint{51.9, 5.6})), "20 NM"); // just less than twice as wide
    const std::string far = mapOf(path, GeoPoint{51.9, 6.2});
    EXPECT_EQ(scaleOf(far), "10 NM");
    EXPECT_TRUE(contains(far, ">120 NM</text>")); // the circles go through the map
    EXPECT_FALSE(contains(far, ">40 NM</text>"));
    for (const GeoPoint receiver : {GeoPoint{-52, -176}, GeoPoint{90, 0}, GeoPoint{-90, 180}}) {
        EXPECT_EQ(scaleOf(mapOf(path, receiver)), "10 NM");
        EXPECT_FALSE(contains(mapOf(path, receiver), "nan"));
    }
}

TEST(TrackMap, DrawsCoastsAndTracksWithoutPointsThatNobodySees) {
    std::vector<GeoPoint> path;
    for (int i = 0; i < 200; ++i) {
        path.push_back({52.25, 3.92 - i * 0.01});
    }
    const std::string map = mapOf(path, std::nullopt);
    EXPECT_TRUE(contains(map, R"(<path class="coast" d="M)"));
    EXPECT_LT(map.size(), 12000U);
}

TEST(TrackMap, CutsNoLabelAtTheUpperEdge) {
    const std::string map =
        mapOf({{-78, -170}, {-20, 170}, {78, 0}, {0, 90}, {0, -90}}, std::nullopt);
    const std::string class_ = R"(<text class="degrees" x=")";
    std::size_t labels = 0;
    for (auto at = map.find(class_); at != std::string::npos; at = map.find(class_, at + 1)) {
        const auto y = map.find(R"( y=")", at) + 4;
        EXPECT_GE(std::stod(map.substr(y)), 10) << map.substr(at, 80);
        ++labels;
    }
    EXPECT_GT(labels, 6U);
    EXPECT_TRUE(contains(map, ">90\u00B0N<"));
}

/// How often a text has the part.
std::size_t count(std::string_view text, std::string_view part) {
    std::size_t times = 0;
    for (auto at = text.find(part); at != std::string_view::npos; at = text.find(part, at + 1)) {
        ++times;
    }
    return times;
}

TEST(TrackMap, BreaksATrackWhereNothingWasHeard) {
    const TrackedLines tracked({"1000.500,8D40621D58C382D690C8AC2863A7",
                                "1001.000,8D40621D58C386435CC412692AD6",
                                "1002.000,8D40621D58C382D690C8AC2863A7"});
    const std::vector<TrackedAircraft> aircraft = tracked.tracking.aircraft();
    const u32 address = aircraft.front().icaoAddress();
    const Showing showing = {1002000, 1, std::nullopt};
    const auto track = [&](const TrackHistory& history) {
        const std::string map = TrackMap(aircraft, history, showing, 1000, 600).svg("wide", "");
        const auto begin = map.find(" d=\"", map.find(R"(class="track)")) + 4;
        return map.substr(begin, map.find('"', begin) - begin);
    };
    TrackHistory history;
    history.notePosition(address, {{52, 3}, 1000});
    history.notePosition(address, {{52, 3.2}, 300000});
    EXPECT_EQ(count(track(history), "M"), 1U);
    history.notePosition(address, {{52, 3.4}, 600001});
    EXPECT_EQ(count(track(history), "M"), 2U);
    history.notePosition(address, {{52.1, 3.6}, 1000000});
    EXPECT_EQ(count(track(history), "M"), 3U);
    EXPECT_EQ(count(track(history), "l0.0,0.0"), 1U);     // a position alone is a dot
    history.notePosition(address, {{52.2, 3.6}, 999999}); // the stamps go back
    EXPECT_EQ(count(track(history), "M"), 4U);
}

} // namespace

} // namespace tolvarin::ondrel::client
