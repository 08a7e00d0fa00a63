/// @file
/// A target as it leaves a tracker.
#pragma once

#include <ondrel/adsb_datum.h>
#include <ondrel/export.h>
#include <ondrel/types.h>

#include <string>

namespace tolvarin::ondrel {

/// A snapshot of one aircraft with the validity of each datum and the times at which it was last
/// received and last changed. ADSBTarget::report makes one, ADSBTracker::procTargetReport takes one
/// in, and a client may fill one by hand. To carry a report elsewhere, read the getters and fill a
/// new report through the setters: value first, then flag and times.
///
/// A new report is empty: numbers and times are 0, flags false, the MOPS version is 0 and assumed.
/// One that a target made has the target's flags; the ranges below are those of its values. A
/// setter stores any value. Times are milliseconds since 1970-01-01 UTC; 0 means never.
///
/// Plain data: copy it between threads. Only exhausted memory throws; the report is then as it was.
class ONDREL_EXPORT ADSBTargetReport {
public:
    /// A report without data.
    ADSBTargetReport() = default;

    /// Copies and moves take all data.
    ///@{
    ADSBTargetReport(const ADSBTargetReport&) = default;
    ADSBTargetReport(ADSBTargetReport&&) noexcept = default;
    ADSBTargetReport& operator=(const ADSBTargetReport& other) {
        return *this = ADSBTargetReport(other);
    }
    ADSBTargetReport& operator=(ADSBTargetReport&&) noexcept = default;
    ///@}

    /// Whether a tracker would take the report in: it has an address and was updated at least once.
    bool valid() const { return _lastUpdate > 0 && _icaoAddressValid; }

    /// The track number of the target, 1 to 4095; 0 for none.
    u32 trackId() const { return _trackId; }
    /// Whether there is a track number: any but 0.
    bool trackIdValid() const { return _trackId > 0; }
    /// Any number is stored; a tracker takes it over unchecked, 0 included.
    void setTrackId(const u32& trackId) { _trackId = trackId; }

    /// When the target as a whole was last updated, in milliseconds; 0 means never.
    ///@{
    u64 lastUpdate() const { return _lastUpdate; }
    void setLastUpdate(const u64& time) { _lastUpdate = time; }
    ///@}

    /// The 24-bit ICAO address.
    u32 icaoAddress() const { return _icaoAddress; }
    /// Whether the address is known; without it the report is not valid.
    bool icaoAddressValid() const { return _icaoAddressValid; }
    /// Setting the address makes it valid unless it is 0; the flag is set on its own.
    ///@{
    void setIcaoAddress(const u32& address) {
        _icaoAddress = address;
        _icaoAddressValid = address != 0;
    }
    void setIcaoAddressValid(bool valid) { _icaoAddressValid = valid; }
    ///@}

    /// Eight characters, trailing blanks included, in a report that a target made (RTCA DO-260B,
    /// 2.2.3.2.5).
    std::string callsign() const { return _callsign.value; }
    /// Whether it is valid, when it was last received and last changed (milliseconds, 0: never).
    ///@{
    bool callsignValid() const { return _callsign.valid; }
    u64 callsignLastUpdate() const { return _callsign.lastUpdate; }
    u64 callsignLastChange() const { return _callsign.lastChange; }
    ///@}
    /// Setting the callsign makes it valid unless it is empty; flag and times are set on their own.
    ///@{
    void setCallsign(const std::string& value) { _callsign.set(value, !value.empty()); }
    void setCallsignValid(bool valid) { _callsign.valid = valid; }
    void setCallsignLastUpdate(const u64& time) { _callsign.lastUpdate = time; }
    void setCallsignLastChange(const u64& time) { _callsign.lastChange = time; }
    ///@}

