#include "apps/input/receiver_counter.h"

#include <gtest/gtest.h>

namespace tolvarin::ondrel::client {

namespace {

u64 gps(u64 secondsOfDay, u64 nanoseconds) {
    return secondsOfDay << 30U | nanoseconds;
}

TEST(ReceiverCounter, CountsTicksOrTheTimeOfTheDay) {
    ReceiverCounter ticks;
    EXPECT_EQ(ticks.milliseconds(23999), 1U);
    EXPECT_EQ(ticks.milliseconds(0xFFFFFFFFFFFF), 23456248059U);
    ReceiverCounter time(ReceiverCounter::Kind::Gps);
    EXPECT_EQ(time.milliseconds(gps(3, 999999999)), 3999U);
    for (auto kind : {ReceiverCounter::Kind::TwelveMHz, ReceiverCounter::Kind::Gps}) {
        EXPECT_EQ(ReceiverCounter(kind).milliseconds(0xFF004D4C4154), std::nullopt);
    }
}

// Replies of two antennas may come out of order by a little.
TEST(ReceiverCounter, GoesOnAtMidnight) {
    constexpr u64 day = 86400000;
    ReceiverCounter time(ReceiverCounter::Kind::Gps);
    EXPECT_EQ(time.milliseconds(gps(86399, 0)), day - 1000);
    EXPECT_EQ(time.milliseconds(gps(0, 1000000)), day + 1);
    EXPECT_EQ(time.milliseconds(gps(86399, 999000000)), day - 1);
    EXPECT_EQ(time.milliseconds(gps(2, 0)), day + 2000);
    EXPECT_EQ(time.milliseconds(gps(40000, 0)), day + 40000000);
    EXPECT_EQ(time.milliseconds(gps(80000, 0)), day + 80000000);
    EXPECT_EQ(time.milliseconds(gps(0, 0)), 2 * day);
}

} // namespace

} // namespace tolvarin::ondrel::client
