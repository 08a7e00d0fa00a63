#include "apps/input/replay.h"

#include <gtest/gtest.h>

#include <optional>
#include <vector>

namespace tolvarin::ondrel::client {

namespace {

TEST(Stamping, IsDecidedByTheFirstReply) {
    const std::optional<u64> none;
    const struct {
        std::vector<std::optional<u64>> lines;
        std::vector<u64> counted; ///< the clock reads 1000, 1001, ...
        bool byClock;
    } rows[] = {
        {{5, none, none, 9, 6}, {5, 5, 5, 9, 6}, false},
        {{none, none, 5, 0}, {1000, 1001, 1002, 1003}, true},
        // 0 would be taken for no stamp
        {{0, 0, none, 4}, {1, 1, 1, 4}, false},
    };
    for (const auto& row : rows) {
        u64 clock = 1000;
        Stamping stamping([&clock] { return clock++; });
        std::vector<u64> counted;
        for (const auto& stamp : row.lines) {
            Reply reply{"x", stamp};
            stamping.stamp(reply);
            counted.push_back(reply.stampMs.value_or(0));
        }
        EXPECT_EQ(counted, row.counted);
        EXPECT_EQ(stamping.byClock(), row.byClock);
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
                                              {~u64{0}, true}}) {
        EXPECT_EQ(periods.ended(step.stamp), step.ends) << step.stamp;
    }
}

} // namespace

} // namespace tolvarin::ondrel::client
