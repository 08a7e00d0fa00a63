// The table of aircraft, the altitude check, and pairs of position frames.
#include <ondrel/adsb_tracker.h>
#include <ondrel/mode_s_decoder.h>

#include "simulator/frame_encoder.h"
#include "simulator/payload_encoder.h"
#include "simulator/traffic.h"
#include "support/allocations.h"
#include "support/bytes.h"
#include "support/captured_log.h"
#include "support/messages.h"
#include "support/same_number.h"

#include <gtest/gtest.h>

#include <memory>
#include <sstream>
#include <utility>

namespace tolvarin::ondrel {
namespace {

using test::CapturedLog;
using test::graded;
using test::Lines;

class ADSBTrackerTest : public testing::Test {
protected:
    ADSBTrackerTest() { log.take(); }

    const ADSBTarget* hear(const std::string& frame, u64 stamp = 1000) {
        return tracker.procModeSMsg(graded(frame, stamp).get());
    }
    /// An altitude reply.
    const ADSBTarget* hear(u32 address, u64 stamp = 1000, int altitude = 10000) {
        return hear(simulator::df4(address, {}, altitude), stamp);
    }
    const ADSBTarget* hearReport(u32 address, u32 trackId) {
        return hearReport(tracker, address, trackId);
    }
    static const ADSBTarget* hearReport(ADSBTracker& by, u32 address, u32 trackId) {
        ADSBTargetReport report;
        report.setIcaoAddress(address);
        report.setLastUpdate(1000);
        report.setTrackId(trackId);
        return by.procTargetReport(&report);
    }
    void fill(u32 count) {
        for (u32 i = 1; i <= count; ++i) {
            ASSERT_EQ(hear(0x1000 + i, i)->trackId(), i);
        }
    }