    /// Emitter category, 0 to 7, without its set (RTCA DO-260B, 2.2.3.2.5).
    u8 emitterCategory() const { return _emitterCategory.value; }
    /// Whether it is valid, when it was last received and last changed (milliseconds, 0: never).
    ///@{
    bool emitterCategoryValid() const { return _emitterCategory.valid; }
    u64 emitterCategoryLastUpdate() const { return _emitterCategory.lastUpdate; }
    u64 emitterCategoryLastChange() const { return _emitterCategory.lastChange; }
    ///@}
    /// Setting the category makes it valid; flag and times are set on their own.
    ///@{
    void setEmitterCategory(const u8& value) { _emitterCategory.set(value, true); }
    void setEmitterCategoryValid(bool valid) { _emitterCategory.valid = valid; }
    void setEmitterCategoryLastUpdate(const u64& time) { _emitterCategory.lastUpdate = time; }
    void setEmitterCategoryLastChange(const u64& time) { _emitterCategory.lastChange = time; }
    ///@}

    /// The Mode A code, 0 to 4095: its octal form is the code as an operator reads it.
    u32 squawk() const { return _squawk.value; }
    /// Whether it is valid, when it was last received and last changed (milliseconds, 0: never).
    ///@{
    bool squawkValid() const { return _squawk.valid; }
    u64 squawkLastUpdate() const { return _squawk.lastUpdate; }
    u64 squawkLastChange() const { return _squawk.lastChange; }
    ///@}
    /// Setting the squawk makes it valid from 1 to 4095 only; flag and times are set on their own.
    ///@{
    void setSquawk(const u32& value) { _squawk.set(value, value >= 1 && value <= 4095); }
    void setSquawkValid(bool valid) { _squawk.valid = valid; }
    void setSquawkLastUpdate(const u64& time) { _squawk.lastUpdate = time; }
    void setSquawkLastChange(const u64& time) { _squawk.lastChange = time; }
    ///@}

    /// Degrees, north and east positive; the range is that of ADSBTarget::latitude.
    ///@{
    double latitude() const { return _position.value.latitude; }
    double longitude() const { return _position.value.longitude; }
    ///@}
    /// Whether it is valid, and when it was last received (milliseconds, 0: never).
    ///@{
    bool positionValid() const { return _position.valid; }
    u64 positionLastUpdate() const { return _position.lastUpdate; }
    ///@}
    /// Setting the position makes it valid from -90 to 90 and -180 to 180 degrees only; flag and
    /// time are set on their own.
    ///@{
    void setPosition(double latitude, double longitude);
    void setPositionValid(bool valid) { _position.valid = valid; }
    void setPositionLastUpdate(const u64& time) { _position.lastUpdate = time; }
    ///@}

    /// Signal amplitude, 0 to 255 in the receiver's unit.
    u8 signalAmplitude() const { return _signalAmplitude.value; }
    /// Whether it is valid, and when it was last received (milliseconds, 0: never).
    ///@{
    bool signalAmplitudeValid() const { return _signalAmplitude.valid; }
    u64 signalAmplitudeLastUpdate() const { return _signalAmplitude.lastUpdate; }
    ///@}
    /// Setting the amplitude makes it valid unless it is 0; flag and time are set on their own.
    ///@{
    void setSignalAmplitude(const u8& value) { _signalAmplitude.set(value, value != 0); }
    void setSignalAmplitudeValid(bool valid) { _signalAmplitude.valid = valid; }
    void setSignalAmplitudeLastUpdate(const u64& time) { _signalAmplitude.lastUpdate = time; }
    ///@}

    /// Barometric altitude in feet, -1000 to 203700.
    i32 altitudeBaro() const { return _altitudeBaro.value; }
    /// Whether it is valid, and when it was last received (milliseconds, 0: never).
    ///@{
    bool altitudeBaroValid() const { return _altitudeBaro.valid; }
    u64 altitudeBaroLastUpdate() const { return _altitudeBaro.lastUpdate; }
    ///@}
    /// Setting the altitude makes it valid; flag and time are set on their own.
    ///@{
    void setAltitudeBaro(i32 value) { _altitudeBaro.set(value, true); }
    void setAltitudeBaroValid(bool valid) { _altitudeBaro.valid = valid; }
    void setAltitudeBaroLastUpdate(const u64& time) { _altitudeBaro.lastUpdate = time; }
    ///@}

