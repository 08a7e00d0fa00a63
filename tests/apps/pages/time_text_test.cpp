#include "apps/pages/time_text.h"

#include <gtest/gtest.h>

#include <string>

namespace tolvarin::ondrel::client {

namespace {

TEST(TimeText, TellsHowLongAgo) {
    struct Row {
        u64 milliseconds;
        std::string text;
    };
    constexpr u64 minute = 60000;
    constexpr u64 hour = 60 * minute;
    for (const Row& row : {
             Row{0, "now"},
             {999, "now"},
             {1000, "1 s ago"},
             {minute - 1, "59 s ago"},
             {minute, "1 min ago"},
             {minute + 1000, "1 min 1 s ago"},
             {hour - 1, "59 min 59 s ago"},
             {hour + 59999, "1 h ago"}, // the seconds of an hour do not count
             {2 * hour + 5 * minute, "2 h 5 min ago"},
             {24 * hour, "1 d ago"},
             {76 * hour, "3 d 4 h ago"},
             {~u64{0}, "213503982334 d 14 h ago"},
         }) {
        EXPECT_EQ(agoText(row.milliseconds), row.text) << row.milliseconds;
    }
}

// 1700000000 is 2023-11-14, 22:13:20 UTC.
TEST(TimeText, NamesTheDateOnce) {
    constexpr u64 evening = 1700000000250;
    constexpr u64 hour = 3600000;
    EXPECT_EQ(dateAndTime(evening), "2023-11-14 22:13:20 UTC");
    EXPECT_EQ(dateAndTime(12500), "12.500 s");
    EXPECT_EQ(fromTo(evening, evening + hour), "2023-11-14 22:13:20 to 23:13:20 UTC");
    EXPECT_EQ(fromTo(evening, evening + 2 * hour),
              "2023-11-14 22:13:20 UTC to 2023-11-15 00:13:20 UTC");
    EXPECT_EQ(fromTo(500, 12500), "0.500 s to 12.500 s");
}

} // namespace

} // namespace tolvarin::ondrel::client
