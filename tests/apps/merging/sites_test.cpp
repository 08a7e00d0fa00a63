// What a worker knows of sites: which batches came, and how their clocks differ.

#include "apps/merging/seen_batches.h"
#include "apps/merging/site_clocks.h"

#include "simulator/frame_encoder.h"
#include "simulator/payload_encoder.h"

#include <gtest/gtest.h>

#include <string>

namespace tolvarin::ondrel::client {

namespace {

ReplyBatch batch(const std::string& site, u64 started, u64 number) {
    return {site, started, number, {}};
}

TEST(SeenBatches, RecognisesABatchThatCameBefore) {
    SeenBatches seen;
    EXPECT_EQ(seen.siteOf(batch("a", 1, 1)), 0U);
    EXPECT_EQ(seen.siteOf(batch("b", 1, 1)), 1U);
    EXPECT_EQ(seen.siteOf(batch("a", 9, 9)), 0U);
    for (const u64 number : {5U, 3U, 20000U, 4U, 3618U, 40000U}) {
        EXPECT_TRUE(seen.note(0, batch("a", 1, number))) << number;
    }
    EXPECT_TRUE(seen.note(1, batch("b", 1, 5)));
    for (const u64 number : {20000U, 40000U}) {
        EXPECT_EQ(seen.note(0, batch("a", 1, number)), number == 20000) << "too long ago to know";
    }
    EXPECT_TRUE(seen.note(0, batch("a", 1, 30000)));
    EXPECT_FALSE(seen.note(0, batch("a", 1, 30000)));
    for (const u64 number : {~u64{0} - 1, ~u64{0}}) {
        EXPECT_TRUE(seen.note(0, batch("a", 1, number)));
        EXPECT_FALSE(seen.note(0, batch("a", 1, number)));
    }
}

TEST(SeenBatches, TakesABatchJustOutOfSightForNew) {
    SeenBatches seen;
    seen.siteOf(batch("a", 1, 1));
    EXPECT_TRUE(seen.note(0, batch("a", 1, 20000)));
    EXPECT_TRUE(seen.note(0, batch("a", 1, 20000 - 16384)));
    EXPECT_TRUE(seen.note(0, batch("a", 1, 20000 - 16383)));
    EXPECT_FALSE(seen.note(0, batch("a", 1, 20000 - 16383)));
    EXPECT_TRUE(seen.note(0, batch("a", 1, 20000 - 16384))) << "which stays so";
}

TEST(SeenBatches, CountsAnewWhenASiteStartsAnew) {
    SeenBatches seen;
    seen.siteOf(batch("a", 1000, 1));
    EXPECT_TRUE(seen.note(0, batch("a", 1000, 1)));
    EXPECT_TRUE(seen.note(0, batch("a", 2000, 1)));
    EXPECT_FALSE(seen.note(0, batch("a", 2000, 1)));
    EXPECT_TRUE(seen.note(0, batch("a", 1000, 2))) << "from its backlog";
    EXPECT_FALSE(seen.note(0, batch("a", 2000, 1)));
    EXPECT_FALSE(seen.note(0, batch("a", 1000, 1))) << "from the store once more";
}

// A batch that anyone sent in the name of a site, say.
TEST(SeenBatches, GoesOnAfterAStartThatTellsAnyTime) {
    SeenBatches seen;
    seen.siteOf(batch("a", 1000, 1));
    EXPECT_TRUE(seen.note(0, batch("a", 1000, 1)));
    EXPECT_TRUE(seen.note(0, batch("a", ~u64{0}, 1)));
    EXPECT_FALSE(seen.note(0, batch("a", 1000, 1)));
    EXPECT_TRUE(seen.note(0, batch("a", 2000, 1)));
    EXPECT_FALSE(seen.note(0, batch("a", 2000, 1)));
}

TEST(SeenBatches, HasABound) {
    SeenBatches seen;
    for (std::size_t i = 0; i < SeenBatches::mostSites; ++i) {
        EXPECT_TRUE(seen.siteOf(batch(std::to_string(i), 1, 1)));
    }
    EXPECT_FALSE(seen.siteOf(batch("one more", 1, 1)));
    EXPECT_TRUE(seen.siteOf(batch("7", 1, 1)));
}

/// Squitters with different positions.
GradedReply squitter(int altitudeFt, u64 stampMs) {
    simulator::AirbornePosition position;
    position.altitudeFt = altitudeFt;
    return {simulator::df17(0x4840D6, 5, simulator::airbornePosition(position)), stampMs,
            ModeSMessage::High, 0};
}

TEST(SiteClocks, TellWhichClockIsWrong) {
    SiteClocks clocks;
    for (int i = 0; i < 2000; ++i) {
        const u64 time = 1000000 + static_cast<u64>(i) * 100;
        clocks.note(squitter(25 * i, time), 0);
        clocks.note(squitter(25 * i, time + 3), 1);
        clocks.note(squitter(25 * i, time - 2500), 2);
    }
    const auto changes = clocks.changes();
    ASSERT_EQ(changes.size(), 1U);
    EXPECT_EQ(changes.front().site, 2U);
    EXPECT_TRUE(changes.front().isWrong);
    EXPECT_NEAR(static_cast<double>(changes.front().offsetMs), -2500, 3);
    EXPECT_TRUE(clocks.changes().empty()) << "it was told";
    for (int i = 2000; i < 4000; ++i) {
        clocks.note(squitter(25 * i, 1), 0);
        clocks.note(squitter(25 * i, 1), 2);
    }
    ASSERT_EQ(clocks.changes().size(), 1U);
    EXPECT_EQ(clocks.offsetOf(2), 0);
    EXPECT_FALSE(clocks.offsetOf(7));
}

TEST(SiteClocks, TellHowFarEachOfTwoSitesIsAheadOfTheOther) {
    SiteClocks clocks;
    for (int i = 0; i < 2000; ++i) {
        const u64 time = 1000000 + static_cast<u64>(i) * 100;
        clocks.note(squitter(25 * i, time), 0);
        clocks.note(squitter(25 * i, time + 3), 1);
    }
    EXPECT_EQ(clocks.offsetOf(0), -3);
    EXPECT_EQ(clocks.offsetOf(1), 3);
}

TEST(SiteClocks, LookAtPositionsInFlightOnly) {
    SiteClocks clocks;
    for (int i = 0; i < 2000; ++i) {
        const std::string bytes = simulator::df11(static_cast<unsigned>(i), 5, 0);
        clocks.note({bytes, 1000, ModeSMessage::High, 0}, 0);
        clocks.note({bytes, 9000, ModeSMessage::High, 0}, 1);
    }
    EXPECT_FALSE(clocks.offsetOf(1));
}

} // namespace

} // namespace tolvarin::ondrel::client
