/// @file
/// What the library knows of one aircraft.
#pragma once

#include <ondrel/adsb_datum.h>
#include <ondrel/adsb_message.h>
#include <ondrel/adsb_target_report.h>
#include <ondrel/df_messages.h>
#include <ondrel/export.h>
#include <ondrel/types.h>

#include <array>
#include <string>

namespace tolvarin::ondrel {

/// The record of one aircraft, kept by ADSBTracker and handed out as a copy. Nearly every datum
/// stands with its last update, when it was last received, and many with their last change, when it
/// last took a new value. Times are milliseconds since 1970-01-01 UTC as messages bear them; 0
/// means never. A datum once received stays valid however old it grows: compare its last update
/// with your own time.
///
/// A copy belongs to one thread at a time and follows its target no further.
class ONDREL_EXPORT ADSBTarget {
public:
    enum GroundStatus : i32 {
        GroundStatusUnknown = 0,
        OnGround = 1,
        Airborne = 2,
    };

    /// A record of which nothing is known but the address.
    explicit ADSBTarget(u32 icaoAddress);

    /// 1 to 4095, unless a report put another number in; 0 before the tracker gave one.
    u32 trackId() const { return _trackId; }

    /// Stamp of the last message or report that reached the target.
    u64 lastUpdate() const { return _lastUpdate; }

    u32 icaoAddr() const { return _icaoAddr; }

    /// Eight characters as sent, trailing blanks included; empty before the first.
    std::string callsign() const { return _callsign.value; }
    u64 callsignLastUpdate() const { return _callsign.lastUpdate; }
    u64 callsignLastChange() const { return _callsign.lastChange; }

    /// 0 to 7, as the identification message gives it.
    u8 emitterCategory() const { return _emitterCategory.value; }
    u64 emitterCategoryLastUpdate() const { return _emitterCategory.lastUpdate; }
    u64 emitterCategoryLastChange() const { return _emitterCategory.lastChange; }
    bool emitterCategoryValid() const { return _emitterCategory.lastChange > 0; }

    /// The Mode A code, 0 to 4095: its octal form is the code as an operator reads it.
    u32 squawk() const { return _squawk.value; }
    u64 squawkLastUpdate() const { return _squawk.lastUpdate; }
    u64 squawkLastChange() const { return _squawk.lastChange; }
    bool squawkValid() const { return _squawk.lastUpdate > 0; }

    /// Degrees, north and east positive, solved from a pair of position messages.
    double latitude() const { return _position.value.latitude; }
    double longitude() const { return _position.value.longitude; }
    u64 positionLastUpdate() const { return _position.lastUpdate; }
    bool positionValid() const { return _position.lastUpdate > 0; }

    /// Of the last DF-17, in the receiver's unit.
    u8 signalAmplitude() const { return _signalAmplitude.value; }
    u64 signalAmplitudeLastUpdate() const { return _signalAmplitude.lastUpdate; }
    bool signalAmplitudeValid() const { return _signalAmplitude.lastUpdate > 0; }

    /// Feet.
    i32 altitudeBaro() const { return _altitudeBaro.value; }
    u64 altitudeBaroLastUpdate() const { return _altitudeBaro.lastUpdate; }
    bool altitudeBaroValid() const { return _altitudeBaro.lastUpdate > 0; }

    /// Knots.
    double groundSpeed() const { return _groundSpeed.value; }
    u64 groundSpeedLastUpdate() const { return _groundSpeed.lastUpdate; }
    bool groundSpeedValid() const { return _groundSpeed.lastUpdate > 0; }

    /// Degrees clockwise from north.
    double heading() const { return _heading.value; }
    u64 headingLastUpdate() const { return _heading.lastUpdate; }
    bool headingValid() const { return _headingValid; }

    /// Feet per minute, positive upward.
    i32 verticalRateBaro() const { return _verticalRateBaro.value; }
    u64 verticalRateBaroLastUpdate() const { return _verticalRateBaro.lastUpdate; }
    bool verticalRateBaroValid() const { return _verticalRateBaro.lastUpdate > 0; }

    /// 0 to 7, of the last all-call reply.
    u8 transponderCommCapability() const { return _transponderCommCapability.value; }
    u64 transponderCommCapabilityLastUpdate() const {
        return _transponderCommCapability.lastUpdate;
    }
    bool transponderCommCapabilityValid() const { return _transponderCommCapability.lastUpdate > 0; }