    CapturedLog log;
    ADSBTracker tracker;
};

/// "number:address" of each.
std::string textOf(const std::vector<ADSBTarget>& targets) {
    std::ostringstream out;
    for (const ADSBTarget& target : targets) {
        out << target.trackId() << ':' << std::hex << target.icaoAddr() << std::dec << ' ';
    }
    return out.str();
}

TEST_F(ADSBTrackerTest, CountsNothingForANumberThatIsNoFormatOrKind) {
    hear(test::surveillance(0, 5));
    const ADSBTarget* target = hear(test::squitter(5)); // a callsign, the first kind
    EXPECT_EQ(target->statisticDfMsgCount(DFMessage::DF0), 1U);
    EXPECT_EQ(target->statisticADSBMsgCount(ADSBMessage::ACID), 1U);
    for (const int number : {-1, 25, 50, 1 << 30}) {
        EXPECT_EQ(target->statisticDfMsgCount(static_cast<DFMessage::DownlinkFormat>(number)), 0U);
    }
    for (const int number : {-1, 9, 18, 1 << 30}) {
        EXPECT_EQ(target->statisticADSBMsgCount(static_cast<ADSBMessage::ADSBMessageType>(number)),
                  0U);
    }
}

TEST_F(ADSBTrackerTest, WritesALineWhenMade) {
    const ADSBTracker made;
    EXPECT_EQ(log.take(), (Lines{"[INFO    ][ADSBDecoder] Initialized.",
                                 "[INFO    ][ADSBTracker] Initialized."}));
}

TEST_F(ADSBTrackerTest, IgnoresWhatItDoesNotTrack) {
    class Uplink final : public ModeSMessage {
    public:
        explicit Uplink(ModeSMsgType type) : ModeSMessage(type) {}
        u8 bits() const override { return 56; }
        std::vector<const ModeSMessageField*> fields() const override { return {}; }
        bool decodeImpl() override { return true; }
    };
    const Uplink uplink(ModeSMessage::Uplink);
    const Uplink strange(ModeSMessage::Downlink);
    EXPECT_EQ(tracker.procModeSMsg(nullptr), nullptr);
    EXPECT_EQ(tracker.procModeSMsg(&uplink), nullptr);
    EXPECT_EQ(tracker.procModeSMsg(&strange), nullptr);
    EXPECT_EQ(tracker.procTargetReport(nullptr), nullptr);
    EXPECT_EQ(log.take(), Lines{});
    EXPECT_EQ(hear(test::squitter(5, 18)), nullptr);
    EXPECT_EQ(hear(test::squitter(5, 19)), nullptr);
    EXPECT_EQ(log.take(), (Lines{"[WARNING ][ADSBTracker] Unsupported DF-18 message detected.",
                                 "[WARNING ][ADSBTracker] Unsupported DF-19 message detected."}));
    EXPECT_TRUE(tracker.allTargets().empty());
}

TEST_F(ADSBTrackerTest, TakesMessagesByTheirClassNotByTheirFormat) {
    class Derived final : public DF17Message {};
    class Sliced final : public DFMessage {
    public:
        explicit Sliced(const DF17Message& squitter) : DFMessage(squitter) {}
        u8 bits() const override { return 112; }
        std::vector<const ModeSMessageField*> fields() const override { return {}; }
        bool decodeImpl() override { return true; }
    };
    Derived derived;
    ASSERT_TRUE(derived.decode(test::squitter(5)));
    derived.setConfidence(ModeSMessage::High);
    const Sliced sliced(derived);
    ASSERT_EQ(sliced.downlinkFormat(), DFMessage::DF17);
    EXPECT_EQ(tracker.procModeSMsg(&sliced), nullptr);
    EXPECT_TRUE(tracker.allTargets().empty());
    EXPECT_NE(tracker.procModeSMsg(&derived), nullptr);
}

TEST_F(ADSBTrackerTest, ReadsTheRepliesOfAKnownAircraftWithOneAllocationEach) {
    ModeSDecoder decoder;
    simulator::TrafficOptions options;
    options.aircraft = 8;
    options.seconds = 30;
    options.damage = {};
    simulator::Traffic traffic(options);
    std::vector<std::string> replies;
    while (const auto reply = traffic.next()) {
        replies.push_back(reply->bytes);
    }
    const auto take = [&](const std::string& reply) {
        const std::unique_ptr<ModeSMessage> message(decoder.decode(ModeSMessage::Downlink, reply));
        tracker.procModeSMsg(message.get());
    };
    Log::setShowLevel(Log::Panic);
    for (const std::string& reply : replies) {
        take(reply); // so that all aircraft and interrogators are known
    }
    for (const std::string& reply : replies) {
        const std::size_t before = test::allocations();
        take(reply);
        ASSERT_EQ(test::allocations() - before, 1U) << static_cast<u8>(reply.front()) / 8;
    }
}

TEST_F(ADSBTrackerTest, ChecksAltitudesWithinSecondsAndLimit) {
    const struct {
        int altitude;
        u64 stamp;
        bool accepted;
    } steps[] =
        {
            {10150, 103999, true},  {10175, 103999, false}, {9850, 103999, true},
            {9825, 103999, false},  {20000, 104000, true},  {20000, 103999, false},
            {20000, 99999, true}, // earlier than the last one
            {-1000, 103999, false},
        };
    tracker.setAltituteBaroChecking(true, 4, 150);
    for (const auto& [altitude, stamp, accepted] : steps) {
        tracker.killTargets(~u64{0});
        hear(5, 100000);
        const ADSBTarget* target = hear(5, stamp, altitude);
        EXPECT_EQ(target->altitudeBaro(), accepted ? altitude : 10000) << altitude;
        EXPECT_EQ(target->altitudeBaroLastUpdate(), accepted ? stamp : 100000) << altitude;
        EXPECT_EQ(target->lastUpdate(), stamp);
        EXPECT_EQ(target->statisticDfMsgCount(), 2U);
    }
    tracker.reset(); // does not change the check
    hear(5, 100000);
    EXPECT_EQ(hear(5, 100001, 20000)->altitudeBaro(), 10000);
    tracker.setAltituteBaroChecking(false, 4, 150);
    EXPECT_EQ(hear(5, 100001, 20000)->altitudeBaro(), 20000);
}

TEST_F(ADSBTrackerTest, SolvesPairsOfFramesWithin10Seconds) {
    constexpr u64 turn = u64{1} << 32;
    const struct {
        u64 odd;
        u64 even;
        bool solved;
    } pairs[] = {
        {100000, 110000, true},
        {100000, 110001, false},
        {110000, 100000, true},
        {110001, 100000, false},
        {100000, 100000, true},
        {1, 10001, true},
        {0, 5000, false},
        {5000, 0, false},
        {turn - 5000, turn + 5000, true},
        {turn - 5000, turn + 5001, false},
        {1000, turn + 1000, true},
        {1000, turn / 2 + 1000, false},
        {turn / 2 + 1000, 1000, false},
        {1000, turn / 2 + 999, false},
    };
    const std::string oddFrame = simulator::df17(
        5, 5, simulator::airbornePosition({11, 0, false, 36000, true, {74158, 50194}}));
    const std::string evenFrame = simulator::df17(
        5, 5, simulator::airbornePosition({11, 0, false, 36000, false, {93000, 51372}}));
    for (const auto& [odd, even, solved] : pairs) {
        tracker.reset();
        EXPECT_FALSE(hear(oddFrame, odd)->positionValid()); // one frame is not enough
        const ADSBTarget& target = *hear(evenFrame, even);
        ASSERT_EQ(target.positionValid(), solved) << odd << " and " << even;
        if (solved) {
            EXPECT_EQ(target.positionLastUpdate(), std::max(odd, even));
            // With equal stamps the odd frame counts as the newer one.
            EXPECT_PRED2(test::sameNumber, target.latitude(),
                         even > odd ? 52.2572021484375 : 52.26578017412606);
            EXPECT_PRED2(test::sameNumber, target.longitude(),
                         even > odd ? 3.91937255859375 : 3.938912527901786);
        }
    }
}

TEST_F(ADSBTrackerTest, NumbersNewAircraftInTurn) {
    hear(30);
    hear(30);
    hear(10);
    hear(20);
    EXPECT_EQ(textOf(tracker.allTargets()), "2:a 3:14 1:1e ");
    hear(10, 2000);
    hear(20, 2000);
    EXPECT_EQ(textOf(tracker.killTargets(1000)), "1:1e ");
    EXPECT_EQ(log.take(), Lines{"[DEBUG   ][ADSBTracker] Target #1 killed."});
    EXPECT_EQ(hear(30)->trackId(), 4U); // a new target
    EXPECT_EQ(tracker.allTargets().back().statisticDfMsgCount(), 1U);
    hearReport(10, 5); // numbers of reports are skipped
    hearReport(20, 6);
    EXPECT_EQ(hear(40)->trackId(), 7U);
    EXPECT_EQ(hearReport(10, 0)->trackId(), 0U);
    tracker.reset();
    fill(4094);
    hearReport(0x1002, 4095);
    EXPECT_EQ(hear(40)->trackId(), 2U);
}

TEST_F(ADSBTrackerTest, KnowsTheNumbersThatACopyGivesToSharedTargets) {
    fill(3);
    ADSBTracker copy(tracker);
    hearReport(0x1001, 4);
    const auto hearByCopy = [&copy](u32 address) {
        return copy.procModeSMsg(graded(simulator::df4(address, {}, 10000), 1000).get());
    };
    EXPECT_EQ(hearByCopy(40)->trackId(), 5U);
    EXPECT_EQ(hear(50)->trackId(), 5U);
    hearReport(copy, 0x1002, 6);
    EXPECT_EQ(hear(51)->trackId(), 7U);
    EXPECT_EQ(tracker.killTargets(3).size(), 1U);
    hearReport(copy, 0x1002, 8);
    EXPECT_EQ(hear(52)->trackId(), 9U);
    EXPECT_EQ(hearByCopy(41)->trackId(), 6U);
}

TEST_F(ADSBTrackerTest, Holds4095Aircraft) {
    fill(4095);
    EXPECT_EQ(hear(5), nullptr);
    EXPECT_EQ(hearReport(5, 1), nullptr);
    EXPECT_EQ(hear(0x1001, 2)->lastUpdate(), 2U);
    EXPECT_EQ(hearReport(0x1002, 2)->lastUpdate(), 1000U);
    EXPECT_EQ(tracker.allTargets().size(), 4095U);
    EXPECT_EQ(log.take(), Lines{});

    EXPECT_EQ(textOf(tracker.killTargets(4)), "1:1001 3:1003 4:1004 ");
    EXPECT_EQ(hear(5)->trackId(), 1U); // the search starts again at 1
    EXPECT_EQ(hear(6)->trackId(), 3U);
    EXPECT_EQ(hear(0x1001)->trackId(), 4U);
    EXPECT_EQ(hear(7), nullptr);
    EXPECT_EQ(tracker.killTargets(~u64{0}).size(), 4095U);
    EXPECT_EQ(hear(7)->trackId(), 5U);
}

TEST_F(ADSBTrackerTest, ListsTargetsByTheirLastUpdate) {
    hear(3, 100);
    hear(1, 200);
    hear(2, 300);
    EXPECT_EQ(textOf(tracker.allTargetsSince(0)), "2:1 3:2 1:3 ");
    EXPECT_EQ(textOf(tracker.allTargetsSince(200)), "3:2 ");
    EXPECT_EQ(textOf(tracker.allTargetsSince(300)), "");
    EXPECT_EQ(textOf(tracker.allTargetsSince(100, 200)), "2:1 ");
    EXPECT_EQ(textOf(tracker.allTargetsSince(99, 300)), "2:1 3:2 1:3 ");
    EXPECT_EQ(textOf(tracker.allTargetsSince(300, 100)), "");
    const auto before = tracker.allTargets();
    EXPECT_EQ(textOf(tracker.killTargets(99)), "");
    EXPECT_EQ(textOf(tracker.killTargets(200)), "2:1 1:3 ");
    EXPECT_EQ(log.take(), (Lines{"[DEBUG   ][ADSBTracker] Target #2 killed.",
                                 "[DEBUG   ][ADSBTracker] Target #1 killed."}));
    hear(2, 400);
    EXPECT_EQ(before[1].lastUpdate(), 300U);
}

TEST_F(ADSBTrackerTest, DecodesPayloadsByTheVersionOfTheAircraft) {
    simulator::OperationalStatus status;
    hear(simulator::df17(1, 5, simulator::operationalStatus(status)));
    const std::string position = simulator::airbornePosition({});
    const auto decoded = [&](u32 address) {
        return std::unique_ptr<ADSBMessage>(tracker.decodeADSBMsg(address, position));
    };
    EXPECT_NE(dynamic_cast<ADSBAirbornePositionMessageV2*>(decoded(1).get()), nullptr);
    EXPECT_NE(dynamic_cast<ADSBAirbornePositionMessageV0*>(decoded(2).get()), nullptr);
    EXPECT_EQ(tracker.decodeADSBMsg(1, position.substr(1)), nullptr);
    EXPECT_EQ(tracker.allTargets().size(), 1U);
    EXPECT_EQ(tracker.allTargets()[0].statisticDfMsgCount(), 1U);
}

} // namespace
} // namespace tolvarin::ondrel
