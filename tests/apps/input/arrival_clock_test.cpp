#include "apps/input/arrival_clock.h"

#include <gtest/gtest.h>

namespace tolvarin::ondrel::client {

namespace {

constexpr u64 now = 1700000000000;

TEST(ArrivalClock, FollowsTheReceiverUntilItDrifts) {
    ArrivalClock clock;
    EXPECT_EQ(clock.timeOf(5000, now), now);
    EXPECT_EQ(clock.timeOf(5100, now + 900), now + 100); // late by the network
    EXPECT_EQ(clock.timeOf(std::nullopt, now + 950), now + 950);
    EXPECT_EQ(clock.timeOf(6000, now + 1000), now + 1000);
    EXPECT_EQ(clock.timeOf(6500, now + 2501), now + 2501) << "more than a second late";
    EXPECT_EQ(clock.timeOf(6600, now + 2700), now + 2601);
    EXPECT_EQ(clock.timeOf(3, now + 3000), now + 3000) << "a counter that began anew";
    EXPECT_EQ(clock.timeOf(203, now + 3900), now + 3200);
}

// Else two connections to one receiver would differ for ever.
TEST(ArrivalClock, IsNoLaterThanAnyArrival) {
    ArrivalClock clock;
    EXPECT_EQ(clock.timeOf(5000, now + 800), now + 800) << "the first one came late";
    EXPECT_EQ(clock.timeOf(5100, now + 110), now + 110);
    EXPECT_EQ(clock.timeOf(5200, now + 600), now + 210);
}

} // namespace

} // namespace tolvarin::ondrel::client