    /// Ground speed in knots.
    double groundSpeed() const { return _groundSpeed.value; }
    /// Whether it is valid, and when it was last received (milliseconds, 0: never).
    ///@{
    bool groundSpeedValid() const { return _groundSpeed.valid; }
    u64 groundSpeedLastUpdate() const { return _groundSpeed.lastUpdate; }
    ///@}
    /// Setting the speed makes it valid; flag and time are set on their own.
    ///@{
    void setGroundSpeed(double value) { _groundSpeed.set(value, true); }
    void setGroundSpeedValid(bool valid) { _groundSpeed.valid = valid; }
    void setGroundSpeedLastUpdate(const u64& time) { _groundSpeed.lastUpdate = time; }
    ///@}

    /// Direction of the ground speed, degrees clockwise from north, 0 to below 360.
    double heading() const { return _heading.value; }
    /// Whether it is valid, and when it was last received (milliseconds, 0: never).
    ///@{
    bool headingValid() const { return _heading.valid; }
    u64 headingLastUpdate() const { return _heading.lastUpdate; }
    ///@}
    /// Setting the heading makes it valid; flag and time are set on their own.
    ///@{
    void setHeading(double value) { _heading.set(value, true); }
    void setHeadingValid(bool valid) { _heading.valid = valid; }
    void setHeadingLastUpdate(const u64& time) { _heading.lastUpdate = time; }
    ///@}

    /// Barometric vertical rate in feet per minute, positive upward, -32640 to 32640.
    i32 verticalRateBaro() const { return _verticalRateBaro.value; }
    /// Whether it is valid, and when it was last received (milliseconds, 0: never).
    ///@{
    bool verticalRateBaroValid() const { return _verticalRateBaro.valid; }
    u64 verticalRateBaroLastUpdate() const { return _verticalRateBaro.lastUpdate; }
    ///@}
    /// Setting the rate makes it valid; flag and time are set on their own.
    ///@{
    void setVerticalRateBaro(i32 value) { _verticalRateBaro.set(value, true); }
    void setVerticalRateBaroValid(bool valid) { _verticalRateBaro.valid = valid; }
    void setVerticalRateBaroLastUpdate(const u64& time) { _verticalRateBaro.lastUpdate = time; }
    ///@}

    /// True on the ground. False airborne, and in a report of a target whose status is unknown.
    bool groundStatus() const { return _groundStatus.value; }
    /// Whether it is valid, when it was last received and last changed (milliseconds, 0: never).
    ///@{
    bool groundStatusValid() const { return _groundStatus.valid; }
    u64 groundStatusLastUpdate() const { return _groundStatus.lastUpdate; }
    u64 groundStatusLastChange() const { return _groundStatus.lastChange; }
    ///@}
    /// Setting the status makes it valid; flag and times are set on their own.
    ///@{
    void setGroundStatus(bool value) { _groundStatus.set(value, true); }
    void setGroundStatusValid(bool valid) { _groundStatus.valid = valid; }
    void setGroundStatusLastUpdate(const u64& time) { _groundStatus.lastUpdate = time; }
    void setGroundStatusLastChange(const u64& time) { _groundStatus.lastChange = time; }
    ///@}

    /// Special position identification: the pilot pressed the ident key.
    bool spiStatus() const { return _spiStatus.value; }
    /// Whether it is valid, when it was last received and last changed (milliseconds, 0: never).
    ///@{
    bool spiStatusValid() const { return _spiStatus.valid; }
    u64 spiStatusLastUpdate() const { return _spiStatus.lastUpdate; }
    u64 spiStatusLastChange() const { return _spiStatus.lastChange; }
    ///@}
    /// Setting SPI leaves its flag alone; flag and times are set on their own.
    ///@{
    void setSpiStatus(bool value) { _spiStatus.value = value; }
    void setSpiStatusValid(bool valid) { _spiStatus.valid = valid; }
    void setSpiStatusLastUpdate(const u64& time) { _spiStatus.lastUpdate = time; }
    void setSpiStatusLastChange(const u64& time) { _spiStatus.lastChange = time; }
    ///@}

