#include "apps/terminal/summaries.h"
#include "apps/tracked_lines.h"

#include "simulator/cpr_encoder.h"
#include "simulator/frame_encoder.h"
#include "simulator/payload_encoder.h"

#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <vector>

namespace tolvarin::ondrel::client {

namespace {

TEST(Tracking, CountsAndKills) {
    TrackedLines tracked(threeAircraft());
    EXPECT_TRUE(tracked.tracking.killSilentFor(3300).empty()); // only one reply came so late
    tracked.tracking.moveTo(5300);
    tracked.tracking.moveTo(5300);
    EXPECT_TRUE(tracked.tracking.killSilentFor(3301).empty());
    EXPECT_TRUE(tracked.tracking.killSilentFor(100000).empty()); // longer than the recording
    const auto killed = tracked.tracking.killSilentFor(3300);
    ASSERT_EQ(killed.size(), 1U);
    EXPECT_EQ(killed.front().icaoAddr(), 0x40621DU);
    EXPECT_EQ(trackSummary({tracked.tracking.counts(), 1, 2, 3, 0, 0, 0, {4}}),
              "replies read                  9\n"
              "  tracked                     6   66.7 %\n"
              "aircraft                      2\n"
              "  hidden                      1\n"
              "killed                        1\n"
              "  to make room                0\n"
              "replies without room          0\n"
              "positions                     2\n"
              "  refused                     0    0.0 %\n"
              "aircraft unconfirmed          0\n"
              "stamps not believed           2\n"
              "stamps of other kind          3\n"
              "not readable                  4");
}

/// An aircraft with this address, heard at that time.
void hear(Tracking& tracking, ModeSDecoder& decoder, u32 address, u64 timeMs) {
    const Reply reply{simulator::df17(address, 5, simulator::identification(4, 3, "X")), timeMs};
    tracking.moveTo(timeMs);
    tracking.take(decodeReply(decoder, reply).get());
}

// Two recordings in the wrong order: the aircraft of the first one are never heard again.
TEST(Tracking, RemovesAircraftThatWereHeardBeforeTheTimeWentBack) {
    constexpr u64 week = 604800000;
    ModeSDecoder decoder;
    Tracking tracking(std::nullopt);
    for (u32 i = 1; i <= 4095; ++i) {
        hear(tracking, decoder, i, week);
    }
    for (int i = 0; i < 3; ++i) {
        hear(tracking, decoder, 5000, 1000000);
    }
    EXPECT_EQ(tracking.counts().aircraft, 1U);
    EXPECT_EQ(tracking.counts().madeRoom, 4095U);
    hear(tracking, decoder, 5001, 1000000 + Tracking::furthestBack);
    hear(tracking, decoder, 5000, 1000000); // within what stamps go back
    for (int i = 0; i < 3; ++i) {
        tracking.moveTo(1000000);
    }
    EXPECT_TRUE(tracking.killSilentFor(500000).empty());
    for (int i = 0; i < 3; ++i) {
        tracking.moveTo(999999);
    }
    const auto killed = tracking.killSilentFor(500000);
    ASSERT_EQ(killed.size(), 1U);
    EXPECT_EQ(killed.front().icaoAddr(), 5001U);
    EXPECT_EQ(killed.front().lastUpdate(), 1000000 + Tracking::furthestBack);
}

TEST(Tracking, MakesRoomInAFullTable) {
    constexpr u64 start = 1000000;
    constexpr u64 late = start + 64 + Tracking::shortestSilence;
    for (const bool keepAll : {false, true}) {
        ModeSDecoder decoder;
        Tracking tracking(std::nullopt);
        if (keepAll) {
            tracking.keepAll();
        }
        for (u32 i = 1; i <= 4095; ++i) {
            hear(tracking, decoder, i, start + i);
        }
        hear(tracking, decoder, 4096, start + 5000);
        EXPECT_EQ(tracking.counts().notTaken, 1U);

        // The time has to come three times. Then those go that are silent for so long, 64 at most.
        for (int i = 0; i < 3; ++i) {
            EXPECT_EQ(tracking.counts().aircraft, 4095U);
            hear(tracking, decoder, 4096, late);
        }
        EXPECT_EQ(tracking.madeRoom().size(), keepAll ? 0U : 64U);
        EXPECT_EQ(tracking.counts().madeRoom, keepAll ? 0U : 64U);
        EXPECT_EQ(tracking.counts().notTaken, keepAll ? 4U : 3U);
        EXPECT_EQ(tracking.counts().aircraft, keepAll ? 4095U : 4095U - 64 + 1);
        EXPECT_EQ(tracking.aircraft().size(), tracking.counts().aircraft);
        EXPECT_EQ(tracking.aircraft().front().icaoAddr(), keepAll ? 1U : 65U);
    }
}

std::string positionLine(int second, double latitude, bool odd) {
    simulator::AirbornePosition position;
    position.odd = odd;
    position.cpr = simulator::encodeCpr(latitude, 4, odd, simulator::CprGrid::Airborne);
    return std::to_string(second) + "," +
           hexBytes(simulator::df17(0x4840D6, 5, simulator::airbornePosition(position)));
}

// The messages of an aircraft at 52 degrees north; then another transmitter at 55 degrees has its
// address. The pairs across both are false.
TEST(Tracking, KeepsFalsePositionsApart) {
    std::vector<std::string> lines;
    for (int second = 1; second <= 4; ++second) {
        lines.push_back(positionLine(second, 52, second % 2 == 1));
    }
    lines.push_back(positionLine(5, 55, true));
    const TrackedLines tracked(lines);
    const TrackedAircraft aircraft = tracked.tracking.aircraft().front();
    EXPECT_GT(std::abs(aircraft.latitude() - 52), 1);
    ASSERT_TRUE(aircraft.position);
    EXPECT_NEAR(aircraft.position->place.latitude, 52, 1e-3);
    EXPECT_EQ(aircraft.position->stampMs, 4000U);
    const PositionCounts counts = tracked.tracking.counts().positions;
    EXPECT_EQ(counts.checked, 4U);
    EXPECT_EQ(counts.refused, 1U);
    EXPECT_EQ(counts.unconfirmed, 0U);
}

} // namespace

} // namespace tolvarin::ondrel::client
