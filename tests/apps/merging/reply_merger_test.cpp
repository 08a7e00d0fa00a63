#include "apps/merging/reply_merger.h"

#include <gtest/gtest.h>

#include <string>

namespace tolvarin::ondrel::client {

namespace {

class ReplyMergerTest : public testing::Test {
protected:
    void add(const std::string& bytes, unsigned site, u64 stampMs,
             ModeSMessage::Confidence confidence = ModeSMessage::Low, u8 amplitude = 0) {
        merger.add({bytes, stampMs, confidence, amplitude}, site, now);
    }

    /// What is due now: "a1 b2" for two replies, of which the second one was heard by two sites.
    std::string taken() {
        std::string all;
        while (merger.take(merged, now)) {
            all += (all.empty() ? "" : " ") + merged.reply.bytes + std::to_string(merged.sites);
        }
        return all;
    }

    std::string rest() {
        now += ReplyMerger::longestWait;
        return taken();
    }

    ReplyMerger merger;
    MergedReply merged;
    u64 now = 1000000;
};

TEST_F(ReplyMergerTest, GivesRepliesInTheOrderOfTheirStamps) {
    add("c", 0, 5300);
    add("a", 1, 5000);
    add("b", 0, 5100);
    EXPECT_EQ(taken(), "") << "an older one may still come";
    add("d", 1, 6100);
    EXPECT_EQ(taken(), "a1 b1");
    EXPECT_EQ(rest(), "c1 d1") << "nothing new came for a second";
    add("e", 0, 1000);
    EXPECT_EQ(taken(), "e1") << "later than any wait";
}

TEST_F(ReplyMergerTest, WaitsForOthersWhereASiteIsAhead) {
    add("a", 0, now - 300);
    add("x", 1, now + 30000);
    EXPECT_EQ(taken(), "");
    now += 100;
    add("b", 2, now - 500);
    EXPECT_FALSE(merger.hasGivenAllTo(now));
    now += 900;
    add("y", 1, now + 30000);
    EXPECT_EQ(taken(), "b1 a1 x1");
    EXPECT_TRUE(merger.hasGivenAllTo(now - 1000)) << "that of x";
    EXPECT_EQ(rest(), "y1");
}

TEST_F(ReplyMergerTest, MakesOneOfWhatSeveralSitesHeard) {
    add("a", 0, 5000, ModeSMessage::Low, 50);
    add("a", 1, 5500, ModeSMessage::High, 20);
    add("a", 2, 4501, ModeSMessage::Medium, 90);
    add("a", 3, 5501);
    EXPECT_EQ(merger.duplicates(), 2U);
    now += ReplyMerger::longestWait;
    ASSERT_TRUE(merger.take(merged, now));
    EXPECT_EQ(merged.sites, 3U);
    EXPECT_EQ(merged.reply.stampMs, 5000U);
    EXPECT_EQ(merged.reply.confidence, ModeSMessage::High);
    EXPECT_EQ(merged.reply.signalAmplitude, 90);
    EXPECT_EQ(taken(), "a1") << "half a second later it was sent again";
}

TEST_F(ReplyMergerTest, KeepsWhatOneSiteHeardTwice) {
    for (const u64 stamp : {5000U, 5050U}) {
        add("a", 0, stamp);
    }
    for (const u64 stamp : {5010U, 5060U, 5100U}) {
        add("a", 1, stamp);
    }
    EXPECT_EQ(rest(), "a2 a2 a1");
}

TEST_F(ReplyMergerTest, KnowsForAWhileWhatItGave) {
    add("a", 0, 5000);
    EXPECT_EQ(rest(), "a1");
    add("a", 1, 5020);
    EXPECT_EQ(rest(), "");
    EXPECT_EQ(merger.duplicates(), 1U);
}

TEST_F(ReplyMergerTest, TellsWhenABatchIsThrough) {
    EXPECT_TRUE(merger.hasGivenAllTo(5000));
    add("a", 0, 5000);
    add("b", 0, 5700);
    EXPECT_FALSE(merger.hasGivenAllTo(5000));
    add("c", 0, 6000);
    EXPECT_EQ(taken(), "a1");
    EXPECT_TRUE(merger.hasGivenAllTo(5000));
    EXPECT_FALSE(merger.hasGivenAllTo(5300)) << "its reply may be one with b";
    EXPECT_EQ(rest(), "b1 c1");
    EXPECT_TRUE(merger.hasGivenAllTo(99999));
}

// A site that repeats one reply delays no other: the time for each stays the same.
TEST_F(ReplyMergerTest, TakesAnyNumberOfEqualReplies) {
    constexpr unsigned many = 300000;
    for (unsigned i = 0; i < many; ++i) {
        add("a", 0, 5000 + i / 1000);
    }
    unsigned given = 0;
    now += ReplyMerger::longestWait;
    for (; merger.take(merged, now); ++given) {
    }
    EXPECT_EQ(given, many);
}

// Each of three sites hears each of many replies, more than the filter keeps at a time.
TEST_F(ReplyMergerTest, ForgetsNothingWithinTheWindow) {
    unsigned given = 0;
    for (u64 time = 2000; time < 60000; ++time) {
        for (unsigned site = 0; site < 3; ++site) {
            const u64 heard = time - u64{site} * 240;
            add(std::to_string(heard), site, heard + site);
        }
        for (; merger.take(merged, now); ++given) {
        }
    }
    EXPECT_NE(rest(), "");
    EXPECT_EQ(merger.duplicates(), 3 * 58000U - (58000U + 480));
    EXPECT_GT(given, 56000U);
}

} // namespace

} // namespace tolvarin::ondrel::client
