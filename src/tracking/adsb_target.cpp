// The record of one aircraft: how it takes each datum, and the log line of a change. Most setters
// follow one of the two rules in datum_rules.h; a comment tells where one differs.

#include <ondrel/adsb_target.h>

#include <ondrel/log.h>

#include "cpr.h"
#include "datum_rules.h"
#include "quality_indicators.h"
#include "text.h"

#include <algorithm>
#include <numeric>

namespace tolvarin::ondrel {

namespace {

constexpr const char* moduleName = "ADSBTarget";

// A client can pass any number as a format or type: one without a counter counts as 0.

template <class Counts>
u32 countOf(const Counts& counts, i32 index) {
    const auto place = static_cast<u32>(index);
    return place < counts.size() ? counts[place] : 0;
}

template <class Counts>
u32 increase(Counts& counts, i32 index) {
    const auto place = static_cast<u32>(index);
    return place < counts.size() ? ++counts[place] : 0;
}

/// A supplement that was never received is neither set nor clear.
Supplement stateOf(const ADSBDatum<bool>& supplement) {
    if (supplement.lastUpdate == 0) {
        return Supplement::Unknown;
    }
    return supplement.value ? Supplement::Set : Supplement::Clear;
}

} // namespace

ADSBTarget::ADSBTarget(u32 icaoAddress) : _icaoAddr(icaoAddress) {}

u32 ADSBTarget::statisticDfMsgCount(DFMessage::DownlinkFormat format) const {
    return countOf(_statisticDfCounts, format);
}

u32 ADSBTarget::statisticDfMsgCount() const {
    return std::accumulate(_statisticDfCounts.begin(), _statisticDfCounts.end(), u32{0});
}

u32 ADSBTarget::statisticADSBMsgCount(ADSBMessage::ADSBMessageType type) const {
    return countOf(_statisticADSBCounts, type);
}

void ADSBTarget::setLastUpdate(u64 time) {
    _lastUpdate = time;
}

void ADSBTarget::setAltitudeBaro(i32 altitude, u64 time) {
    update(_altitudeBaro, altitude, time);
}

void ADSBTarget::setGroundSpeed(double speed, u64 time) {
    update(_groundSpeed, speed, time);
}

void ADSBTarget::setVerticalRateBaro(i32 rate, u64 time) {
    update(_verticalRateBaro, rate, time);
}

void ADSBTarget::setSignalAmplitude(u8 amplitude, u64 time) {
    update(_signalAmplitude, amplitude, time);
}

void ADSBTarget::setNICSupplementA(bool supplement, u64 time) {
    update(_nicSupplementA, supplement, time);
}

void ADSBTarget::setNICSupplementB(bool supplement, u64 time) {
    update(_nicSupplementB, supplement, time);
}

void ADSBTarget::setNICSupplementC(bool supplement, u64 time) {
    update(_nicSupplementC, supplement, time);
}

void ADSBTarget::setPosition(double latitude, double longitude, u64 time) {
    update(_position, {latitude, longitude}, time);
}

void ADSBTarget::setHeading(double heading, u64 time) {
    update(_heading, heading, time);
    _headingValid = true;
}

void ADSBTarget::setNUCp(u8 nucp, u64 time) {
    track(_nucp, nucp, time);
}

// Only version 0 has NUCr. Later versions have NACv in these bits.
void ADSBTarget::setNUCr(u8 nucr, u64 time) {
    if (mopsVersion() == MOPSVersion0) {
        track(_nucr, nucr, time);
    }
}

void ADSBTarget::setNIC(u8 nic, u64 time) {
    track(_nic, nic, time);
}

void ADSBTarget::setPIC(u8 pic, u64 time) {
    track(_pic, pic, time);
}

void ADSBTarget::setNACp(u8 nacp, u64 time) {
    track(_nacp, nacp, time);
}

void ADSBTarget::setSIL(u8 sil, u64 time) {
    track(_sil, sil, time);
}

// The first SPI, alert or category has a log line only if it differs from the default. A squawk or
// callsign has none if the old one is 0 or empty.

void ADSBTarget::setSpi(bool spi, u64 time) {
    if (spi != _spiStatus.value) {
        Log::log(Log::Info, moduleName, "SPI change old = %d new = %d",
                 static_cast<int>(_spiStatus.value), static_cast<int>(spi));
    }
    track(_spiStatus, spi, time);
}

void ADSBTarget::setAlert(bool alert, u64 time) {
    if (alert != _alertStatus.value) {
        Log::log(Log::Info, moduleName, "Alert status change old = %d new = %d",
                 static_cast<int>(_alertStatus.value), static_cast<int>(alert));
    }
    track(_alertStatus, alert, time);
}

void ADSBTarget::setEmitterCategory(u8 category, u64 time) {
    if (category != _emitterCategory.value) {
        Log::log(Log::Debug, moduleName, "Emitter category change old = %u new = %u",
                 unsigned{_emitterCategory.value}, unsigned{category});
    }
    track(_emitterCategory, category, time);
}

// With both times given, as a report has them.
void ADSBTarget::setEmitterCategory(u8 category, u64 lastUpdate, u64 lastChange) {
    setEmitterCategory(category, lastUpdate);
    _emitterCategory.lastChange = lastChange;
}

void ADSBTarget::setSquawk(u32 squawk, u64 time) {
    if (wouldChange(_squawk, squawk) && _squawk.value != 0) {
        Log::log(Log::Info, moduleName, "Squawk Change old = %s new = %s",
                 text::octal(_squawk.value).c_str(), text::octal(squawk).c_str());
    }
    track(_squawk, squawk, time);
}

void ADSBTarget::setCallsign(const std::string& callsign, u64 time) {
    if (wouldChange(_callsign, callsign) && !_callsign.value.empty()) {
        Log::log(Log::Info, moduleName, "Callsign Change old = %s new = %s",
                 _callsign.value.c_str(), callsign.c_str());
    }
    track(_callsign, callsign, time);
}

void ADSBTarget::setCallsign(const std::string& callsign, u64 lastUpdate, u64 lastChange) {
    setCallsign(callsign, lastUpdate);
    _callsign.lastChange = lastChange;
}

/// Differs from the tracked rule: if the first status is GroundStatusUnknown, it is no change.
void ADSBTarget::setGroundStatus(GroundStatus status, u64 time) {
    if (status != _groundStatus.value) {
        _groundStatus.value = status;
        _groundStatus.lastChange = time;
    }
    _groundStatus.lastUpdate = time;
}

/// The numbers of the quality indicators depend on the version, so a new version resets them. They
/// come back with the next airborne position.
void ADSBTarget::setMOPSVersion(const MOPSVersion& version, u64 time) {
    if (version != _mopsVersion.value) {
        _mopsVersion.value = version;
        _mopsVersion.lastChange = time;
        resetQualityIndicators();
    }
    _mopsVersion.lastUpdate = time;
}

void ADSBTarget::setMOPSVersionAssumed(u64 time) {
    _mopsVersion.lastUpdate = time;
    if (_mopsVersionConfirmed) {
        _mopsVersionConfirmed = false;
        _mopsVersion.lastChange = time;
    }
}

void ADSBTarget::setMOPSVersionConfirmed(u64 time) {
    _mopsVersion.lastUpdate = time;
    if (!_mopsVersionConfirmed) {
        _mopsVersionConfirmed = true;
        _mopsVersion.lastChange = time;
    }
}

u32 ADSBTarget::increaseStatistic(DFMessage::DownlinkFormat format, u64 time) {
    _statisticLastUpdate = time;
    return increase(_statisticDfCounts, format);
}

u32 ADSBTarget::increaseStatistic(ADSBMessage::ADSBMessageType type, u64 time) {
    _statisticLastUpdate = time;
    return increase(_statisticADSBCounts, type);
}

void ADSBTarget::resetStatistic() {
    _statisticDfCounts.fill(0);
    _statisticADSBCounts.fill(0);
    _statisticLastUpdate = 0;
}

// With equal stamps the odd frame counts as the newer one. This is common: stamps by the system
// clock are whole seconds, and position messages come twice a second.
void ADSBTarget::decodeCPRPosition() {
    const bool evenIsNewer = _cprEven.timeStamp > _cprOdd.timeStamp;
    const auto position = cpr::solve({_cprEven.latitude, _cprEven.longitude},
                                     {_cprOdd.latitude, _cprOdd.longitude}, evenIsNewer);
    if (position) {
        setPosition(position->latitude, position->longitude,
                    std::max(_cprEven.timeStamp, _cprOdd.timeStamp));
    }
}

// NACp and SIL are set only at version 0. Later versions send them in the target status message,
// which the tracker does not use.
void ADSBTarget::updateQualityIndicators(u8 typeCode, u64 time) {
    const auto apply = [this, time](const PositionQuality& quality) {
        setNUCp(quality.nucp, time);
        setNIC(quality.nic, time);
        setPIC(quality.pic, time);
    };
    const Supplements supplements{
        stateOf(_nicSupplementA),
        stateOf(_nicSupplementB),
        stateOf(_nicSupplementC),
    };
    switch (mopsVersion()) {
    case MOPSVersion0: {
        const PositionQualityV0 quality = positionQualityV0(typeCode);
        apply(quality);
        setNACp(quality.nacp, time);
        setSIL(quality.sil, time);
        return;
    }
    case MOPSVersion1:
        return apply(positionQualityV1(typeCode, supplements));
    case MOPSVersion2:
        return apply(positionQualityV2(typeCode, supplements));
    default:
        return resetQualityIndicators();
    }
}

// Time 0 means never: the last updates are gone with the values. NUCr and the supplements come from
// other messages, so they stay.
void ADSBTarget::resetQualityIndicators() {
    for (ADSBTrackedDatum<u8>* indicator : {&_nucp, &_nic, &_pic, &_nacp, &_sil}) {
        track(*indicator, u8{0}, 0);
    }
}

} // namespace tolvarin::ondrel
