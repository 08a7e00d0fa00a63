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
    EXPECT_EQ(clock.timeOf(6000, now), now + 1000);
    EXPECT_EQ(clock.timeOf(8001, now + 2000), now + 2000) << "more than a second ahead";
    EXPECT_EQ(clock.timeOf(8101, now + 2500), now + 2100);
    EXPECT_EQ(clock.timeOf(3, now + 3000), now + 3000) << "a counter that began anew";
    EXPECT_EQ(clock.timeOf(203, now + 3900), now + 3200);
}

} // namespace

} // namespace tolvarin::ondrel::client
