#include "apps/tracking/track_history.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <vector>

namespace tolvarin::ondrel::client {

namespace {

constexpr u32 aircraft = 0x4840D6;
constexpr double pi = 3.141592653589793;
constexpr u64 second = 1000;
constexpr u64 hour = 3600 * second;
constexpr u64 day = 24 * hour;

/// Eight circles an hour, five miles around 60N 180E.
Position circling(u64 stampMs) {
    constexpr double radius = 5.0 / 60;
    const double angle = static_cast<double>(stampMs % (hour / 8)) / (hour / 8) * 2 * pi;
    const double longitude = 180 + radius * std::sin(angle) / 0.5;
    return {{60 + radius * std::cos(angle), longitude > 180 ? longitude - 360 : longitude},
            stampMs};
}

/// East and back along the equator, 450 miles in an hour.
Position patrolling(u64 stampMs) {
    const double hours = static_cast<double>(stampMs % (2 * hour)) / hour;
    return {{0, 450.0 / 60 * std::min(hours, 2 - hours)}, stampMs};
}

using Flight = Position (*)(u64 stampMs);

/// Where the path is at that time, by a straight line between two of its points.
GeoPoint placeAt(const std::vector<PastPosition>& path, u64 stampMs) {
    const auto after =
        std::find_if(path.begin() + 1, path.end() - 1,
                     [stampMs](const PastPosition& one) { return one.stampMs >= stampMs; });
    const PastPosition& before = *(after - 1);
    const double part = static_cast<double>(stampMs - before.stampMs) /
                        static_cast<double>(after->stampMs - before.stampMs);
    const double east = std::remainder(after->place.longitude - before.place.longitude, 360);
    return {before.place.latitude + part * (after->place.latitude - before.place.latitude),
            before.place.longitude + part * east};
}

/// In nautical miles.
double greatestDeviation(Flight flight, const std::vector<PastPosition>& path, u64 fromMs) {
    double greatest = 0;
    for (u64 stampMs = fromMs; stampMs <= day; stampMs += 10 * second) {
        greatest = std::max(greatest, nauticalMiles(flight(stampMs).place, placeAt(path, stampMs)));
    }
    return greatest;
}

TEST(TrackHistory, KeepsTheShapeOfADayInItsBound) {
    struct Row {
        Flight flight;
        double lastHour;   ///< greatest deviation in nautical miles
        double threeHours; ///< the same
        double day;        ///< the same
    };
    for (const Row& row : {Row{circling, 0.6, 3, 10}, Row{patrolling, 0.1, 0.1, 0.1}}) {
        TrackHistory history;
        std::size_t most = 0;
        for (u64 stampMs = 0; stampMs <= day; stampMs += second / 2) {
            history.notePosition(aircraft, row.flight(stampMs));
            most = std::max(most, history.pathOf(aircraft).size());
        }
        const std::vector<PastPosition>& path = history.pathOf(aircraft);
        EXPECT_EQ(most, TrackHistory::mostPoints);
        EXPECT_EQ(path.capacity(), TrackHistory::mostPoints);
        EXPECT_EQ(path.front().stampMs, 0U);
        EXPECT_GT(path.back().stampMs, day - second);
        EXPECT_LT(greatestDeviation(row.flight, path, day - hour), row.lastHour);
        EXPECT_LT(greatestDeviation(row.flight, path, day - 3 * hour), row.threeHours);
        EXPECT_LT(greatestDeviation(row.flight, path, 0), row.day);
        for (std::size_t i = 1; i < path.size(); ++i) {
            EXPECT_LT(path[i].stampMs - path[i - 1].stampMs, 4 * hour);
        }
    }
}

TEST(TrackHistory, LeavesOutWhatHardlyDiffers) {
    TrackHistory history;
    history.notePosition(aircraft, {{52, 4}, 1});
    history.notePosition(aircraft, {{52.0004, 4.0004}, 2}); // too near
    history.notePosition(aircraft, {{52.01, 4}, 3});
    history.noteAltitude(aircraft, 38000, 1 * second);
    history.noteAltitude(aircraft, 38075, 2 * second);  // too little
    history.noteAltitude(aircraft, 37900, 30 * second); // enough
    history.noteAltitude(aircraft, 37900, 60 * second); // late enough
    EXPECT_EQ(history.pathOf(0x40621D).size() + history.altitudesOf(0x40621D).size(), 0U);
    ASSERT_EQ(history.pathOf(aircraft).size(), 2U);
    EXPECT_EQ(history.pathOf(aircraft).back().place.latitude, 52.01);
    ASSERT_EQ(history.altitudesOf(aircraft).size(), 3U);
    EXPECT_EQ(history.altitudesOf(aircraft)[1].stampMs, 30 * second);
    history.forgetPath(aircraft);
    EXPECT_EQ(history.pathOf(aircraft).size(), 0U);
    EXPECT_EQ(history.altitudesOf(aircraft).size(), 3U);
    history.forget(aircraft);
    EXPECT_EQ(history.altitudesOf(aircraft).size(), 0U);
}

// An aircraft that stands still is heard, though nothing is noted.
TEST(TrackHistory, MarksPositionsAfterAGap) {
    constexpr u64 gap = TrackHistory::longestGapMs;
    TrackHistory history;
    const auto note = [&](double latitude, u64 stampMs) {
        history.notePosition(aircraft, {{latitude, 4}, stampMs});
        return history.pathOf(aircraft).back().afterGap;
    };
    EXPECT_FALSE(note(52, gap));
    EXPECT_FALSE(note(52.1, 2 * gap));
    EXPECT_TRUE(note(52.2, 3 * gap + 1));
    EXPECT_FALSE(note(52.2, 4 * gap) && history.pathOf(aircraft).size() > 3); // stands still
    EXPECT_FALSE(note(52.3, 5 * gap));
    EXPECT_FALSE(note(52.3, 7 * gap));
    EXPECT_TRUE(note(52.4, 7 * gap + 1)); // the gap was before the one that is not noted
    EXPECT_TRUE(note(52.5, 7 * gap));
    history.forgetPath(aircraft);
    EXPECT_FALSE(note(52.6, 20 * gap));
}

// Two climbs a day, an hour without replies after each, and stamps that go back once.
TEST(TrackHistory, KeepsClimbsAndGapsOfADayOfAltitudes) {
    TrackHistory history;
    const auto feetAt = [](u64 stampMs) {
        return static_cast<i32>(std::min<u64>(stampMs % (12 * hour) / 60, 38000));
    };
    for (u64 stampMs = 0; stampMs < day; stampMs += second) {
        if (stampMs % (12 * hour) < 11 * hour) {
            history.noteAltitude(aircraft, feetAt(stampMs), stampMs);
        }
    }
    history.noteAltitude(aircraft, -50, hour);
    const std::vector<PastAltitude>& altitudes = history.altitudesOf(aircraft);
    EXPECT_LE(altitudes.size(), TrackHistory::mostPoints);
    EXPECT_EQ(altitudes.capacity(), TrackHistory::mostPoints);
    EXPECT_EQ(altitudes.front().stampMs, 0U);
    EXPECT_EQ(altitudes.back().feet, -50);
    std::vector<u64> gapsEnd;
    for (std::size_t i = 1; i < altitudes.size(); ++i) {
        const PastAltitude& from = altitudes[i - 1];
        const PastAltitude& to = altitudes[i];
        if (to.afterGap) {
            gapsEnd.push_back(to.stampMs);
            continue;
        }
        for (u64 stampMs = from.stampMs; stampMs < to.stampMs; stampMs += second) {
            const double part = static_cast<double>(stampMs - from.stampMs) /
                                static_cast<double>(to.stampMs - from.stampMs);
            ASSERT_NEAR(from.feet + part * (to.feet - from.feet), feetAt(stampMs), 250) << stampMs;
        }
    }
    EXPECT_EQ(gapsEnd, (std::vector<u64>{12 * hour, hour}));
}

// Points of one time, or each after a gap: the bound holds all the same.
TEST(TrackHistory, HoldsItsBoundWhateverTheStamps) {
    TrackHistory history;
    for (u64 i = 0; i < 2000; ++i) {
        history.notePosition(aircraft, {{i % 2 == 0 ? 0.0 : 90.0, static_cast<double>(i)}, 5});
        history.noteAltitude(aircraft, i % 2 == 0 ? 0 : 100000, i % 3 * hour);
        ASSERT_LE(history.pathOf(aircraft).size(), TrackHistory::mostPoints);
        ASSERT_LE(history.altitudesOf(aircraft).size(), TrackHistory::mostPoints);
    }
    EXPECT_EQ(history.pathOf(aircraft).front().place.longitude, 0);
    EXPECT_EQ(history.pathOf(aircraft).back().place.longitude, 1999);
}

} // namespace

} // namespace tolvarin::ondrel::client