    /// Alert: the squawk has changed or is one of an emergency.
    bool alertStatus() const { return _alertStatus.value; }
    /// Whether it is valid, when it was last received and last changed (milliseconds, 0: never).
    ///@{
    bool alertStatusValid() const { return _alertStatus.valid; }
    u64 alertStatusLastUpdate() const { return _alertStatus.lastUpdate; }
    u64 alertStatusLastChange() const { return _alertStatus.lastChange; }
    ///@}
    /// Setting the alert leaves its flag alone; flag and times are set on their own.
    ///@{
    void setAlertStatus(bool value) { _alertStatus.value = value; }
    void setAlertStatusValid(bool valid) { _alertStatus.valid = valid; }
    void setAlertStatusLastUpdate(const u64& time) { _alertStatus.lastUpdate = time; }
    void setAlertStatusLastChange(const u64& time) { _alertStatus.lastChange = time; }
    ///@}

    /// Version 0, 1 or 2 (RTCA DO-260, DO-260A, DO-260B); always present, so there is no flag.
    MOPSVersion mopsVersion() const { return _mopsVersion.value; }
    /// True if the version is confirmed, false if it is only assumed.
    bool mopsVersionConfirmed() const { return _mopsVersionConfirmed; }
    /// When version or confirmation was last set and last changed (milliseconds, 0: never).
    ///@{
    u64 mopsVersionLastUpdate() const { return _mopsVersion.lastUpdate; }
    u64 mopsVersionLastChange() const { return _mopsVersion.lastChange; }
    ///@}
    /// Each sets its own member and nothing else; no value is refused.
    ///@{
    void setMopsVersion(const MOPSVersion& version) { _mopsVersion.value = version; }
    void setMopsVersionConfirmed(bool confirmed) { _mopsVersionConfirmed = confirmed; }
    void setMopsVersionLastUpdate(const u64& time) { _mopsVersion.lastUpdate = time; }
    void setMopsVersionLastChange(const u64& time) { _mopsVersion.lastChange = time; }
    ///@}

    /// Navigation uncertainty category of the position (RTCA DO-260), 0 to 9, best 9.
    u8 nucp() const { return _nucp.value; }
    /// Whether it is valid, when it was last received and last changed (milliseconds, 0: never).
    ///@{
    bool nucpValid() const { return _nucp.valid; }
    u64 nucpLastUpdate() const { return _nucp.lastUpdate; }
    u64 nucpLastChange() const { return _nucp.lastChange; }
    ///@}
    /// Setting NUCp leaves its flag alone; flag and times are set on their own.
    ///@{
    void setNUCp(u8 value) { _nucp.value = value; }
    void setNUCpValid(bool valid) { _nucp.valid = valid; }
    void setNUCpLastUpdate(const u64& time) { _nucp.lastUpdate = time; }
    void setNUCpLastChange(const u64& time) { _nucp.lastChange = time; }
    ///@}

    /// Navigation uncertainty category of the velocity (RTCA DO-260), 0 to 7.
    u8 nucr() const { return _nucr.value; }
    /// Whether it is valid, when it was last received and last changed (milliseconds, 0: never).
    ///@{
    bool nucrValid() const { return _nucr.valid; }
    u64 nucrLastUpdate() const { return _nucr.lastUpdate; }
    u64 nucrLastChange() const { return _nucr.lastChange; }
    ///@}
    /// Setting NUCr leaves its flag alone; flag and times are set on their own.
    ///@{
    void setNUCr(const u8& value) { _nucr.value = value; }
    void setNUCrValid(bool valid) { _nucr.valid = valid; }
    void setNUCrLastUpdate(const u64& time) { _nucr.lastUpdate = time; }
    void setNUCrLastChange(const u64& time) { _nucr.lastChange = time; }
    ///@}

