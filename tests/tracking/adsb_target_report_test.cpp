#include <ondrel/adsb_target_report.h>

#include <gtest/gtest.h>

#include <cmath>
#include <utility>

namespace tolvarin::ondrel {
namespace {

TEST(ADSBTargetReport, ValuesOutOfRangeAreNotValid) {
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
    r.setCallsign("");
    r.setSignalAmplitude(0);
    EXPECT_FALSE(r.callsignValid() || r.signalAmplitudeValid());
    r.setCallsign("A");
    r.setSignalAmplitude(1);
    EXPECT_TRUE(r.callsignValid() && r.signalAmplitudeValid());
}

} // namespace
} // namespace tolvarin::ondrel
