/// @file
/// Every setter of a report with its getter.
#pragma once

#include <ondrel/adsb_target_report.h>

#include "fuzzing.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <type_traits>

namespace tolvarin::ondrel::fuzzing {

/// Doubles bit by bit, since one that is not a number differs from itself.
template <class Value>
bool equal(const Value& one, const Value& other) {
    if constexpr (std::is_floating_point_v<Value>) {
        return std::memcmp(&one, &other, sizeof one) == 0;
    } else {
        return one == other;
    }
}

struct ReportItem {
    void (*set)(ADSBTargetReport& report, Input& input); ///< any value, which the getter gives then
    bool (*same)(const ADSBTargetReport& one, const ADSBTargetReport& other);
};

template <auto setter, auto getter>
constexpr ReportItem item() {
    return {[](ADSBTargetReport& report, Input& input) {
                const auto value = input.take<std::decay_t<decltype((report.*getter)())>>();
                (report.*setter)(value);
                hold(equal((report.*getter)(), value));
            },
            [](const ADSBTargetReport& one, const ADSBTargetReport& other) {
                return equal((one.*getter)(), (other.*getter)());
            }};
}

inline void setPosition(ADSBTargetReport& report, Input& input) {
    const auto latitude = input.take<double>();
    const auto longitude = input.take<double>();
    report.setPosition(latitude, longitude);
    hold(equal(report.latitude(), latitude) && equal(report.longitude(), longitude));
}

inline bool samePosition(const ADSBTargetReport& one, const ADSBTargetReport& other) {
    return equal(one.latitude(), other.latitude()) && equal(one.longitude(), other.longitude());
}

// clang-format off
using Report = ADSBTargetReport;
constexpr ReportItem reportItems[] = {
    {setPosition, samePosition},
    item<&Report::setTrackId, &Report::trackId>(),
    item<&Report::setLastUpdate, &Report::lastUpdate>(),
    item<&Report::setIcaoAddress, &Report::icaoAddress>(),
    item<&Report::setIcaoAddressValid, &Report::icaoAddressValid>(),
    item<&Report::setCallsign, &Report::callsign>(),
    item<&Report::setCallsignValid, &Report::callsignValid>(),
    item<&Report::setCallsignLastUpdate, &Report::callsignLastUpdate>(),
    item<&Report::setCallsignLastChange, &Report::callsignLastChange>(),
    item<&Report::setEmitterCategory, &Report::emitterCategory>(),
    item<&Report::setEmitterCategoryValid, &Report::emitterCategoryValid>(),
    item<&Report::setEmitterCategoryLastUpdate, &Report::emitterCategoryLastUpdate>(),
    item<&Report::setEmitterCategoryLastChange, &Report::emitterCategoryLastChange>(),
    item<&Report::setSquawk, &Report::squawk>(),
    item<&Report::setSquawkValid, &Report::squawkValid>(),
    item<&Report::setSquawkLastUpdate, &Report::squawkLastUpdate>(),
    item<&Report::setSquawkLastChange, &Report::squawkLastChange>(),
    item<&Report::setPositionValid, &Report::positionValid>(),
    item<&Report::setPositionLastUpdate, &Report::positionLastUpdate>(),
    item<&Report::setSignalAmplitude, &Report::signalAmplitude>(),
    item<&Report::setSignalAmplitudeValid, &Report::signalAmplitudeValid>(),
    item<&Report::setSignalAmplitudeLastUpdate, &Report::signalAmplitudeLastUpdate>(),
    item<&Report::setAltitudeBaro, &Report::altitudeBaro>(),
    item<&Report::setAltitudeBaroValid, &Report::altitudeBaroValid>(),
    item<&Report::setAltitudeBaroLastUpdate, &Report::altitudeBaroLastUpdate>(),
    item<&Report::setGroundSpeed, &Report::groundSpeed>(),
    item<&Report::setGroundSpeedValid, &Report::groundSpeedValid>(),
    item<&Report::setGroundSpeedLastUpdate, &Report::groundSpeedLastUpdate>(),
    item<&Report::setHeading, &Report::heading>(),
    item<&Report::setHeadingValid, &Report::headingValid>(),
    item<&Report::setHeadingLastUpdate, &Report::headingLastUpdate>(),
    item<&Report::setVerticalRateBaro, &Report::verticalRateBaro>(),
    item<&Report::setVerticalRateBaroValid, &Report::verticalRateBaroValid>(),
    item<&Report::setVerticalRateBaroLastUpdate, &Report::verticalRateBaroLastUpdate>(),
    item<&Report::setGroundStatus, &Report::groundStatus>(),
    item<&Report::setGroundStatusValid, &Report::groundStatusValid>(),
    item<&Report::setGroundStatusLastUpdate, &Report::groundStatusLastUpdate>(),
    item<&Report::setGroundStatusLastChange, &Report::groundStatusLastChange>(),
    item<&Report::setSpiStatus, &Report::spiStatus>(),
    item<&Report::setSpiStatusValid, &Report::spiStatusValid>(),
    item<&Report::setSpiStatusLastUpdate, &Report::spiStatusLastUpdate>(),
    item<&Report::setSpiStatusLastChange, &Report::spiStatusLastChange>(),
    item<&Report::setAlertStatus, &Report::alertStatus>(),
    item<&Report::setAlertStatusValid, &Report::alertStatusValid>(),
    item<&Report::setAlertStatusLastUpdate, &Report::alertStatusLastUpdate>(),
    item<&Report::setAlertStatusLastChange, &Report::alertStatusLastChange>(),
    item<&Report::setMopsVersion, &Report::mopsVersion>(),
    item<&Report::setMopsVersionConfirmed, &Report::mopsVersionConfirmed>(),
    item<&Report::setMopsVersionLastUpdate, &Report::mopsVersionLastUpdate>(),
    item<&Report::setMopsVersionLastChange, &Report::mopsVersionLastChange>(),
    item<&Report::setNUCp, &Report::nucp>(),
    item<&Report::setNUCpValid, &Report::nucpValid>(),
    item<&Report::setNUCpLastUpdate, &Report::nucpLastUpdate>(),
    item<&Report::setNUCpLastChange, &Report::nucpLastChange>(),
    item<&Report::setNUCr, &Report::nucr>(),
    item<&Report::setNUCrValid, &Report::nucrValid>(),
    item<&Report::setNUCrLastUpdate, &Report::nucrLastUpdate>(),
    item<&Report::setNUCrLastChange, &Report::nucrLastChange>(),
    item<&Report::setNIC, &Report::nic>(),
    item<&Report::setNICValid, &Report::nicValid>(),
    item<&Report::setNICLastUpdate, &Report::nicLastUpdate>(),
    item<&Report::setNICLastChange, &Report::nicLastChange>(),
    item<&Report::setNICSuppA, &Report::nicSuppA>(),
    item<&Report::setNICSuppAValid, &Report::nicSuppAValid>(),
    item<&Report::setNICSuppALastUpdate, &Report::nicSuppALastUpdate>(),
    item<&Report::setNICSuppB, &Report::nicSuppB>(),
    item<&Report::setNICSuppBValid, &Report::nicSuppBValid>(),
    item<&Report::setNICSuppBLastUpdate, &Report::nicSuppBLastUpdate>(),
    item<&Report::setNICSuppC, &Report::nicSuppC>(),
    item<&Report::setNICSuppCValid, &Report::nicSuppCValid>(),
    item<&Report::setNICSuppCLastUpdate, &Report::nicSuppCLastUpdate>(),
    item<&Report::setPIC, &Report::pic>(),
    item<&Report::setPICValid, &Report::picValid>(),
    item<&Report::setPICLastUpdate, &Report::picLastUpdate>(),
    item<&Report::setPICLastChange, &Report::picLastChange>(),
    item<&Report::setNACp, &Report::nacp>(),
    item<&Report::setNACpValid, &Report::nacpValid>(),
    item<&Report::setNACpLastUpdate, &Report::nacpLastUpdate>(),
    item<&Report::setNACpLastChange, &Report::nacpLastChange>(),
    item<&Report::setSIL, &Report::sil>(),
    item<&Report::setSILValid, &Report::silValid>(),
    item<&Report::setSILLastUpdate, &Report::silLastUpdate>(),
    item<&Report::setSILLastChange, &Report::silLastChange>(),
};
// clang-format on

inline bool same(const ADSBTargetReport& one, const ADSBTargetReport& other) {
    return std::all_of(std::begin(reportItems), std::end(reportItems),
                       [&](const ReportItem& item) { return item.same(one, other); });
}

} // namespace tolvarin::ondrel::fuzzing
