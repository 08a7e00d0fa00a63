#include "apps/tracking/report_turns.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <map>

namespace tolvarin::ondrel::client {

namespace {

constexpr u32 aircraftCount = 1000;

class ReportTurnsTest : public testing::Test {
protected:
    ReportTurnsTest() {
        for (u32 i = 0; i < aircraftCount; ++i) {
            _all[i].setIcaoAddress(0x400000 + i);
            _all[i].setLastUpdate(1000);
        }
    }

    /// How often each aircraft was reported in so many turns.
    std::map<u32, unsigned> reported(unsigned turns) {
        std::map<u32, unsigned> times;
        for (unsigned i = 0; i < turns; ++i) {
            for (const TrackedAircraft& one : _turns.next(_all)) {
                ++times[one.icaoAddress()];
            }
        }
        return times;
    }

    std::vector<TrackedAircraft> _all{aircraftCount};
    ReportTurns _turns;
};

TEST_F(ReportTurnsTest, ReportsAFifthOfAllInEachTurn) {
    for (unsigned turn = 0; turn < ReportTurns::count; ++turn) {
        const std::size_t chosen = _turns.next(_all).size();
        EXPECT_GT(chosen, aircraftCount / 10);
        EXPECT_LT(chosen, aircraftCount / 3);
    }
}

TEST_F(ReportTurnsTest, ReportsEachThatWasUpdatedOnceInFiveTurns) {
    const auto first = reported(ReportTurns::count);
    EXPECT_EQ(first.size(), aircraftCount);
    EXPECT_TRUE(reported(ReportTurns::count).empty());
    _all[7].setLastUpdate(1001);
    _all[8].messagesByFormat[17] = 1; // in the same millisecond as the last one
    const std::map<u32, unsigned> both = {{0x400007, 1}, {0x400008, 1}};
    EXPECT_EQ(reported(2 * ReportTurns::count), both);
}

TEST_F(ReportTurnsTest, ReportsAnAircraftThatCameBack) {
    reported(ReportTurns::count);
    const TrackedAircraft last = _all.back();
    _all.pop_back();
    reported(ReportTurns::count);
    _all.push_back(last);
    EXPECT_EQ(reported(ReportTurns::count).size(), 1U);
}

TEST_F(ReportTurnsTest, ReportsAllAgainWhenItForgot) {
    reported(ReportTurns::count);
    _turns.forget();
    EXPECT_EQ(reported(ReportTurns::count).size(), aircraftCount);
}

} // namespace

} // namespace tolvarin::ondrel::client
