#include "apps/common/text.h"

#include <gtest/gtest.h>

namespace tolvarin::ondrel::client {

namespace {

TEST(Text, OfNumbersHasNoNegativeZeroAndTellsTheTime) {
    EXPECT_EQ(decimalText(-0.04, 1), "0.0");
    EXPECT_EQ(decimalText(-0.06, 1), "-0.1");
    EXPECT_EQ(decimalText(-0.0, 0), "0");
    EXPECT_EQ(timeText(1641427457080), "2022-01-06T00:04:17.080Z");
    EXPECT_EQ(timeText(23456248059), "23456248.059"); // as far as the counter goes
    EXPECT_EQ(timeText(23456248060), "1970-09-29T11:37:28.060Z");
    EXPECT_NE(timeText(~u64{0}), "");
}

} // namespace

} // namespace tolvarin::ondrel::client