    GroundStatus groundStatus() const { return _groundStatus.value; }
    u64 groundStatusLastUpdate() const { return _groundStatus.lastUpdate; }
    u64 groundStatusLastChange() const { return _groundStatus.lastChange; }
    bool groundStatusValid() const { return _groundStatus.lastUpdate > 0; }

    /// Special position identification.
    bool spiStatus() const { return _spiStatus.value; }
    u64 spiStatusLastUpdate() const { return _spiStatus.lastUpdate; }
    u64 spiStatusLastChange() const { return _spiStatus.lastChange; }
    bool spiStatusValid() const { return _spiStatus.lastUpdate > 0; }

    bool alertStatus() const { return _alertStatus.value; }
    u64 alertStatusLastUpdate() const { return _alertStatus.lastUpdate; }
    u64 alertStatusLastChange() const { return _alertStatus.lastChange; }
    bool alertStatusValid() const { return _alertStatus.lastUpdate > 0; }

    /// 0, 1 or 2; how the payloads of the aircraft are read.
    MOPSVersion mopsVersion() const { return _mopsVersion.value; }
    bool mopsVersionConfirmed() const { return _mopsVersionConfirmed; }
    bool mopsVersionAssumed() const { return !_mopsVersionConfirmed; }
    u64 mopsVersionLastUpdate() const { return _mopsVersion.lastUpdate; }
    u64 mopsVersionLastChange() const { return _mopsVersion.lastChange; }

    /// Navigation uncertainty category of the position, 0 to 9.
    u8 nucp() const { return _nucp.value; }
    u64 nucpLastUpdate() const { return _nucp.lastUpdate; }
    u64 nucpLastChange() const { return _nucp.lastChange; }
    bool nucpValid() const { return _nucp.lastUpdate > 0; }

    /// Navigation uncertainty category of the velocity, 0 to 7; version 0 only.
    u8 nucr() const { return _nucr.value; }
    u64 nucrLastUpdate() const { return _nucr.lastUpdate; }
    u64 nucrLastChange() const { return _nucr.lastChange; }
    bool nucrValid() const { return _mopsVersion.value == MOPSVersion0 && _nucr.lastUpdate > 0; }

    /// Navigation integrity category, 0 to 11.
    u8 nic() const { return _nic.value; }
    u64 nicLastUpdate() const { return _nic.lastUpdate; }
    u64 nicLastChange() const { return _nic.lastChange; }
    bool nicValid() const { return _nic.lastUpdate > 0; }

    bool nicSupplementA() const { return _nicSupplementA.value; }
    u64 nicSuppALastUpdate() const { return _nicSupplementA.lastUpdate; }
    bool nicSupplementAValid() const {
        return _mopsVersion.value >= MOPSVersion1 && _nicSupplementA.lastUpdate > 0;
    }

    bool nicSupplementB() const { return _nicSupplementB.value; }
    u64 nicSuppBLastUpdate() const { return _nicSupplementB.lastUpdate; }
    bool nicSupplementBValid() const {
        return _mopsVersion.value >= MOPSVersion2 && _nicSupplementB.lastUpdate > 0;
    }

    bool nicSupplementC() const { return _nicSupplementC.value; }
    u64 nicSuppCLastUpdate() const { return _nicSupplementC.lastUpdate; }
    bool nicSupplementCValid() const {
        return _mopsVersion.value >= MOPSVersion2 && _nicSupplementC.lastUpdate > 0;
    }

    /// Position integrity category, 0 to 14.
    u8 pic() const { return _pic.value; }
    u64 picLastUpdate() const { return _pic.lastUpdate; }
    u64 picLastChange() const { return _pic.lastChange; }
    bool picValid() const { return _pic.lastUpdate > 0; }

    /// Navigation accuracy category of the position, 0 to 11; concluded at version 0.
    u8 nacp() const { return _nacp.value; }
    u64 nacpLastUpdate() const { return _nacp.lastUpdate; }
    u64 nacpLastChange() const { return _nacp.lastChange; }
    bool nacpValid() const { return _nacp.lastChange > 0; }

    /// Surveillance integrity level, 0 to 3; concluded at version 0.
    u8 sil() const { return _sil.value; }
    u64 silLastUpdate() const { return _sil.lastUpdate; }
    u64 silLastChange() const { return _sil.lastChange; }
    bool silValid() const { return _sil.lastChange > 0; }

