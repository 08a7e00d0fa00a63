#include "apps/input/replay.h"

#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <vector>

namespace tolvarin::ondrel::client {

namespace {

constexpr u64 hour = 3600000;
constexpr u64 day = 24 * hour;
constexpr u64 start = 1700000000000;

TEST(Stamping, IsDecidedByTheFirstReply) {
    const std::optional<u64> none;
    const struct {
        std::vector<std::optional<u64>> lines;
        std::vector<u64> counted; ///< the clock reads 1000, 1001, ...
        bool byClock;
        u64 unused;    ///< stamps
        u64 unstamped; ///< replies
    } rows[] = {
        {{5, none, none, 9, 6}, {5, 5, 5, 9, 6}, false, 0, 2},
        {{none, none, 5, 0}, {1000, 1001, 1002, 1003}, true, 2, 0},
        // 0 would be taken for no stamp
        {{0, 0, none, 4}, {1, 1, 1, 4}, false, 0, 1},
    };
    for (const auto& row : rows) {
        u64 clock = 1000;
        Stamping stamping([](const std::string&) {}, std::nullopt, [&clock] { return clock++; });
        std::vector<u64> counted;
        for (const auto& stamp : row.lines) {
            Reply reply{"x", stamp};
            EXPECT_TRUE(stamping.stamp(reply));
            counted.push_back(reply.stampMs.value_or(0));
        }
        EXPECT_EQ(counted, row.counted);
        EXPECT_EQ(stamping.byClock(), row.byClock);
        EXPECT_EQ(stamping.unused(), row.unused);
        EXPECT_EQ(stamping.unstamped(), row.unstamped);
    }
}

TEST(Stamping, DoesNotFollowWildStamps) {
    const struct {
        std::vector<u64> stamps;  ///< ms after the start
        std::vector<u64> counted; ///< the same
        u64 now;
        u64 doubted;
    } rows[] = {
        // steps that are believed at once, and the first ones that are not
        {{day, day + 1, day - 9999, day + 1 + hour},
         {day, day + 1, day - 9999, day + 1 + hour},
         day + 1 + hour,
         0},
        {{day, day, day + hour + 1, day - 10001}, {day, day, day, day}, day, 2},
        // wild stamps that do not agree, and two that do
        {{0, 1, 90 * day, 30 * day, 60 * day, 2}, {0, 1, 1, 1, 1, 2}, 2, 3},
        {{0, 1, day, day + 1, 2}, {0, 1, 1, 1, 2}, 2, 2},
        // three in a row agree: a gap, and the way back
        {{0, 1, day, day + 5, day + 2, day + 3}, {0, 1, 1, 1, day + 2, day + 3}, day + 5, 2},
        {{day, day, 0, 1, 2, 3}, {day, day, day, day, 2, 3}, 3, 2},
        // a wild first stamp does not count for long
        {{90 * day, 0, 1, 2}, {90 * day, 0, 1, 2}, 2, 0},
    };
    for (const auto& row : rows) {
        int reports = 0;
        Stamping stamping([&reports](const std::string&) { ++reports; });
        std::vector<u64> counted;
        for (const u64 stamp : row.stamps) {
            Reply reply{"x", start + stamp};
            EXPECT_TRUE(stamping.stamp(reply));
            counted.push_back(*reply.stampMs - start);
        }
        EXPECT_EQ(counted, row.counted);
        EXPECT_EQ(stamping.now() - start, row.now);
        EXPECT_EQ(stamping.doubted(), row.doubted);
        EXPECT_LE(reports, 2);
        EXPECT_EQ(reports > 0, row.doubted > 0 || row.now < row.stamps.front());
    }
}

TEST(Stamping, TakesStampsOfOneKind) {
    std::vector<std::string> reports;
    Stamping stamping([&reports](const std::string& message) { reports.push_back(message); });
    Reply counter{"x", 5000, true};
    for (int i = 0; i < 3; ++i) {
        Reply reply{"x", start};
        EXPECT_EQ(stamping.stamp(i == 0 ? counter : reply), i == 0);
    }
    Reply none{"x", {}};
    EXPECT_TRUE(stamping.stamp(none));
    EXPECT_EQ(none.stampMs, 5000U);
    EXPECT_EQ(stamping.refused(), 2U);
    ASSERT_EQ(reports.size(), 1U);
    EXPECT_EQ(reports.front().find("reply 2 has seconds since 1970"), 0U);
}

TEST(Stamping, LeavesStampsOfSitesAsTheyAre) {
    u64 clock = start + 7000;
    Stamping stamping([](const std::string&) {}, std::nullopt, [&clock] { return clock; });
    for (const u64 stamp : {start, start + 900, start - 90000, start + 100}) {
        Reply reply{"x", stamp};
        reply.sites = 1;
        EXPECT_TRUE(stamping.stamp(reply));
        EXPECT_EQ(reply.stampMs, stamp);
    }
    EXPECT_EQ(stamping.now(), start + 900);
    stamping.passTo(clock + 2000); // the clock was 6.1 s ahead of the newest stamp
    EXPECT_EQ(stamping.now(), start + 2900);
}

TEST(Stamping, GivesACounterItsStart) {
    Stamping stamping([](const std::string&) {}, start);
    for (const u64 counter : {7000U, 6990U, 7005U}) {
        Reply reply{"x", counter, true};
        EXPECT_TRUE(stamping.stamp(reply));
        EXPECT_EQ(*reply.stampMs, start + counter - 7000);
    }
}

TEST(Periods, FollowEachOtherFromTheFirstStampOn) {
    struct Step {
        u64 stamp;
        bool ends;
    };
    Periods periods(10);
    for (const Step& step : std::vector<Step>{{1003, false},
                                              {1012, false},
                                              {1013, true},
                                              {1013, false},
                                              {1022, false},
                                              {1023, true},
                                              {1000, false}, // back
                                              {1057, true},  // over two that were empty
                                              {1062, false},
                                              {1063, true},
                                              {1000000, true},
                                              {5000, false}, // far back: it begins again
                                              {5009, false},
                                              {5010, true},
                                              {~u64{0}, true}}) {
        EXPECT_EQ(periods.ended(step.stamp), step.ends) << step.stamp;
    }
}

} // namespace

} // namespace tolvarin::ondrel::client
