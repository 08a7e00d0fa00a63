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
/// Times are milliseconds since 1970-01-01 UTC; 0 means never. Plain data: copy it between threads.
class ONDREL_EXPORT ADSBTargetReport {
public:
    /// Whether a tracker would take the report in: it has an address and was updated at least once.
    bool valid() const { return _lastUpdate > 0 && _icaoAddressValid; }

    /// The track number of the target; 0 for none.
    u32 trackId() const { return _trackId; }
    bool trackIdValid() const { return _trackId > 0; }
    void setTrackId(const u32& trackId) { _trackId = trackId; }

    /// Last update of the target as a whole.
    u64 lastUpdate() const { return _lastUpdate; }
    void setLastUpdate(const u64& time) { _lastUpdate = time; }

    /// The 24-bit ICAO address. Setting it makes it valid unless it is 0.
    u32 icaoAddress() const { return _icaoAddress; }
    bool icaoAddressValid() const { return _icaoAddressValid; }
    void setIcaoAddress(const u32& address) {
        _icaoAddress = address;
        _icaoAddressValid = address != 0;
    }
    void setIcaoAddressValid(bool valid) { _icaoAddressValid = valid; }

    /// The callsign. Setting it makes it valid unless it is empty.
    std::string callsign() const { return _callsign.value; }
    bool callsignValid() const { return _callsign.valid; }
    u64 callsignLastUpdate() const { return _callsign.lastUpdate; }
    u64 callsignLastChange() const { return _callsign.lastChange; }
    void setCallsign(const std::string& value) { _callsign.set(value, !value.empty()); }
    void setCallsignValid(bool valid) { _callsign.valid = valid; }
    void setCallsignLastUpdate(const u64& time) { _callsign.lastUpdate = time; }
    void setCallsignLastChange(const u64& time) { _callsign.lastChange = time; }

    /// Setting it makes it valid.
    u8 emitterCategory() const { return _emitterCategory.value; }
    bool emitterCategoryValid() const { return _emitterCategory.valid; }
    u64 emitterCategoryLastUpdate() const { return _emitterCategory.lastUpdate; }
    u64 emitterCategoryLastChange() const { return _emitterCategory.lastChange; }
    void setEmitterCategory(const u8& value) { _emitterCategory.set(value, true); }
    void setEmitterCategoryValid(bool valid) { _emitterCategory.valid = valid; }
    void setEmitterCategoryLastUpdate(const u64& time) { _emitterCategory.lastUpdate = time; }
    void setEmitterCategoryLastChange(const u64& time) { _emitterCategory.lastChange = time; }

    /// The Mode A code, whose octal form is the code. Setting it makes it valid from 1 to 4095.
    u32 squawk() const { return _squawk.value; }
    bool squawkValid() const { return _squawk.valid; }
    u64 squawkLastUpdate() const { return _squawk.lastUpdate; }
    u64 squawkLastChange() const { return _squawk.lastChange; }
    void setSquawk(const u32& value) { _squawk.set(value, value >= 1 && value <= 4095); }
    void setSquawkValid(bool valid) { _squawk.valid = valid; }
    void setSquawkLastUpdate(const u64& time) { _squawk.lastUpdate = time; }
    void setSquawkLastChange(const u64& time) { _squawk.lastChange = time; }

    /// Degrees, north and east positive. Setting them makes them valid from -90 to 90 and -180 to
    /// 180.
    double latitude() const { return _position.value.latitude; }
    double longitude() const { return _position.value.longitude; }
    bool positionValid() const { return _position.valid; }
    u64 positionLastUpdate() const { return _position.lastUpdate; }
    void setPosition(double latitude, double longitude);
    void setPositionValid(bool valid) { _position.valid = valid; }
    void setPositionLastUpdate(const u64& time) { _position.lastUpdate = time; }

    /// In the receiver's unit. Setting it makes it valid unless it is 0.
    u8 signalAmplitude() const { return _signalAmplitude.value; }
    bool signalAmplitudeValid() const { return _signalAmplitude.valid; }
    u64 signalAmplitudeLastUpdate() const { return _signalAmplitude.lastUpdate; }
    void setSignalAmplitude(const u8& value) { _signalAmplitude.set(value, value != 0); }
    void setSignalAmplitudeValid(bool valid) { _signalAmplitude.valid = valid; }
    void setSignalAmplitudeLastUpdate(const u64& time) { _signalAmplitude.lastUpdate = time; }

