/// @file
/// A report beside the target that it was taken of.
#pragma once

#include <ondrel/adsb_target.h>
#include <ondrel/adsb_target_report.h>

#include <gtest/gtest.h>

#include <cstring>
#include <vector>

namespace tolvarin::ondrel::test {

inline u64 bitsOf(double value) {
    u64 bits = 0;
    std::memcpy(&bits, &value, sizeof bits);
    return bits;
}

/// Target and report have nearly the same getters.
template <class T>
std::vector<u64> commonData(const T& t) {
    // clang-format off
    return {t.trackId(), t.lastUpdate(), t.callsignLastUpdate(), t.callsignLastChange(),
            t.emitterCategory(), t.emitterCategoryValid(), t.emitterCategoryLastUpdate(),
            t.emitterCategoryLastChange(), t.squawk(), t.squawkValid(), t.squawkLastUpdate(),
            t.squawkLastChange(), bitsOf(t.latitude()), bitsOf(t.longitude()), t.positionValid(),
            t.positionLastUpdate(), t.signalAmplitude(), t.signalAmplitudeValid(),
            t.signalAmplitudeLastUpdate(), static_cast<u32>(t.altitudeBaro()),
            t.altitudeBaroValid(), t.altitudeBaroLastUpdate(), bitsOf(t.groundSpeed()),
            t.groundSpeedValid(), t.groundSpeedLastUpdate(), bitsOf(t.heading()), t.headingValid(),
            t.headingLastUpdate(), static_cast<u32>(t.verticalRateBaro()),
            t.verticalRateBaroValid(), t.verticalRateBaroLastUpdate(), t.groundStatus() == 1,
            t.groundStatusValid(), t.groundStatusLastUpdate(), t.groundStatusLastChange(),
            t.spiStatus(), t.spiStatusValid(), t.spiStatusLastUpdate(), t.spiStatusLastChange(),
            t.alertStatus(), t.alertStatusValid(), t.alertStatusLastUpdate(),
            t.alertStatusLastChange(), static_cast<u32>(t.mopsVersion()), t.mopsVersionConfirmed(),
            t.mopsVersionLastUpdate(), t.mopsVersionLastChange(), t.nucp(), t.nucpValid(),
            t.nucpLastUpdate(), t.nucpLastChange(), t.nucr(), t.nucrValid(), t.nucrLastUpdate(),
            t.nucrLastChange(), t.nic(), t.nicValid(), t.nicLastUpdate(), t.nicLastChange(),
            t.nicSuppALastUpdate(), t.nicSuppBLastUpdate(), t.nicSuppCLastUpdate(), t.pic(),
            t.picValid(), t.picLastUpdate(), t.picLastChange(), t.nacp(), t.nacpValid(),
            t.nacpLastUpdate(), t.nacpLastChange(), t.sil(), t.silValid(), t.silLastUpdate(),
            t.silLastChange()};
    // clang-format on
}

inline void expectSnapshot(const ADSBTargetReport& report, const ADSBTarget& target) {
    EXPECT_EQ(commonData(report), commonData(target));
    EXPECT_EQ(report.icaoAddress(), target.icaoAddr());
    EXPECT_EQ(report.icaoAddressValid(), target.icaoAddr() != 0);
    EXPECT_EQ(report.callsign(), target.callsign());
    EXPECT_EQ(report.callsignValid(), !target.callsign().empty());
    EXPECT_EQ(report.nicSuppA(), target.nicSupplementA());
    EXPECT_EQ(report.nicSuppAValid(), target.nicSupplementAValid());
    EXPECT_EQ(report.nicSuppB(), target.nicSupplementB());
    EXPECT_EQ(report.nicSuppBValid(), target.nicSupplementBValid());
    EXPECT_EQ(report.nicSuppC(), target.nicSupplementC());
    EXPECT_EQ(report.nicSuppCValid(), target.nicSupplementCValid());
}

} // namespace tolvarin::ondrel::test