    /// Navigation integrity category (RTCA DO-260B), 0 to 11, best 11.
    u8 nic() const { return _nic.value; }
    /// Whether it is valid, when it was last received and last changed (milliseconds, 0: never).
    ///@{
    bool nicValid() const { return _nic.valid; }
    u64 nicLastUpdate() const { return _nic.lastUpdate; }
    u64 nicLastChange() const { return _nic.lastChange; }
    ///@}
    /// Setting NIC leaves its flag alone; flag and times are set on their own.
    ///@{
    void setNIC(u8 value) { _nic.value = value; }
    void setNICValid(bool valid) { _nic.valid = valid; }
    void setNICLastUpdate(const u64& time) { _nic.lastUpdate = time; }
    void setNICLastChange(const u64& time) { _nic.lastChange = time; }
    ///@}

    /// NIC supplement A of the operational status message.
    bool nicSuppA() const { return _nicSuppA.value; }
    /// Whether it is valid, and when it was last received (milliseconds, 0: never).
    ///@{
    bool nicSuppAValid() const { return _nicSuppA.valid; }
    u64 nicSuppALastUpdate() const { return _nicSuppA.lastUpdate; }
    ///@}
    /// Setting the supplement leaves its flag alone; flag and time are set on their own.
    ///@{
    void setNICSuppA(bool value) { _nicSuppA.value = value; }
    void setNICSuppAValid(bool valid) { _nicSuppA.valid = valid; }
    void setNICSuppALastUpdate(const u64& time) { _nicSuppA.lastUpdate = time; }
    ///@}

    /// NIC supplement B of the airborne position message.
    bool nicSuppB() const { return _nicSuppB.value; }
    /// Whether it is valid, and when it was last received (milliseconds, 0: never).
    ///@{
    bool nicSuppBValid() const { return _nicSuppB.valid; }
    u64 nicSuppBLastUpdate() const { return _nicSuppB.lastUpdate; }
    ///@}
    /// Setting the supplement leaves its flag alone; flag and time are set on their own.
    ///@{
    void setNICSuppB(bool value) { _nicSuppB.value = value; }
    void setNICSuppBValid(bool valid) { _nicSuppB.valid = valid; }
    void setNICSuppBLastUpdate(const u64& time) { _nicSuppB.lastUpdate = time; }
    ///@}

    /// NIC supplement C; no message sets it.
    bool nicSuppC() const { return _nicSuppC.value; }
    /// Whether it is valid, and when it was last received (milliseconds, 0: never).
    ///@{
    bool nicSuppCValid() const { return _nicSuppC.valid; }
    u64 nicSuppCLastUpdate() const { return _nicSuppC.lastUpdate; }
    ///@}
    /// Setting the supplement leaves its flag alone; flag and time are set on their own.
    ///@{
    void setNICSuppC(bool value) { _nicSuppC.value = value; }
    void setNICSuppCValid(bool valid) { _nicSuppC.valid = valid; }
    void setNICSuppCLastUpdate(const u64& time) { _nicSuppC.lastUpdate = time; }
    ///@}

    /// Position integrity category, 0 to 14, best 14: the NIC on a scale that all MOPS versions
    /// share.
    u8 pic() const { return _pic.value; }
    /// Whether it is valid, when it was last received and last changed (milliseconds, 0: never).
    ///@{
    bool picValid() const { return _pic.valid; }
    u64 picLastUpdate() const { return _pic.lastUpdate; }
    u64 picLastChange() const { return _pic.lastChange; }
    ///@}
    /// Setting PIC leaves its flag alone; flag and times are set on their own.
    ///@{
    void setPIC(const u8& value) { _pic.value = value; }
    void setPICValid(bool valid) { _pic.valid = valid; }
    void setPICLastUpdate(const u64& time) { _pic.lastUpdate = time; }
    void setPICLastChange(const u64& time) { _pic.lastChange = time; }
    ///@}

