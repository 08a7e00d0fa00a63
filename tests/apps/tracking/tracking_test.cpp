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
    EXPECT_EQ(killed.front().icaoAddress(), 0x40621DU);
    EXPECT_EQ(trackSummary({tracked.tracking.counts(), 1, 2, 3, 0, 0, 0, 0, 0, {4}}),
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
    EXPECT_EQ(killed.front().icaoAddress(), 5001U);
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
        EXPECT_EQ(tracking.aircraft().front().icaoAddress(), keepAll ? 1U : 65U);
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

std::string line(const std::string& frame) {
    return "1," + hexBytes(frame);
}

/// A squitter whose ME field has 0 in the bits of the mask, in two bytes from `first` on.
std::string squitterWithout(std::size_t first, unsigned mask, std::string field) {
    for (const std::size_t i : {first, first + 1}) {
        const unsigned part = i == first ? mask >> 8U : mask & 0xFFU;
        field[i] = static_cast<char>(static_cast<unsigned char>(field[i]) & ~part);
    }
    return line(simulator::df17(0x4840D6, 5, field));
}

std::string altitudeReply(bool told) {
    constexpr u32 address = 0x4840D6;
    std::string frame = simulator::df4(address, {}, 30000);
    if (!told) {
        frame[2] = 0;
        frame[3] = 0;
        const u32 parity = simulator::parity(frame) ^ address;
        for (const unsigned i : {0U, 1U, 2U}) {
            frame[4 + i] = static_cast<char>(parity >> (16 - 8 * i) & 0xFFU);
        }
    }
    return line(frame);
}

// Each row after those above it.
TEST(Tracking, NotesWhatIsTold) {
    simulator::VelocityFields fields;
    fields.verticalRateFtMin = -640;
    const std::string velocity = simulator::groundVelocity(fields, 300, -400, false);
    const std::string airSpeed = simulator::airVelocity(fields, 0, 0, false);
    fields.verticalRateSourceBit = true;
    const std::string otherRate = simulator::groundVelocity(fields, 300, -400, false);
    simulator::AirbornePosition position;
    position.altitudeFt = 30000;
    const std::string baro = simulator::airbornePosition(position);
    position.typeCode = 20;
    const std::string gnss = simulator::airbornePosition(position);
    struct Row {
        const char* name;
        std::string line;
        std::string told;
    };
    std::vector<std::string> lines;
    for (const Row& row : std::vector<Row>{
             {"identification",
              line(simulator::df17(0x4840D6, 5, simulator::identification(4, 3, "X"))), "baro"},
             {"velocity", squitterWithout(0, 0, velocity), "velocity rate baro"},
             {"no east", squitterWithout(1, 0x03FF, velocity), "rate baro"},
             {"air speed", squitterWithout(0, 0, airSpeed), "rate baro"},
             {"no rate", squitterWithout(4, 0x07FC, velocity), "velocity baro"},
             {"GNSS rate", squitterWithout(0, 0, otherRate), "velocity baro"},
             {"no north", squitterWithout(3, 0x7FE0, velocity), "rate baro"},
             {"no GNSS rate", squitterWithout(4, 0x07FC, otherRate), "velocity rate baro"},
             {"altitude", squitterWithout(0, 0, baro), "altitude velocity rate baro"},
             {"no altitude", squitterWithout(1, 0xFFF0, baro), "velocity rate baro"},
             {"GNSS height", squitterWithout(0, 0, gnss), "altitude velocity rate gnss"},
             {"reply", altitudeReply(true), "altitude velocity rate baro"},
             {"no reply", altitudeReply(false), "velocity rate baro"},
         }) {
        lines.push_back(row.line);
        const TrackedLines tracked(lines);
        ASSERT_EQ(tracked.tracking.counts().tracked, lines.size()) << row.name;
        const MessageNotes notes = tracked.tracking.aircraft().front().notes;
        EXPECT_EQ(std::string(notes.altitudeTold ? "altitude " : "") +
                      (notes.velocityTold ? "velocity " : "") +
                      (notes.verticalRateTold ? "rate " : "") +
                      (notes.altitudeSource == Gnss ? "gnss" : "baro"),
                  row.told)
            << row.name;
    }
}

TEST(Tracking, NotesNoAltitudeThatTheCheckRefuses) {
    const TrackedLines tracked({positionLine(1, 52, true), "2" + altitudeReply(false).substr(1)},
                               AltitudeCheck{10, 500});
    EXPECT_TRUE(tracked.tracking.aircraft().front().notes.altitudeTold);
}

TEST(Tracking, GivesNoTrackWithoutSpeed) {
    const std::string still = simulator::groundVelocity({}, 0, 0, false);
    const TrackedAircraft aircraft =
        TrackedLines({squitterWithout(0, 0, still)}).tracking.aircraft().front();
    EXPECT_TRUE(aircraft.notes.velocityTold);
    EXPECT_FALSE(aircraft.hasTrack());
}

} // namespace

} // namespace tolvarin::ondrel::client
