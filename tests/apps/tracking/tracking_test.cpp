#include "apps/terminal/summaries.h"
#include "apps/tracked_lines.h"
#include "apps/tracking/track_history.h"

#include <gtest/gtest.h>

#include <vector>

namespace tolvarin::ondrel::client {

namespace {

TEST(Tracking, CountsAndKills) {
    TrackedLines tracked(threeAircraft());
    EXPECT_TRUE(tracked.tracking.killSilentFor(3301).empty());
    EXPECT_TRUE(tracked.tracking.killSilentFor(100000).empty()); // longer than the recording
    const auto killed = tracked.tracking.killSilentFor(3300);
    ASSERT_EQ(killed.size(), 1U);
    EXPECT_EQ(killed.front().icaoAddr(), 0x40621DU);
    EXPECT_EQ(trackSummary({tracked.tracking.counts(), 1, 2, 3}),
              "replies read                  5\n"
              "  tracked                     5  100.0 %\n"
              "aircraft                      2\n"
              "killed                        1\n"
              "stamps not believed           1\n"
              "stamps of other kind          2\n"
              "lines not readable            3");
}

TEST(TrackHistory, HasThePositionsInTheirOrder) {
    const TrackedLines tracked(threeAircraft());
    const std::vector<ADSBTarget> aircraft = tracked.tracking.aircraft();
    TrackHistory history;
    for (const ADSBTarget& one : aircraft) {
        history.note(one);
    }
    EXPECT_EQ(history.trackOf(0x4840D6).size(), 0U);
    ASSERT_EQ(history.trackOf(0x40621D).size(), 1U);
    EXPECT_NEAR(history.trackOf(0x40621D).front().latitude, 52.2572, 1e-4);
    history.note(aircraft.front()); // at the same position
    EXPECT_EQ(history.trackOf(0x40621D).size(), 1U);
    history.forget(0x40621D);
    EXPECT_EQ(history.trackOf(0x40621D).size(), 0U);
}

} // namespace

} // namespace tolvarin::ondrel::client
