// The way of a track out of one tracker and into another.
#include <ondrel/adsb_tracker.h>

#include "simulator/frame_encoder.h"
#include "simulator/payload_encoder.h"
#include "support/captured_log.h"
#include "support/messages.h"

#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <vector>

namespace tolvarin::ondrel {
namespace {

using test::CapturedLog;
using test::Lines;

constexpr u32 address = 0x4840D6;

class ReportTransferTest : public testing::Test {
protected:
    ReportTransferTest() { log.take(); }

    static const ADSBTarget* hear(ADSBTracker& tracker, const std::string& frame, u64 stamp) {
        const auto message = test::graded(frame, stamp);
        message->setSignalAmplitude(200);
        return tracker.procModeSMsg(message.get());
    }
    static const ADSBTarget& squitter(ADSBTracker& tracker, const std::string& me, u64 stamp) {
        return *hear(tracker, simulator::df17(address, 5, me), stamp);
    }
    static const ADSBTarget& position(ADSBTracker& tracker, unsigned typeCode, bool b, u64 stamp) {
        const bool odd = stamp % 2 != 0;
        const auto cpr =
            odd ? simulator::CprFrame{58218, 78643} : simulator::CprFrame{45875, 52975};
        const simulator::AirbornePosition position{typeCode, 0, b, 35000, odd, cpr};
        return squitter(tracker, simulator::airbornePosition(position), stamp);
    }
    static const ADSBTarget& status(ADSBTracker& tracker, unsigned version, bool a, u64 stamp) {
        simulator::OperationalStatus status;
        status.version = version;
        status.nicSupplementA = a;
        return squitter(tracker, simulator::operationalStatus(status), stamp);
    }

    /// Everything that replies can tell, each at times of its own.
    static const ADSBTarget& fill(ADSBTracker& tracker, u64 now) {
        const auto next = [&now] { return now += 11; };
        simulator::VelocityFields rates;
        rates.accuracy = 2;
        rates.verticalRateFtMin = -640;
        for (const char* callsign : {"KLM9", "KLM1023"}) {
            squitter(tracker, simulator::identification(4, 3, callsign), next());
            squitter(tracker, simulator::groundVelocity(rates, -300, 401, false), next());
            position(tracker, 11, true, next());
            status(tracker, 2, true, next());
            position(tracker, 11, true, next());
            hear(tracker, simulator::df11(address, 5, 0), next());
            hear(tracker, simulator::df5(address, {callsign[4] == 0 ? 5U : 2U, 0, 0}, 01200),
                 next());
        }
        return *hear(tracker, simulator::df4(address, {2, 0, 0}, 36000), next());
    }

