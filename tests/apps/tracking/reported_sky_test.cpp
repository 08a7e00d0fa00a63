#include "apps/tracking/reported_sky.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace tolvarin::ondrel::client {

namespace {

constexpr u64 start = 1700000000000;

/// Reports an aircraft with its last update so many seconds after the start; negative: before.
class ReportedSkyTest : public testing::Test {
protected:
    static TrackedAircraft report(u32 address, int second, u32 messages = 1) {
        TrackedAircraft aircraft;
        aircraft.setIcaoAddress(address);
        aircraft.setLastUpdate(time(second));
        aircraft.messagesByFormat[17] = messages;
        return aircraft;
    }

    static u64 time(int second) { return start + static_cast<u64>(1000 * second); }

    /// When the clock shows the time of the report.
    static bool take(ReportedSky& sky, u32 address, int second) {
        return sky.take(report(address, second), time(second));
    }

    /// "000001@5 000002@7"
    static std::string text(const std::vector<TrackedAircraft>& all) {
        std::string text;
        for (const TrackedAircraft& one : all) {
            const auto after = static_cast<std::int64_t>(one.lastUpdate() - start) / 1000;
            text += std::to_string(one.icaoAddress()) + '@' + std::to_string(after) + ' ';
        }
        return text;
    }

    ReportedSky _sky{300000};
};

TEST_F(ReportedSkyTest, KeepsTheNewestReportOfEachAircraft) {
    EXPECT_TRUE(take(_sky, 2, 1));
    EXPECT_TRUE(take(_sky, 1, 5));
    EXPECT_TRUE(take(_sky, 2, 4));
    EXPECT_FALSE(take(_sky, 2, 3));
    EXPECT_FALSE(take(_sky, 2, 4));
    EXPECT_EQ(text(_sky.aircraft()), "1@5 2@4 ");
    EXPECT_EQ(_sky.counts().taken, 3U);
    EXPECT_EQ(_sky.counts().known, 2U);
}

TEST_F(ReportedSkyTest, TakesLaterMessagesOfTheSameTime) {
    EXPECT_TRUE(_sky.take(report(1, 0, 7), start));
    EXPECT_TRUE(_sky.take(report(1, 0, 8), start));
    EXPECT_FALSE(_sky.take(report(1, 0, 7), start));
    EXPECT_EQ(_sky.aircraft().front().messages(), 8U);
}

TEST_F(ReportedSkyTest, HasTheTimeOfTheNewestReport) {
    EXPECT_EQ(_sky.now(), 0U);
    _sky.passTo(time(100));
    EXPECT_EQ(_sky.now(), 0U); // not before the first report
    take(_sky, 1, 5);
    take(_sky, 2, 3);
    EXPECT_EQ(_sky.now(), time(5));
}

TEST_F(ReportedSkyTest, LetsTheTimeGoOnWithTheClock) {
    constexpr int wrong = 7200; // the clock here
    _sky.take(report(1, 0), time(wrong));
    _sky.passTo(time(wrong + 10));
    EXPECT_EQ(_sky.now(), time(10));
    _sky.passTo(time(wrong + 9));
    EXPECT_EQ(_sky.now(), time(10)); // it never goes back
    _sky.take(report(1, 12), time(wrong + 13));
    _sky.passTo(time(wrong + 14));
    EXPECT_EQ(_sky.now(), time(13));
}

TEST_F(ReportedSkyTest, RemovesSilentAircraft) {
    take(_sky, 1, 0);
    take(_sky, 2, 1);
    take(_sky, 3, 299);
    EXPECT_EQ(text(_sky.removeSilent()), "");
    _sky.passTo(time(300));
    EXPECT_EQ(text(_sky.removeSilent()), "1@0 ");
    EXPECT_EQ(text(_sky.aircraft()), "2@1 3@299 ");
    EXPECT_EQ(_sky.counts().left, 1U);
}

TEST_F(ReportedSkyTest, TakesNoAircraftBackThatLeft) {
    take(_sky, 1, 0);
    take(_sky, 2, 300);
    _sky.removeSilent();
    EXPECT_FALSE(_sky.take(report(1, 0), time(300)));
    EXPECT_TRUE(_sky.take(report(1, 1), time(300)));
    EXPECT_EQ(_sky.counts().silent, 1U);
}

TEST_F(ReportedSkyTest, KeepsSilentAircraftIfNoneShallLeave) {
    ReportedSky sky(std::nullopt);
    take(sky, 1, 0);
    take(sky, 2, 10000);
    EXPECT_EQ(text(sky.removeSilent()), "");
    EXPECT_EQ(sky.size(), 2U);
}

TEST_F(ReportedSkyTest, TakesNothingFarAheadOfTheClock) {
    take(_sky, 1, 0);
    EXPECT_TRUE(_sky.take(report(2, 60), start));
    EXPECT_FALSE(_sky.take(report(3, 61), start));
    TrackedAircraft last = report(4, 0);
    last.setLastUpdate(~u64{0});
    EXPECT_FALSE(_sky.take(last, start));
    EXPECT_EQ(_sky.now(), time(60));
    EXPECT_EQ(_sky.counts().ahead, 2U);
}

TEST_F(ReportedSkyTest, IsBounded) {
    for (u32 address = 1; address <= ReportedSky::mostAircraft; ++address) {
        ASSERT_TRUE(take(_sky, address, address == 1 ? 0 : 100));
    }
    EXPECT_FALSE(take(_sky, 0xABCDEF, 101));
    EXPECT_TRUE(take(_sky, 2, 101));
    EXPECT_EQ(_sky.counts().noRoom, 1U);
    _sky.passTo(time(300));
    _sky.removeSilent();
    EXPECT_TRUE(take(_sky, 0xABCDEF, 300));
    EXPECT_EQ(_sky.size(), ReportedSky::mostAircraft);
}

} // namespace

} // namespace tolvarin::ondrel::client
