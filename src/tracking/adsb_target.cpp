#include <ondrel/adsb_target.h>

#include <ondrel/log.h>

#include "cpr.h"
#include "quality_indicators.h"
#include "text.h"

#include <algorithm>
#include <numeric>

namespace tolvarin::ondrel {

namespace {

const std::string moduleName = "ADSBTarget";

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

Supplement stateOf(bool value, u64 lastUpdate) {
    if (lastUpdate == 0) {
        return Supplement::Unknown;
    }
    return value ? Supplement::Set : Supplement::Clear;
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

void ADSBTarget::setHeading(double heading, u64 time) {
    _heading.set(heading, time);
    _headingValid = true;
}

void ADSBTarget::setNUCr(u8 nucr, u64 time) {
    if (_mopsVersion == MOPSVersion0) {
        _nucr.set(nucr, time);
    }
}

void ADSBTarget::setSpi(bool spi, u64 time) {
    if (spi != _spiStatus.value) {
        Log::log(Log::Info, moduleName, "SPI change old = %d new = %d",
                 static_cast<int>(_spiStatus.value), static_cast<int>(spi));
    }
    _spiStatus.set(spi, time);
}

void ADSBTarget::setAlert(bool alert, u64 time) {
    if (alert != _alertStatus.value) {
        Log::log(Log::Info, moduleName, "Alert status change old = %d new = %d",
                 static_cast<int>(_alertStatus.value), static_cast<int>(alert));
    }
    _alertStatus.set(alert, time);
}

void ADSBTarget::setEmitterCategory(u8 category, u64 time) {
    if (category != _emitterCategory.value) {
        Log::log(Log::Debug, moduleName, "Emitter category change old = %u new = %u",
                 unsigned{_emitterCategory.value}, unsigned{category});
    }
    _emitterCategory.set(category, time);
}

void ADSBTarget::setEmitterCategory(u8 category, u64 lastUpdate, u64 lastChange) {
    setEmitterCategory(category, lastUpdate);
    _emitterCategory.lastChange = lastChange;
}

void ADSBTarget::setSquawk(u32 squawk, u64 time) {
    if (_squawk.wouldChange(squawk) && _squawk.value != 0) {
        Log::log(Log::Info, moduleName, "Squawk Change old = %s new = %s",
                 text::octal(_squawk.value).c_str(), text::octal(squawk).c_str());
    }
    _squawk.set(squawk, time);
}

void ADSBTarget::setCallsign(const std::string& callsign, u64 time) {
    if (_callsign.wouldChange(callsign) && !_callsign.value.empty()) {
        Log::log(Log::Info, moduleName, "Callsign Change old = %s new = %s",
                 _callsign.value.c_str(), callsign.c_str());
    }
    _callsign.set(callsign, time);
}

void ADSBTarget::setCallsign(const std::string& callsign, u64 lastUpdate, u64 lastChange) {
    setCallsign(callsign, lastUpdate);
    _callsign.lastChange = lastChange;
}

/// No first-call rule here: a first status that is unknown is no change.
void ADSBTarget::setGroundStatus(GroundStatus status, u64 time) {
    if (status != _groundStatus.value) {
        _groundStatus.value = status;
        _groundStatus.lastChange = time;
    }
    _groundStatus.lastUpdate = time;
}

void ADSBTarget::setMOPSVersion(const MOPSVersion& version, u64 time) {
    if (version != _mopsVersion) {
        _mopsVersion = version;
        _mopsVersionLastChange = time;
        resetQualityIndicators();
    }
    _mopsVersionLastUpdate = time;
}

void ADSBTarget::setMOPSVersionAssumed(u64 time) {
    confirmMOPSVersion(false, time);
}

void ADSBTarget::setMOPSVersionConfirmed(u64 time) {
    confirmMOPSVersion(true, time);
}

void ADSBTarget::confirmMOPSVersion(bool confirmed, u64 time) {
    if (confirmed != _mopsVersionConfirmed) {
        _mopsVersionConfirmed = confirmed;
        _mopsVersionLastChange = time;
    }
    _mopsVersionLastUpdate = time;
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

void ADSBTarget::decodeCPRPosition() {
    const bool evenIsNewer = _cprEven.timeStamp > _cprOdd.timeStamp;
    const auto position = cpr::solve({_cprEven.latitude, _cprEven.longitude},
                                     {_cprOdd.latitude, _cprOdd.longitude}, evenIsNewer);
    if (position) {
        setPosition(position->latitude, position->longitude,
                    std::max(_cprEven.timeStamp, _cprOdd.timeStamp));
    }
}

void ADSBTarget::updateQualityIndicators(u8 typeCode, u64 time) {
    const auto apply = [this, time](const PositionQuality& quality) {
        setNUCp(quality.nucp, time);
        setNIC(quality.nic, time);
        setPIC(quality.pic, time);
    };
    const Supplements supplements{
        stateOf(_nicSupplementA.value, _nicSupplementA.lastUpdate),
        stateOf(_nicSupplementB.value, _nicSupplementB.lastUpdate),
        stateOf(_nicSupplementC.value, _nicSupplementC.lastUpdate),
    };
    switch (_mopsVersion) {
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

void ADSBTarget::resetQualityIndicators() {
    for (Tracked<u8>* indicator : {&_nucp, &_nic, &_pic, &_nacp, &_sil}) {
        indicator->set(0, 0);
    }
}

} // namespace tolvarin::ondrel
