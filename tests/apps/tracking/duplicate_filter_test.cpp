#include "apps/tracking/duplicate_filter.h"

#include <gtest/gtest.h>

#include <string>

namespace tolvarin::ondrel::client {

namespace {

/// True for a reply that counts.
bool take(DuplicateFilter& filter, const std::string& bytes, unsigned source, u64 timeMs) {
    if (filter.heardElsewhere(bytes, source, timeMs)) {
        return false;
    }
    filter.keep(bytes, source, timeMs);
    return true;
}

TEST(DuplicateFilter, CountsAReplyOfSeveralSourcesOnce) {
    DuplicateFilter filter;
    EXPECT_TRUE(take(filter, "a", 0, 1000));
    EXPECT_FALSE(take(filter, "a", 1, 1500));
    EXPECT_FALSE(take(filter, "a", 2, 990)); // its clock is a little behind
    EXPECT_TRUE(take(filter, "b", 1, 1000));
    EXPECT_TRUE(take(filter, "a", 3, 1501)) << "too late";
}

TEST(DuplicateFilter, CountsWhatOneSourceHearsAgain) {
    DuplicateFilter filter;
    EXPECT_TRUE(take(filter, "a", 0, 1000));
    EXPECT_TRUE(take(filter, "a", 0, 1050));
    EXPECT_FALSE(take(filter, "a", 1, 1010));
    EXPECT_FALSE(take(filter, "a", 1, 1060));
    EXPECT_TRUE(take(filter, "a", 1, 1100)) << "the third time it was sent";
    EXPECT_FALSE(take(filter, "a", 0, 1110));
}

// Whatever the window: each of two sources hears each of many replies.
TEST(DuplicateFilter, ForgetsNothingWithinTheWindow) {
    DuplicateFilter filter;
    unsigned taken = 0;
    for (u64 time = 0; time < 10000; time += 7) {
        taken += take(filter, std::to_string(time), 0, time) ? 1U : 0U;
        if (time >= 490) {
            taken += take(filter, std::to_string(time - 490), 1, time) ? 1U : 0U;
        }
    }
    EXPECT_EQ(taken, 10000U / 7 + 1);
}

} // namespace

} // namespace tolvarin::ondrel::client