    /// Messages counted by format, and of all formats; 0 for a value that is no format.
    u32 statisticDfMsgCount(DFMessage::DownlinkFormat format) const;
    u32 statisticDfMsgCount() const;
    /// Messages counted by kind of payload; 0 for a value that is no kind.
    u32 statisticADSBMsgCount(ADSBMessage::ADSBMessageType type) const;
    u64 statisticLastUpdate() const { return _statisticLastUpdate; }
    // NOLINTNEXTLINE(readability-make-member-function-const): so it is documented
    bool statisticValid() { return _statisticLastUpdate > 0; }

    /// A snapshot of the record, every datum included, valid or not.
    ADSBTargetReport report() const;

private:
    friend class ADSBTracker;

    struct CPRFrame {
        i32 latitude = 0;
        i32 longitude = 0;
        u64 timeStamp = 0;
    };

    void setLastUpdate(u64 time);
    void setAltitudeBaro(i32 altitude, u64 time);
    void setGroundSpeed(double speed, u64 time);
    void setVerticalRateBaro(i32 rate, u64 time);
    void setSignalAmplitude(u8 amplitude, u64 time);
    void setNICSupplementA(bool supplement, u64 time);
    void setNICSupplementB(bool supplement, u64 time);
    void setNICSupplementC(bool supplement, u64 time);
    void setPosition(double latitude, double longitude, u64 time);
    void setHeading(double heading, u64 time);
    void setNUCp(u8 nucp, u64 time);
    void setNUCr(u8 nucr, u64 time);
    void setNIC(u8 nic, u64 time);
    void setPIC(u8 pic, u64 time);
    void setNACp(u8 nacp, u64 time);
    void setSIL(u8 sil, u64 time);
    void setSpi(bool spi, u64 time);
    void setAlert(bool alert, u64 time);
    void setEmitterCategory(u8 category, u64 time);
    void setEmitterCategory(u8 category, u64 lastUpdate, u64 lastChange);
    void setSquawk(u32 squawk, u64 time);
    void setCallsign(const std::string& callsign, u64 time);
    void setCallsign(const std::string& callsign, u64 lastUpdate, u64 lastChange);
    void setGroundStatus(GroundStatus status, u64 time);
    void setMOPSVersion(const MOPSVersion& version, u64 time);
    void setMOPSVersionAssumed(u64 time);
    void setMOPSVersionConfirmed(u64 time);
    u32 increaseStatistic(DFMessage::DownlinkFormat format, u64 time);
    u32 increaseStatistic(ADSBMessage::ADSBMessageType type, u64 time);
    void resetStatistic();
    void decodeCPRPosition();
    void updateQualityIndicators(u8 typeCode, u64 time);
    void resetQualityIndicators();

    // The data that most replies touch stand first. Among thousands of aircraft a record is not in
    // the cache, and each cache line that a reply needs of it costs time.
    u32 _icaoAddr;
    u32 _trackId = 0;
    u64 _lastUpdate = 0;
    ADSBDatum<i32> _altitudeBaro;
    ADSBDatum<GroundStatus> _groundStatus;
    u64 _statisticLastUpdate = 0;
    ADSBDatum<bool> _spiStatus;
    ADSBDatum<bool> _alertStatus;
    ADSBDatum<u8> _signalAmplitude;
    std::array<u32, DFMessage::DF24 + 1> _statisticDfCounts{};
    std::array<u32, ADSBMessage::RESERVED + 1> _statisticADSBCounts{};

    ADSBDatum<MOPSVersion> _mopsVersion;
    bool _mopsVersionConfirmed = false;
    bool _headingValid = false;
    CPRFrame _cprOdd;
    CPRFrame _cprEven;
    ADSBDatum<ADSBPosition> _position;
    ADSBDatum<u8> _nucp;
    ADSBDatum<u8> _nic;
    ADSBDatum<u8> _pic;
    ADSBDatum<u8> _nacp;
    ADSBDatum<u8> _sil;
    ADSBDatum<bool> _nicSupplementA;
    ADSBDatum<bool> _nicSupplementB;
    ADSBDatum<bool> _nicSupplementC;
    ADSBDatum<double> _groundSpeed;
    ADSBDatum<double> _heading;
    ADSBDatum<i32> _verticalRateBaro;
    ADSBDatum<u8> _nucr;
    ADSBDatum<u32> _squawk;
    ADSBDatum<u8> _transponderCommCapability;
    ADSBDatum<std::string> _callsign;
    ADSBDatum<u8> _emitterCategory;
};

} // namespace tolvarin::ondrel