    /// Navigation accuracy category of the position (RTCA DO-260B), 0 to 11, best 11.
    u8 nacp() const { return _nacp.value; }
    /// Whether it is valid, when it was last received and last changed (milliseconds, 0: never).
    ///@{
    bool nacpValid() const { return _nacp.valid; }
    u64 nacpLastUpdate() const { return _nacp.lastUpdate; }
    u64 nacpLastChange() const { return _nacp.lastChange; }
    ///@}
    /// Setting NACp leaves its flag alone; flag and times are set on their own.
    ///@{
    void setNACp(const u8& value) { _nacp.value = value; }
    void setNACpValid(bool valid) { _nacp.valid = valid; }
    void setNACpLastUpdate(const u64& time) { _nacp.lastUpdate = time; }
    void setNACpLastChange(const u64& time) { _nacp.lastChange = time; }
    ///@}

    /// Surveillance integrity level (RTCA DO-260A), 0 to 3.
    u8 sil() const { return _sil.value; }
    /// Whether it is valid, when it was last received and last changed (milliseconds, 0: never).
    ///@{
    bool silValid() const { return _sil.valid; }
    u64 silLastUpdate() const { return _sil.lastUpdate; }
    u64 silLastChange() const { return _sil.lastChange; }
    ///@}
    /// Setting SIL leaves its flag alone; flag and times are set on their own.
    ///@{
    void setSIL(const u8& value) { _sil.value = value; }
    void setSILValid(bool valid) { _sil.valid = valid; }
    void setSILLastUpdate(const u64& time) { _sil.lastUpdate = time; }
    void setSILLastChange(const u64& time) { _sil.lastChange = time; }
    ///@}

    /// The address in six columns, upper-case hexadecimal, padded with blanks; empty if not valid.
    std::string icaoAddressString() const;

    /// The squawk as four octal digits or more, such as "7700", valid or not.
    std::string squawkString() const;

    /// Degrees, minutes, seconds and hemisphere, such as "523000N" and "0041500W", valid or not.
    /// Seconds are rounded without a carry, so that they can read 60; 0 is south and west. Dashes
    /// for what is no angle: not a number, infinite, or a magnitude of 2^31 and more.
    ///@{
    std::string latitudeString() const;
    std::string longitudeString() const;
    ///@}

    /// Latitude and longitude with nothing between them, such as "523000N0041500W".
    std::string positionString() const;

    /// The report, valid or not, as an HTML document with `style` as its style sheet. Nothing is
    /// escaped: a style and a callsign from an untrusted source are for the caller to clean.
    std::string toHtml(const std::string& style) const;

private:
    friend class ADSBTarget; // which makes snapshots of itself

    struct Page; // the sections of the page that toHtml() makes

    template <class Value, template <class> class Stored = ADSBDatum>
    struct Datum : Stored<Value> {
        bool valid = false;

        void set(const Value& newValue, bool isValid) {
            this->value = newValue;
            valid = isValid;
        }
    };
    template <class Value>
    using TrackedDatum = Datum<Value, ADSBTrackedDatum>;

    ONDREL_HIDDEN static std::string boolToString(bool value);
    ONDREL_HIDDEN static std::string timeToString(u64 time);

    u32 _trackId = 0;
    u64 _lastUpdate = 0;
    u32 _icaoAddress = 0;
    bool _icaoAddressValid = false;
    TrackedDatum<std::string> _callsign;
    TrackedDatum<u8> _emitterCategory;
    TrackedDatum<u32> _squawk;
    Datum<ADSBPosition> _position;
    Datum<u8> _signalAmplitude;
    Datum<i32> _altitudeBaro;
    Datum<double> _groundSpeed;
    Datum<double> _heading;
    Datum<i32> _verticalRateBaro;
    TrackedDatum<bool> _groundStatus;
    TrackedDatum<bool> _spiStatus;
    TrackedDatum<bool> _alertStatus;
    ADSBTrackedDatum<MOPSVersion> _mopsVersion;
    bool _mopsVersionConfirmed = false;
    TrackedDatum<u8> _nucp;
    TrackedDatum<u8> _nucr;
    TrackedDatum<u8> _nic;
    Datum<bool> _nicSuppA;
    Datum<bool> _nicSuppB;
    Datum<bool> _nicSuppC;
    TrackedDatum<u8> _pic;
    TrackedDatum<u8> _nacp;
    TrackedDatum<u8> _sil;
};

} // namespace tolvarin::ondrel