    CapturedLog log;
    ADSBTracker source;
    ADSBTracker tracker;
};

/// Target and report have nearly the same getters.
template <class T>
std::vector<u64> common(const T& t) {
    // clang-format off
    return {t.trackId(), t.lastUpdate(), t.callsignLastUpdate(), t.callsignLastChange(),
            t.emitterCategory(), t.emitterCategoryValid(), t.emitterCategoryLastUpdate(),
            t.emitterCategoryLastChange(), t.squawk(), t.squawkValid(), t.squawkLastUpdate(),
            t.squawkLastChange(), t.positionValid(), t.positionLastUpdate(), t.signalAmplitude(),
            t.signalAmplitudeValid(), t.signalAmplitudeLastUpdate(), t.altitudeBaroValid(),
            t.altitudeBaroLastUpdate(), t.groundSpeedValid(), t.groundSpeedLastUpdate(),
            t.headingValid(), t.headingLastUpdate(), t.verticalRateBaroValid(),
            t.verticalRateBaroLastUpdate(), t.groundStatus() == 1, t.groundStatusValid(),
            t.groundStatusLastUpdate(), t.groundStatusLastChange(), t.spiStatus(),
            t.spiStatusValid(), t.spiStatusLastUpdate(), t.spiStatusLastChange(), t.alertStatus(),
            t.alertStatusValid(), t.alertStatusLastUpdate(), t.alertStatusLastChange(),
            t.mopsVersionConfirmed(), t.mopsVersionLastUpdate(), t.mopsVersionLastChange(),
            t.nucp(), t.nucpValid(), t.nucpLastUpdate(), t.nucpLastChange(), t.nucr(),
            t.nucrValid(), t.nucrLastUpdate(), t.nucrLastChange(), t.nic(), t.nicValid(),
            t.nicLastUpdate(), t.nicLastChange(), t.nicSuppALastUpdate(), t.nicSuppBLastUpdate(),
            t.nicSuppCLastUpdate(), t.pic(), t.picValid(), t.picLastUpdate(), t.picLastChange(),
            t.nacp(), t.nacpValid(), t.nacpLastUpdate(), t.nacpLastChange(), t.sil(),
            t.silValid(), t.silLastUpdate(), t.silLastChange()};
    // clang-format on
}

void expectSnapshot(const ADSBTargetReport& report, const ADSBTarget& target) {
    EXPECT_EQ(common(report), common(target));
    EXPECT_EQ(report.icaoAddress(), target.icaoAddr());
    EXPECT_EQ(report.icaoAddressValid(), target.icaoAddr() != 0);
    EXPECT_EQ(report.callsign(), target.callsign());
    EXPECT_EQ(report.callsignValid(), !target.callsign().empty());
    EXPECT_EQ(report.latitude(), target.latitude());
    EXPECT_EQ(report.longitude(), target.longitude());
    EXPECT_EQ(report.altitudeBaro(), target.altitudeBaro());
    EXPECT_EQ(report.groundSpeed(), target.groundSpeed());
    EXPECT_EQ(report.heading(), target.heading());
    EXPECT_EQ(report.verticalRateBaro(), target.verticalRateBaro());
    EXPECT_EQ(report.mopsVersion(), target.mopsVersion());
    EXPECT_EQ(report.nicSuppA(), target.nicSupplementA());
    EXPECT_EQ(report.nicSuppAValid(), target.nicSupplementAValid());
    EXPECT_EQ(report.nicSuppB(), target.nicSupplementB());
    EXPECT_EQ(report.nicSuppBValid(), target.nicSupplementBValid());
    EXPECT_EQ(report.nicSuppC(), target.nicSupplementC());
    EXPECT_EQ(report.nicSuppCValid(), target.nicSupplementCValid());
}

TEST_F(ReportTransferTest, ReportsEveryDatumAsItIs) {
    expectSnapshot(ADSBTarget(address).report(), ADSBTarget(address));
    expectSnapshot(ADSBTarget(0).report(), ADSBTarget(0));
    const ADSBTarget& target = fill(source, 1000);
    expectSnapshot(target.report(), target);
    EXPECT_TRUE(target.nicSupplementBValid() && target.positionValid() && target.report().valid());

    // The quality, each indicator with times that no other has.
    const ADSBTarget& early = position(tracker, 11, false, 1);
    expectSnapshot(position(tracker, 12, false, 2).report(), early);
    EXPECT_NE(early.nacpLastChange(), early.silLastChange());
    status(tracker, 2, true, 3);
    position(tracker, 13, true, 4);
    position(tracker, 13, false, 5);
    status(tracker, 2, false, 6);
    expectSnapshot(position(tracker, 13, true, 7).report(), early);
    EXPECT_TRUE(early.nicLastChange() == 4 && early.nucpLastChange() == 5 &&
                early.picLastChange() == 7);
    expectSnapshot(status(tracker, 1, false, 8).report(), early);

    // Flags that the setters of a report would not have set.
    ADSBTargetReport far;
    far.setIcaoAddress(address);
    far.setLastUpdate(1);
    far.setPosition(122, 0);
    far.setPositionValid(true);
    far.setPositionLastUpdate(1);
    far.setSquawkValid(true);
    far.setSquawkLastUpdate(1);
    far.setSignalAmplitudeValid(true);
    far.setSignalAmplitudeLastUpdate(1);
    const ADSBTargetReport again = tracker.procTargetReport(&far)->report();
    EXPECT_TRUE(again.positionValid() && again.squawkValid() && again.signalAmplitudeValid());
    // And one that it would: a reported position that was never updated.
    far.setPositionLastUpdate(0);
    EXPECT_FALSE(tracker.procTargetReport(&far)->report().positionValid());
}

/// What a report makes of what a target held `before`: all but the data behind the ground status,
/// and the altitude if it is not believed.
ADSBTargetReport afterTransfer(ADSBTargetReport r, const ADSBTargetReport& sent, bool believed) {
    r.setTrackId(sent.trackId());
    r.setLastUpdate(sent.lastUpdate());
    r.setIcaoAddress(sent.icaoAddress());
    r.setCallsign(sent.callsign());
    r.setCallsignLastUpdate(sent.callsignLastUpdate());
    r.setCallsignLastChange(sent.callsignLastChange());
    r.setEmitterCategory(sent.emitterCategory());
    r.setEmitterCategoryLastUpdate(sent.emitterCategoryLastUpdate());
    r.setEmitterCategoryLastChange(sent.emitterCategoryLastChange());
    r.setSquawk(sent.squawk());
    r.setSquawkLastUpdate(sent.squawkLastUpdate());
    r.setPosition(sent.latitude(), sent.longitude());
    r.setPositionLastUpdate(sent.positionLastUpdate());
    r.setSignalAmplitude(sent.signalAmplitude());
    r.setSignalAmplitudeLastUpdate(sent.signalAmplitudeLastUpdate());
    if (believed) {
        r.setAltitudeBaro(sent.altitudeBaro());
        r.setAltitudeBaroLastUpdate(sent.altitudeBaroLastUpdate());
    }
    r.setGroundSpeed(sent.groundSpeed());
    r.setGroundSpeedLastUpdate(sent.groundSpeedLastUpdate());
    r.setHeading(sent.heading());
    r.setHeadingLastUpdate(sent.lastUpdate());
    r.setVerticalRateBaro(sent.verticalRateBaro());
    r.setVerticalRateBaroLastUpdate(sent.verticalRateBaroLastUpdate());
    r.setGroundStatus(sent.groundStatus());
    r.setGroundStatusLastUpdate(sent.groundStatusLastUpdate());
    r.setGroundStatusLastChange(sent.groundStatusLastUpdate());
    return r;
}

TEST_F(ReportTransferTest, CarriesATrackIntoAnotherTracker) {
    for (const bool isFilled : {false, true}) {
        for (const bool checked : {false, true}) {
            ADSBTargetReport sent = fill(source, 1000).report();
            sent.setTrackId(9);
            sent.setSquawk(07700);
            sent.setGroundStatus(true);
            sent.setAltitudeBaro(10000);
            ADSBTracker other;
            other.setAltituteBaroChecking(checked, 10000, 150);
            ADSBTargetReport before = ADSBTarget(address).report();
            if (isFilled) { // with newer data, but for the altitude
                fill(other, 3600000);
                before =
                    squitter(other, simulator::identification(4, 3, "OTHER"), 3700000).report();
                sent.setAltitudeBaroLastUpdate(before.altitudeBaroLastUpdate() + 1);
            }
            log.take();
            const ADSBTarget* target = other.procTargetReport(&sent);
            EXPECT_EQ(
                log.take(),
                Lines{isFilled
                          ? "[INFO    ][ADSBTarget] Callsign Change old = OTHER    new = KLM1023 "
                          : "[DEBUG   ][ADSBTarget] Emitter category change old = 0 new = 3"});
            expectSnapshot(afterTransfer(before, sent, !(isFilled && checked)), *target);
        }
    }
}

TEST(ADSBTargetReport, KnowsByItsValuesWhatIsValid) {
    ADSBTargetReport r;
    EXPECT_FALSE(r.valid() || r.trackIdValid() || r.mopsVersionConfirmed());
    r.setTrackId(1);
    EXPECT_TRUE(r.trackIdValid());
    for (const auto& [squawk, valid] :
         {std::pair(0, false), {1, true}, {4095, true}, {4096, false}}) {
        r.setSquawk(static_cast<u32>(squawk));
        EXPECT_EQ(r.squawkValid(), valid) << squawk;
        EXPECT_EQ(r.squawk(), static_cast<u32>(squawk));
    }
    const double nan = std::nan("");
    const struct {
        double latitude;
        double longitude;
        bool valid;
    } places[] = {
        {90, -180, true}, {-90, 180, true}, {90.5, 0, false},  {0, 180.5, false},  {nan, 0, false},
        {0, nan, false},  {0, 0, true},     {-90.5, 0, false}, {0, -180.5, false},
    };
    for (const auto& [latitude, longitude, valid] : places) {
        r.setPosition(latitude, longitude);
        EXPECT_EQ(r.positionValid(), valid) << latitude << ' ' << longitude;
        EXPECT_TRUE(r.latitude() == latitude || std::isnan(latitude));
    }
    r.setCallsign("A");
    r.setSignalAmplitude(1);
    r.setEmitterCategory(0);
    r.setAltitudeBaro(0);
    r.setGroundSpeed(0);
    r.setHeading(0);
    r.setVerticalRateBaro(0);
    r.setGroundStatus(false);
    EXPECT_TRUE(r.callsignValid() && r.signalAmplitudeValid() && r.emitterCategoryValid() &&
                r.altitudeBaroValid() && r.groundSpeedValid() && r.headingValid() &&
                r.verticalRateBaroValid() && r.groundStatusValid());
    r.setCallsign("");
    r.setSignalAmplitude(0);
    r.setSpiStatus(true);
    r.setAlertStatus(true);
    r.setNUCp(9);
    r.setNUCr(4);
    r.setNIC(11);
    r.setNICSuppA(true);
    r.setPIC(14);
    r.setNACp(11);
    r.setSIL(3);
    EXPECT_FALSE(r.callsignValid() || r.signalAmplitudeValid() || r.spiStatusValid() ||
                 r.alertStatusValid() || r.nucpValid() || r.nucrValid() || r.nicValid() ||
                 r.nicSuppAValid() || r.picValid() || r.nacpValid() || r.silValid());
}

} // namespace
} // namespace tolvarin::ondrel