    /// Feet. Setting it makes it valid, as with the four data that follow.
    i32 altitudeBaro() const { return _altitudeBaro.value; }
    bool altitudeBaroValid() const { return _altitudeBaro.valid; }
    u64 altitudeBaroLastUpdate() const { return _altitudeBaro.lastUpdate; }
    void setAltitudeBaro(i32 value) { _altitudeBaro.set(value, true); }
    void setAltitudeBaroValid(bool valid) { _altitudeBaro.valid = valid; }
    void setAltitudeBaroLastUpdate(const u64& time) { _altitudeBaro.lastUpdate = time; }

    /// Knots.
    double groundSpeed() const { return _groundSpeed.value; }
    bool groundSpeedValid() const { return _groundSpeed.valid; }
    u64 groundSpeedLastUpdate() const { return _groundSpeed.lastUpdate; }
    void setGroundSpeed(double value) { _groundSpeed.set(value, true); }
    void setGroundSpeedValid(bool valid) { _groundSpeed.valid = valid; }
    void setGroundSpeedLastUpdate(const u64& time) { _groundSpeed.lastUpdate = time; }

    /// Degrees clockwise from north.
    double heading() const { return _heading.value; }
    bool headingValid() const { return _heading.valid; }
    u64 headingLastUpdate() const { return _heading.lastUpdate; }
    void setHeading(double value) { _heading.set(value, true); }
    void setHeadingValid(bool valid) { _heading.valid = valid; }
    void setHeadingLastUpdate(const u64& time) { _heading.lastUpdate = time; }

    /// Feet per minute, positive upward.
    i32 verticalRateBaro() const { return _verticalRateBaro.value; }
    bool verticalRateBaroValid() const { return _verticalRateBaro.valid; }
    u64 verticalRateBaroLastUpdate() const { return _verticalRateBaro.lastUpdate; }
    void setVerticalRateBaro(i32 value) { _verticalRateBaro.set(value, true); }
    void setVerticalRateBaroValid(bool valid) { _verticalRateBaro.valid = valid; }
    void setVerticalRateBaroLastUpdate(const u64& time) { _verticalRateBaro.lastUpdate = time; }

    /// True on the ground, false airborne.
    bool groundStatus() const { return _groundStatus.value; }
    bool groundStatusValid() const { return _groundStatus.valid; }
    u64 groundStatusLastUpdate() const { return _groundStatus.lastUpdate; }
    u64 groundStatusLastChange() const { return _groundStatus.lastChange; }
    void setGroundStatus(bool value) { _groundStatus.set(value, true); }
    void setGroundStatusValid(bool valid) { _groundStatus.valid = valid; }
    void setGroundStatusLastUpdate(const u64& time) { _groundStatus.lastUpdate = time; }
    void setGroundStatusLastChange(const u64& time) { _groundStatus.lastChange = time; }

    /// Special position identification. Setting it, or any datum that follows, leaves its flag
    /// alone.
    bool spiStatus() const { return _spiStatus.value; }
    bool spiStatusValid() const { return _spiStatus.valid; }
    u64 spiStatusLastUpdate() const { return _spiStatus.lastUpdate; }
    u64 spiStatusLastChange() const { return _spiStatus.lastChange; }
    void setSpiStatus(bool value) { _spiStatus.value = value; }
    void setSpiStatusValid(bool valid) { _spiStatus.valid = valid; }
    void setSpiStatusLastUpdate(const u64& time) { _spiStatus.lastUpdate = time; }
    void setSpiStatusLastChange(const u64& time) { _spiStatus.lastChange = time; }

