// How a report is filled: from a target, or by hand.

#include <ondrel/adsb_target.h>
#include <ondrel/adsb_target_report.h>

namespace tolvarin::ondrel {

/// Each line copies a datum with its times, valid or not, and says whether it is valid. The result
/// is the same as if a client called the setters of the report, the value before the flag.
ADSBTargetReport ADSBTarget::report() const {
    ADSBTargetReport r;
    r._trackId = _trackId;
    r._lastUpdate = _lastUpdate;
    r._icaoAddress = _icaoAddr;
    r._icaoAddressValid = _icaoAddr > 0; // no aircraft has address 0
    r._callsign = {_callsign, !_callsign.value.empty()};
    r._emitterCategory = {_emitterCategory, emitterCategoryValid()};
    r._squawk = {_squawk, squawkValid()};
    r._position = {_position, positionValid()};
    r._signalAmplitude = {_signalAmplitude, signalAmplitudeValid()};
    r._altitudeBaro = {_altitudeBaro, altitudeBaroValid()};
    r._groundSpeed = {_groundSpeed, groundSpeedValid()};
    r._heading = {_heading, headingValid()};
    r._verticalRateBaro = {_verticalRateBaro, verticalRateBaroValid()};
    // A report has one bit for the ground status, so an unknown status reads as airborne.
    r._groundStatus = {
        {{_groundStatus.value == OnGround, _groundStatus.lastUpdate}, _groundStatus.lastChange},
        groundStatusValid()};
    r._spiStatus = {_spiStatus, spiStatusValid()};
    r._alertStatus = {_alertStatus, alertStatusValid()};
    r._mopsVersion = _mopsVersion;
    r._mopsVersionConfirmed = _mopsVersionConfirmed;
    r._nucp = {_nucp, nucpValid()};
    r._nucr = {_nucr, nucrValid()};
    r._nic = {_nic, nicValid()};
    r._nicSuppA = {_nicSupplementA, nicSupplementAValid()};
    r._nicSuppB = {_nicSupplementB, nicSupplementBValid()};
    r._nicSuppC = {_nicSupplementC, nicSupplementCValid()};
    r._pic = {_pic, picValid()};
    r._nacp = {_nacp, nacpValid()};
    r._sil = {_sil, silValid()};
    return r;
}

void ADSBTargetReport::setPosition(double latitude, double longitude) {
    // NaN and values out of range are stored too, but are not valid.
    const bool onEarth =
        latitude >= -90.0 && latitude <= 90.0 && longitude >= -180.0 && longitude <= 180.0;
    _position.set({latitude, longitude}, onEarth);
}

} // namespace tolvarin::ondrel
