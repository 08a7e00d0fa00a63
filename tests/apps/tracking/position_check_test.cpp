#include "apps/tracking/position_check.h"

#include <gtest/gtest.h>

#include <vector>

namespace tolvarin::ondrel::client {

namespace {

using Verdict = PositionCheck::Verdict;

constexpr u32 aircraft = 4095;
constexpr double mile = 1.0 / 60; // degrees of latitude

struct Step {
    u64 second;
    double miles; ///< north of 50 degrees
    bool odd;
    Verdict verdict;
};

/// Runs the steps, and gives how far north the accepted position is; -1 without one.
double milesAfter(const std::vector<Step>& steps) {
    PositionCheck check;
    for (const Step& step : steps) {
        EXPECT_EQ(
            check.check(aircraft, {{50 + step.miles * mile, 8}, step.second * 1000}, step.odd),
            step.verdict)
            << step.second;
    }
    const auto position = check.positionOf(aircraft);
    return position ? (position->place.latitude - 50) / mile : -1;
}

TEST(PositionCheck, WaitsForASecondPositionThatAgrees) {
    EXPECT_EQ(milesAfter({{1, 0, false, Verdict::Waiting}}), -1);
    EXPECT_NEAR(milesAfter({{1, 0, false, Verdict::Waiting}, {2, 0.1, true, Verdict::Accepted}}),
                0.1, 1e-9);
    // the first one was false
    EXPECT_NEAR(milesAfter({{1, 360, false, Verdict::Waiting},
                            {2, 0, true, Verdict::Refused},
                            {3, 0.1, false, Verdict::Accepted}}),
                0.1, 1e-9);
    // both have the same odd message
    EXPECT_EQ(milesAfter({{1, 360, false, Verdict::Waiting}, {2, 360, false, Verdict::Waiting}}),
              -1);
}

TEST(PositionCheck, AllowsAMileAndTheWayOfTheGreatestSpeed) {
    const struct {
        u64 seconds;
        double reach; ///< nautical miles
    } rows[] = {{0, 1}, {9, 6}, {90, 51}, {600, 1 + 2000.0 / 6}, {36000, 1 + 2000.0 / 6}};
    for (const auto& row : rows) {
        for (const double miles : {row.reach - 0.01, row.reach + 0.01}) {
            const bool near = miles < row.reach;
            milesAfter(
                {{1000, 0, false, Verdict::Waiting},
                 {1000, 0, true, Verdict::Accepted},
                 {1000 + row.seconds, miles, false, near ? Verdict::Accepted : Verdict::Refused}});
        }
    }
    PositionCheck fast(20000);
    fast.check(aircraft, {{50, 8}, 1000}, false);
    EXPECT_EQ(fast.check(aircraft, {{50 + 50 * mile, 8}, 10000}, true), Verdict::Accepted);
}

TEST(PositionCheck, IsOverruledByThreeInARow) {
    const std::vector<Step> known = {{1, 0, false, Verdict::Waiting},
                                     {1, 0, true, Verdict::Accepted}};
    auto steps = known;
    steps.insert(steps.end(), {{2, 360, false, Verdict::Refused},
                               {3, 360, true, Verdict::Refused},
                               {4, 360, false, Verdict::Overruled},
                               {5, 0, true, Verdict::Refused}});
    EXPECT_NEAR(milesAfter(steps), 360, 1e-9);
    steps = known; // the third is not in a row
    steps.insert(steps.end(), {{2, 360, false, Verdict::Refused},
                               {3, 360, true, Verdict::Refused},
                               {4, 0, false, Verdict::Accepted},
                               {5, 360, true, Verdict::Refused},
                               {6, 720, false, Verdict::Refused}});
    EXPECT_NEAR(milesAfter(steps), 0, 1e-9);
    steps = known; // all have the same odd message
    for (u64 second = 2; second < 9; ++second) {
        steps.push_back({second, 360, false, Verdict::Refused});
    }
    EXPECT_NEAR(milesAfter(steps), 0, 1e-9);
}

TEST(PositionCheck, RefusesLatitudesBeyondThePoles) {
    PositionCheck check;
    for (const bool odd : {false, true, false, true}) {
        EXPECT_EQ(check.check(aircraft, {{90.1, 8}, 1000}, odd), Verdict::Refused);
    }
    EXPECT_FALSE(check.positionOf(aircraft));
    EXPECT_EQ(check.check(aircraft, {{-90, 8}, 1000}, true), Verdict::Waiting);
}

TEST(GeoPoint, KnowsTheWayAroundTheEarth) {
    EXPECT_NEAR(nauticalMiles({0, 179.5}, {0, -179.5}), 60, 1e-9);
    EXPECT_NEAR(nauticalMiles({89, 0}, {89, 180}), 120, 1e-9);
    EXPECT_NEAR(nauticalMiles({90, 0}, {-90, 77}), 10800, 1e-9);
}

} // namespace

} // namespace tolvarin::ondrel::client