    bool alertStatus() const { return _alertStatus.value; }
    bool alertStatusValid() const { return _alertStatus.valid; }
    u64 alertStatusLastUpdate() const { return _alertStatus.lastUpdate; }
    u64 alertStatusLastChange() const { return _alertStatus.lastChange; }
    void setAlertStatus(bool value) { _alertStatus.value = value; }
    void setAlertStatusValid(bool valid) { _alertStatus.valid = valid; }
    void setAlertStatusLastUpdate(const u64& time) { _alertStatus.lastUpdate = time; }
    void setAlertStatusLastChange(const u64& time) { _alertStatus.lastChange = time; }

    /// Always present; mopsVersionConfirmed() says how sure it is.
    MOPSVersion mopsVersion() const { return _mopsVersion.value; }
    bool mopsVersionConfirmed() const { return _mopsVersionConfirmed; }
    u64 mopsVersionLastUpdate() const { return _mopsVersion.lastUpdate; }
    u64 mopsVersionLastChange() const { return _mopsVersion.lastChange; }
    void setMopsVersion(const MOPSVersion& version) { _mopsVersion.value = version; }
    void setMopsVersionConfirmed(bool confirmed) { _mopsVersionConfirmed = confirmed; }
    void setMopsVersionLastUpdate(const u64& time) { _mopsVersion.lastUpdate = time; }
    void setMopsVersionLastChange(const u64& time) { _mopsVersion.lastChange = time; }

    /// Quality indicators, as in ADSBTarget.
    u8 nucp() const { return _nucp.value; }
    bool nucpValid() const { return _nucp.valid; }
    u64 nucpLastUpdate() const { return _nucp.lastUpdate; }
    u64 nucpLastChange() const { return _nucp.lastChange; }
    void setNUCp(u8 value) { _nucp.value = value; }
    void setNUCpValid(bool valid) { _nucp.valid = valid; }
    void setNUCpLastUpdate(const u64& time) { _nucp.lastUpdate = time; }
    void setNUCpLastChange(const u64& time) { _nucp.lastChange = time; }

    u8 nucr() const { return _nucr.value; }
    bool nucrValid() const { return _nucr.valid; }
    u64 nucrLastUpdate() const { return _nucr.lastUpdate; }
    u64 nucrLastChange() const { return _nucr.lastChange; }
    void setNUCr(const u8& value) { _nucr.value = value; }
    void setNUCrValid(bool valid) { _nucr.valid = valid; }
    void setNUCrLastUpdate(const u64& time) { _nucr.lastUpdate = time; }
    void setNUCrLastChange(const u64& time) { _nucr.lastChange = time; }

    u8 nic() const { return _nic.value; }
    bool nicValid() const { return _nic.valid; }
    u64 nicLastUpdate() const { return _nic.lastUpdate; }
    u64 nicLastChange() const { return _nic.lastChange; }
    void setNIC(u8 value) { _nic.value = value; }
    void setNICValid(bool valid) { _nic.valid = valid; }
    void setNICLastUpdate(const u64& time) { _nic.lastUpdate = time; }
    void setNICLastChange(const u64& time) { _nic.lastChange = time; }

    bool nicSuppA() const { return _nicSuppA.value; }
    bool nicSuppAValid() const { return _nicSuppA.valid; }
    u64 nicSuppALastUpdate() const { return _nicSuppA.lastUpdate; }
    void setNICSuppA(bool value) { _nicSuppA.value = value; }
    void setNICSuppAValid(bool valid) { _nicSuppA.valid = valid; }
    void setNICSuppALastUpdate(const u64& time) { _nicSuppA.lastUpdate = time; }

    bool nicSuppB() const { return _nicSuppB.value; }
    bool nicSuppBValid() const { return _nicSuppB.valid; }
    u64 nicSuppBLastUpdate() const { return _nicSuppB.lastUpdate; }
    void setNICSuppB(bool value) { _nicSuppB.value = value; }
    void setNICSuppBValid(bool valid) { _nicSuppB.valid = valid; }
    void setNICSuppBLastUpdate(const u64& time) { _nicSuppB.lastUpdate = time; }

    bool nicSuppC() const { return _nicSuppC.value; }
    bool nicSuppCValid() const { return _nicSuppC.valid; }
    u64 nicSuppCLastUpdate() const { return _nicSuppC.lastUpdate; }
    void setNICSuppC(bool value) { _nicSuppC.value = value; }
    void setNICSuppCValid(bool valid) { _nicSuppC.valid = valid; }
    void setNICSuppCLastUpdate(const u64& time) { _nicSuppC.lastUpdate = time; }

