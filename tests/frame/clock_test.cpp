#include "clock.h"

#include "support/movable_clock.h"

#include <gtest/gtest.h>

#include <ctime>

namespace tolvarin::ondrel {
namespace {

TEST(Clock, GivesTheSecondOfTheSystemClock) {
    const std::time_t before = std::time(nullptr);
    const std::int64_t seconds = clock::seconds();
    EXPECT_LE(before, seconds);
    EXPECT_LE(seconds, std::time(nullptr));
}

TEST(Clock, CountsWholeSecondsInMilliseconds) {
    EXPECT_EQ(clock::wholeSecondMilliseconds() % 1000, 0U);
    test::MovableClock clock(1'234'567'890);
    EXPECT_EQ(clock::wholeSecondMilliseconds(), 1'234'567'890'000U);
    clock.advance(1);
    EXPECT_EQ(clock::seconds(), 1'234'567'891);
}

TEST(Clock, GoesBackToTheSystemClock) {
    { const test::MovableClock clock(1); }
    EXPECT_GT(clock::seconds(), 1'000'000'000);
}

} // namespace
} // namespace tolvarin::ondrel
