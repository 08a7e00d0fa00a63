#include <ondrel/adsb_target_report.h>

#include <gtest/gtest.h>

#include <cmath>
#include <utility>

namespace tolvarin::ondrel {
namespace {

TEST(ADSBTargetReport, SettersOfValuesSetTheFlags) {
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