    u8 pic() const { return _pic.value; }
    bool picValid() const { return _pic.valid; }
    u64 picLastUpdate() const { return _pic.lastUpdate; }
    u64 picLastChange() const { return _pic.lastChange; }
    void setPIC(const u8& value) { _pic.value = value; }
    void setPICValid(bool valid) { _pic.valid = valid; }
    void setPICLastUpdate(const u64& time) { _pic.lastUpdate = time; }
    void setPICLastChange(const u64& time) { _pic.lastChange = time; }

    u8 nacp() const { return _nacp.value; }
    bool nacpValid() const { return _nacp.valid; }
    u64 nacpLastUpdate() const { return _nacp.lastUpdate; }
    u64 nacpLastChange() const { return _nacp.lastChange; }
    void setNACp(const u8& value) { _nacp.value = value; }
    void setNACpValid(bool valid) { _nacp.valid = valid; }
    void setNACpLastUpdate(const u64& time) { _nacp.lastUpdate = time; }
    void setNACpLastChange(const u64& time) { _nacp.lastChange = time; }

    u8 sil() const { return _sil.value; }
    bool silValid() const { return _sil.valid; }
    u64 silLastUpdate() const { return _sil.lastUpdate; }
    u64 silLastChange() const { return _sil.lastChange; }
    void setSIL(const u8& value) { _sil.value = value; }
    void setSILValid(bool valid) { _sil.valid = valid; }
    void setSILLastUpdate(const u64& time) { _sil.lastUpdate = time; }
    void setSILLastChange(const u64& time) { _sil.lastChange = time; }

    /// The address in six columns, upper-case hexadecimal, padded with blanks; empty if not valid.
    std::string icaoAddressString() const;

    /// The squawk as four octal digits at least, valid or not.
    std::string squawkString() const;

    /// Degrees, minutes, seconds and hemisphere, such as "523000N" and "0041500W", valid or not.
    /// Seconds are rounded without a carry, so that they can read 60; 0 is south and west. Dashes
    /// for what is no angle: not a number, infinite, or a magnitude of 2^31 and more.
    std::string latitudeString() const;
    std::string longitudeString() const;

    /// Latitude and longitude, with nothing between them.
    std::string positionString() const;

    /// The report as an HTML document with `style` as its style sheet. Nothing is escaped: a style
    /// and a callsign from an untrusted source are for the caller to clean.
    std::string toHtml(const std::string& style) const;

private:
    friend class ADSBTarget; // which makes snapshots of itself

    struct Page; // the document that toHtml() builds

    template <class Value>
    struct Datum : ADSBDatum<Value> {
        bool valid = false;

        void set(const Value& newValue, bool isValid) {
            this->value = newValue;
            valid = isValid;
        }
    };

    static std::string boolToString(bool value);
    static std::string timeToString(u64 time);

    u32 _trackId = 0;
    u64 _lastUpdate = 0;
    u32 _icaoAddress = 0;
    bool _icaoAddressValid = false;
    Datum<std::string> _callsign;
    Datum<u8> _emitterCategory;
    Datum<u32> _squawk;
    Datum<ADSBPosition> _position;
    Datum<u8> _signalAmplitude;
    Datum<i32> _altitudeBaro;
    Datum<double> _groundSpeed;
    Datum<double> _heading;
    Datum<i32> _verticalRateBaro;
    Datum<bool> _groundStatus;
    Datum<bool> _spiStatus;
    Datum<bool> _alertStatus;
    ADSBDatum<MOPSVersion> _mopsVersion;
    bool _mopsVersionConfirmed = false;
    Datum<u8> _nucp;
    Datum<u8> _nucr;
    Datum<u8> _nic;
    Datum<bool> _nicSuppA;
    Datum<bool> _nicSuppB;
    Datum<bool> _nicSuppC;
    Datum<u8> _pic;
    Datum<u8> _nacp;
    Datum<u8> _sil;
};

} // namespace tolvarin::ondrel
