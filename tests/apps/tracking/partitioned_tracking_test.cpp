#include "apps/tracking/partitioned_tracking.h"

#include "apps/common/text.h"
#include "apps/decoding/decoded_reply.h"
#include "apps/reply_of_line.h"

#include "simulator/frame_encoder.h"

#include <gtest/gtest.h>

#include <string>

namespace tolvarin::ondrel::client {

namespace {

class PartitionedTrackingTest : public testing::Test {
protected:
    static const ADSBTarget* take(PartitionedTracking& tracking, u32 address, u64 stampMs) {
        Reply reply;
        reply.bytes = simulator::df4(address, {0}, 1000);
        reply.stampMs = stampMs;
        reply.grade = ModeSMessage::High;
        ModeSDecoder decoder;
        tracking.moveTo(stampMs);
        return tracking.take(decodeReply(decoder, reply).get());
    }
};

TEST_F(PartitionedTrackingTest, HoldsMoreThanOneTable) {
    PartitionedTracking tracking({{0, 1, 2, 3}, 4}, std::nullopt);
    for (u32 address = 0xA00000; address < 0xA00000 + 12000; ++address) {
        ASSERT_NE(take(tracking, address, 1000), nullptr);
    }
    const auto aircraft = tracking.aircraft();
    ASSERT_EQ(aircraft.size(), 12000U);
    EXPECT_EQ(tracking.counts().aircraft, 12000U);
    for (u32 i = 0; i < 12000; ++i) {
        ASSERT_EQ(aircraft[i].icaoAddress(), 0xA00000 + i);
    }
}

TEST_F(PartitionedTrackingTest, TracksItsOwnPartsOnly) {
    constexpr unsigned count = 8;
    PartitionedTracking one({{0, 1, 2}, count}, std::nullopt);
    PartitionedTracking other({{3, 4, 5, 6, 7}, count}, std::nullopt);
    for (u32 address = 0x3C0000; address < 0x3C0000 + 1000; ++address) {
        const bool isFirst = take(one, address, 1000) != nullptr;
        EXPECT_NE(isFirst, take(other, address, 1000) != nullptr);
        EXPECT_EQ(isFirst, partitionOf(address, count) < 3);
    }
    EXPECT_EQ(one.counts().aircraft + other.counts().aircraft, 1000U);
    EXPECT_EQ(one.ofOtherParts() + other.ofOtherParts(), 1000U);
    EXPECT_GT(one.counts().aircraft, 3 * 1000 / count * 9 / 10) << "the parts are of like size";
}

TEST_F(PartitionedTrackingTest, LeavesOutWhatComesTooLate) {
    PartitionedTracking tracking({{0}, 1}, std::nullopt);
    tracking.leaveOutLate();
    EXPECT_NE(take(tracking, 0xA00001, 50000), nullptr);
    EXPECT_NE(take(tracking, 0xA00001, 49000), nullptr) << "sites are not that exact";
    EXPECT_EQ(take(tracking, 0xA00001, 48999), nullptr);
    EXPECT_NE(take(tracking, 0xA00002, 20000), nullptr) << "the only one of this aircraft";
    EXPECT_EQ(tracking.late(), 1U);
    EXPECT_EQ(tracking.counts().replies, 4U);
}

} // namespace

} // namespace tolvarin::ondrel::client
