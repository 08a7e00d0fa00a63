// What replies and reports leave in the record of an aircraft, and what is said about it.
#include <ondrel/adsb_tracker.h>

#include "simulator/frame_encoder.h"
#include "simulator/payload_encoder.h"
#include "support/captured_log.h"
#include "support/messages.h"

#include <gtest/gtest.h>

namespace tolvarin::ondrel {
namespace {

using test::CapturedLog;
using test::Lines;

constexpr u32 address = 0x4840D6;

class ADSBTargetTest : public testing::Test {
protected:
    ADSBTargetTest() { log.take(); }

    /// A believed reply through the tracker.
    const ADSBTarget& hear(const std::string& frame, u64 stamp) {
        return *tracker.procModeSMsg(test::graded(frame, stamp).get());
    }
    const ADSBTarget& squitter(const std::string& me, u64 stamp) {
        return hear(simulator::df17(address, 5, me), stamp);
    }
    const ADSBTarget& identity(unsigned flightStatus, unsigned squawk, u64 stamp) {
        return hear(simulator::df5(address, {flightStatus, 0, 0}, squawk), stamp);
    }
    const ADSBTarget& position(unsigned typeCode, u64 stamp, bool odd = false, bool b = false) {
        const simulator::CprFrame cpr =
            odd ? simulator::CprFrame{74158, 50194} : simulator::CprFrame{93000, 51372};
        return squitter(simulator::airbornePosition({typeCode, 0, b, 36000, odd, cpr}), stamp);
    }
    const ADSBTarget& velocity(unsigned nucr, u64 stamp) {
        simulator::VelocityFields fields;
        fields.accuracy = nucr;
        return squitter(simulator::groundVelocity(fields, 300, -400, false), stamp);
    }
    const ADSBTarget& status(unsigned version, bool a, u64 stamp) {
        simulator::OperationalStatus says;
        says.version = version;
        says.nicSupplementA = a;
        return squitter(simulator::operationalStatus(says), stamp);
    }
    const ADSBTarget& name(unsigned category, const char* callsign, u64 stamp) {
        return squitter(simulator::identification(4, category, callsign), stamp);
    }
    ADSBTargetReport report(u64 stamp) {
        ADSBTargetReport report;
        report.setIcaoAddress(address);
        report.setLastUpdate(stamp);
        return report;
    }

    CapturedLog log;
    ADSBTracker tracker;
};

Lines told(const std::string& line) {
    return line.empty() ? Lines{} : Lines{"[INFO    ][ADSBTarget] " + line};
}

TEST_F(ADSBTargetTest, TellsReportedValuesWithoutAChangeInFull) {
    ADSBTargetReport reported = report(100);
    reported.setSquawk(07700);
    reported.setCallsign("SAME    ");
    tracker.procTargetReport(&reported);
    identity(0, 07700, 200);
    EXPECT_EQ(log.take(), told("Squawk Change old = 7700 new = 7700"));
    name(0, "SAME", 200);
    EXPECT_EQ(log.take(), told("Callsign Change old = SAME     new = SAME    "));

    reported.setSquawk(01234567);
    reported.setSquawkValid(true);
    reported.setCallsign(std::string("AB\0CD", 5));
    tracker.procTargetReport(&reported);
    EXPECT_EQ(log.take(), told("Callsign Change old = SAME     new = AB"));
    identity(0, 01200, 300);
    EXPECT_EQ(log.take(), told("Squawk Change old = 1234567 new = 1200"));

    reported.setCallsign(std::string(2000, 'X'));
    tracker.procTargetReport(&reported);
    const std::string head = "Callsign Change old = AB new = ";
    EXPECT_EQ(log.take(), told(head + std::string(1023 - head.size(), 'X')));
}

TEST_F(ADSBTargetTest, SolvesPairsOfFramesThatAreNotFarApart) {
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
    for (const auto& [odd, even, solved] : pairs) {
        tracker.reset();
        EXPECT_FALSE(position(11, odd, true).positionValid()); // alone, whatever its stamp
        const ADSBTarget& target = position(11, even, false);
        ASSERT_EQ(target.positionValid(), solved) << odd << " and " << even;
        if (solved) {
            EXPECT_EQ(target.positionLastUpdate(), std::max(odd, even));
            // At equal stamps the odd frame is the newer, though it came first.
            EXPECT_EQ(target.latitude(), even > odd ? 52.2572021484375 : 52.26578017412606);
            EXPECT_EQ(target.longitude(), even > odd ? 3.91937255859375 : 3.938912527901786);
        }
    }
}

TEST_F(ADSBTargetTest, ConfirmsVersion0WithTheTwentyFirstSquitter) {
    const std::string any = simulator::testMessage(0, 0);
    squitter(std::string(7, '\0'), 1); // neither is decoded nor counts
    squitter(simulator::operationalStatus({}).replace(5, 1, 1, '\0'), 2);
    for (u64 i = 1; i <= 20; ++i) {
        EXPECT_TRUE(squitter(any, 100 + i).mopsVersionAssumed()) << i;
    }
    log.take();
    const ADSBTarget& target = squitter(any, 121);
    EXPECT_TRUE(target.mopsVersionConfirmed());
    EXPECT_EQ(target.mopsVersionLastChange(), 121U);
    EXPECT_EQ(log.take(), Lines{"[DEBUG   ][ADSBTracker] Track #1 MOPS version 0 confirmed."});
    EXPECT_EQ(target.statisticADSBMsgCount(ADSBMessage::TEST), 21U);

    EXPECT_TRUE(squitter(simulator::emergencyStatus(0, {}), 122).mopsVersionConfirmed());
    EXPECT_TRUE(squitter(any, 123).mopsVersionAssumed());
    EXPECT_EQ(target.mopsVersionLastChange(), 123U);
    EXPECT_TRUE(squitter(any, 124).mopsVersionAssumed());
    EXPECT_EQ(log.take(), Lines{});
}

TEST_F(ADSBTargetTest, KeepsOfItsQualityWhatAVersionChangeLeaves) {
    const ADSBTarget& target = position(18, 100);
    velocity(3, 100);
    EXPECT_TRUE(target.nucpValid() && target.nucrValid() && target.nacpValid() &&
                target.silValid());
    status(1, true, 200);
    EXPECT_FALSE(target.nucpValid() || target.nicValid() || target.picValid());
    EXPECT_TRUE(target.nacpValid() && target.silValid()); // for a value that was 0 before
    EXPECT_EQ(target.nacpLastUpdate() + target.silLastUpdate(), 0U);
    velocity(2, 300);
    EXPECT_EQ(target.nucr(), 3);
    EXPECT_EQ(target.nucrLastUpdate(), 100U);
    EXPECT_FALSE(target.nucrValid());
    EXPECT_EQ(position(11, 400).nic(), 9); // supplement A
    EXPECT_EQ(target.nicLastChange(), 400U);

    status(2, false, 500);
    EXPECT_EQ(position(11, 600, false, true).nic(), 9); // supplement B of the same message
    EXPECT_TRUE(target.nicSupplementBValid());
    EXPECT_EQ(position(11, 700, false, true).nicLastUpdate(), 700U);
    EXPECT_EQ(target.nicLastChange(), 600U);
    status(1, false, 800);
    EXPECT_FALSE(target.nicSupplementBValid());
    EXPECT_TRUE(target.nicSupplementB() && target.nicSupplementAValid());
}

} // namespace
} // namespace tolvarin::ondrel
