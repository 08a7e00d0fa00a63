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
/// last took a new value. Times are milliseconds since 1970-01-01 UTC as messages have them; 0
/// means never. A datum once received stays valid however old it grows: compare its last update
/// with your own time. A datum that was never received is 0, false or empty.
///
/// A copy belongs to one thread at a time and follows its target no further. Only exhausted memory
/// throws; the record is then as it was.
class ONDREL_EXPORT ADSBTarget {
public:
    /// Where the aircraft says it is.
    enum GroundStatus : i32 {
        GroundStatusUnknown = 0, ///< not received, or flight status 4 or 5, which do not tell
        OnGround = 1,            ///< on the ground
        Airborne = 2,            ///< in the air
    };

    /// A record that knows the address and nothing else. The tracker makes those of its table.
    explicit ADSBTarget(u32 icaoAddress);

    /// Copies and moves take all data.
    ///@{
    ADSBTarget(const ADSBTarget&) = default;
    ADSBTarget(ADSBTarget&&) noexcept = default;
    ADSBTarget& operator=(const ADSBTarget& other) { return *this = ADSBTarget(other); }
    ADSBTarget& operator=(ADSBTarget&&) noexcept = default;
    ///@}

    /// Track number, 1 to 4095; 0 before the tracker gave one. A report can put in any number.
    u32 trackId() const { return _trackId; }

    /// When the last message was taken in, in milliseconds; a report brings its own last update.
    u64 lastUpdate() const { return _lastUpdate; }

    /// The 24-bit ICAO address.
    u32 icaoAddr() const { return _icaoAddr; }

    /// Eight characters as sent, trailing blanks included (RTCA DO-260B, 2.2.3.2.5). Empty before
    /// the first: the callsign has no flag.
    std::string callsign() const { return _callsign.value; }
    /// When it was last received and last changed (milliseconds, 0: never).
    ///@{
    u64 callsignLastUpdate() const { return _callsign.lastUpdate; }
    u64 callsignLastChange() const { return _callsign.lastChange; }
    ///@}

    /// Emitter category, 0 to 7 within a set that the target does not keep (RTCA DO-260B,
    /// 2.2.3.2.5).
    u8 emitterCategory() const { return _emitterCategory.value; }
    /// When it was last received and last changed (milliseconds, 0: never); valid once changed. The
    /// first one received counts as a change.
    ///@{
    u64 emitterCategoryLastUpdate() const { return _emitterCategory.lastUpdate; }
    u64 emitterCategoryLastChange() const { return _emitterCategory.lastChange; }
    bool emitterCategoryValid() const { return _emitterCategory.lastChange > 0; }
    ///@}

    /// The Mode A code of the last DF-5 or DF-21, 0 to 4095: its octal form is the code as an
    /// operator reads it.
    u32 squawk() const { return _squawk.value; }
    /// When it was last received and last changed (milliseconds, 0: never); valid once received. A
    /// squawk from a report does not move the last change.
    ///@{
    u64 squawkLastUpdate() const { return _squawk.lastUpdate; }
    u64 squawkLastChange() const { return _squawk.lastChange; }
    bool squawkValid() const { return _squawk.lastUpdate > 0; }
    ///@}

    /// Degrees, north and east positive, solved from an even and an odd airborne position message
    /// at most ten seconds apart (RTCA DO-260B, A.1.7). The latitude is from -90 to below 270,
    /// since false pairs are not refused; the longitude is above -180 and at most 180.
    ///@{
    double latitude() const { return _position.value.latitude; }
    double longitude() const { return _position.value.longitude; }
    ///@}
    /// When the newer message of the pair was received (milliseconds, 0: never); valid once solved.
    ///@{
    u64 positionLastUpdate() const { return _position.lastUpdate; }
    bool positionValid() const { return _position.lastUpdate > 0; }
    ///@}

    /// Signal amplitude of the last DF-17, 0 to 255 in the receiver's unit.
    u8 signalAmplitude() const { return _signalAmplitude.value; }
    /// When it was last received (milliseconds, 0: never); valid once received.
    ///@{
    u64 signalAmplitudeLastUpdate() const { return _signalAmplitude.lastUpdate; }
    bool signalAmplitudeValid() const { return _signalAmplitude.lastUpdate > 0; }
    ///@}

    /// Barometric altitude in feet, -1000 to 203700. The GNSS height of type codes 20 to 22 is
    /// stored here too.
    i32 altitudeBaro() const { return _altitudeBaro.value; }
    /// When it was last received (milliseconds, 0: never); valid once received.
    ///@{
    u64 altitudeBaroLastUpdate() const { return _altitudeBaro.lastUpdate; }
    bool altitudeBaroValid() const { return _altitudeBaro.lastUpdate > 0; }
    ///@}

    /// Ground speed in knots (RTCA DO-260B, 2.2.3.2.6); also 0 when it was not available.
    double groundSpeed() const { return _groundSpeed.value; }
    /// When it was last received (milliseconds, 0: never); valid once received.
    ///@{
    u64 groundSpeedLastUpdate() const { return _groundSpeed.lastUpdate; }
    bool groundSpeedValid() const { return _groundSpeed.lastUpdate > 0; }
    ///@}

    /// Direction of the ground speed, degrees clockwise from north, 0 to below 360; also 0 when it
    /// was not available.
    double heading() const { return _heading.value; }
    /// When it was last received (milliseconds, 0: never); valid once received, also at time 0.
    ///@{
    u64 headingLastUpdate() const { return _heading.lastUpdate; }
    bool headingValid() const { return _headingValid; }
    ///@}

    /// Barometric vertical rate in feet per minute, positive upward, -32640 to 32640; also 0 when
    /// it was not available.
    i32 verticalRateBaro() const { return _verticalRateBaro.value; }
    /// When it was last received (milliseconds, 0: never); valid once received.
    ///@{
    u64 verticalRateBaroLastUpdate() const { return _verticalRateBaro.lastUpdate; }
    bool verticalRateBaroValid() const { return _verticalRateBaro.lastUpdate > 0; }
    ///@}

    /// CA field of the last DF-11, 0 to 7 (ICAO Annex 10 Volume IV, 3.1.2.5.2.2.1).
    u8 transponderCommCapability() const { return _transponderCommCapability.value; }
    /// When it was last received (milliseconds, 0: never); valid once received.
    ///@{
    u64 transponderCommCapabilityLastUpdate() const {
        return _transponderCommCapability.lastUpdate;
    }
    bool transponderCommCapabilityValid() const {
        return _transponderCommCapability.lastUpdate > 0;
    }
    ///@}

    /// Whether the aircraft is on the ground, by the last flight status (DF-4, 5, 20, 21), vertical
    /// status (DF-0, 16) or airborne position message.
    GroundStatus groundStatus() const { return _groundStatus.value; }
    /// When it was last received and last changed (milliseconds, 0: never); valid once received.
    /// A first status of unknown is no change.
    ///@{
    u64 groundStatusLastUpdate() const { return _groundStatus.lastUpdate; }
    u64 groundStatusLastChange() const { return _groundStatus.lastChange; }
    bool groundStatusValid() const { return _groundStatus.lastUpdate > 0; }
    ///@}

    /// Special position identification of the flight status: the pilot pressed the ident key.
    bool spiStatus() const { return _spiStatus.value; }
    /// When it was last received and last changed (milliseconds, 0: never); valid once received.
    ///@{
    u64 spiStatusLastUpdate() const { return _spiStatus.lastUpdate; }
    u64 spiStatusLastChange() const { return _spiStatus.lastChange; }
    bool spiStatusValid() const { return _spiStatus.lastUpdate > 0; }
    ///@}

    /// Alert of the flight status: the squawk has changed or is one of an emergency.
    bool alertStatus() const { return _alertStatus.value; }
    /// When it was last received and last changed (milliseconds, 0: never); valid once received.
    ///@{
    u64 alertStatusLastUpdate() const { return _alertStatus.lastUpdate; }
    u64 alertStatusLastChange() const { return _alertStatus.lastChange; }
    bool alertStatusValid() const { return _alertStatus.lastUpdate > 0; }
    ///@}

    /// Version 0, 1 or 2, by which the next payload of the aircraft is read; 0 until an operational
    /// status message tells another (RTCA DO-260B, 2.2.3.2.7.2).
    MOPSVersion mopsVersion() const { return _mopsVersion.value; }
    /// Whether the version is confirmed, or else only assumed. An operational status message
    /// confirms version 1 or 2. Version 0 is confirmed by 20 squitters without one of type code 28,
    /// 29 or 31. A version number above 2 gives version 2, assumed.
    ///@{
    bool mopsVersionConfirmed() const { return _mopsVersionConfirmed; }
    bool mopsVersionAssumed() const { return !_mopsVersionConfirmed; }
    ///@}
    /// When version or confirmation was last set and last changed (milliseconds, 0: never).
    ///@{
    u64 mopsVersionLastUpdate() const { return _mopsVersion.lastUpdate; }
    u64 mopsVersionLastChange() const { return _mopsVersion.lastChange; }
    ///@}

    /// Navigation uncertainty category of the position (RTCA DO-260), 0 to 9, best 9; given by the
    /// type code.
    u8 nucp() const { return _nucp.value; }
    /// When it was last received and last changed (milliseconds, 0: never); valid once received. A
    /// new MOPS version makes it 0 and not valid.
    ///@{
    u64 nucpLastUpdate() const { return _nucp.lastUpdate; }
    u64 nucpLastChange() const { return _nucp.lastChange; }
    bool nucpValid() const { return _nucp.lastUpdate > 0; }
    ///@}

    /// Navigation uncertainty category of the velocity (RTCA DO-260), 0 to 7.
    u8 nucr() const { return _nucr.value; }
    /// When it was last received and last changed (milliseconds, 0: never); valid once received, at
    /// MOPS version 0 only.
    ///@{
    u64 nucrLastUpdate() const { return _nucr.lastUpdate; }
    u64 nucrLastChange() const { return _nucr.lastChange; }
    bool nucrValid() const { return _mopsVersion.value == MOPSVersion0 && _nucr.lastUpdate > 0; }
    ///@}

    /// Navigation integrity category (RTCA DO-260B), 0 to 11, best 11; given by the type code and
    /// the supplements.
    u8 nic() const { return _nic.value; }
    /// When it was last received and last changed (milliseconds, 0: never); valid once received. A
    /// new MOPS version makes it 0 and not valid.
    ///@{
    u64 nicLastUpdate() const { return _nic.lastUpdate; }
    u64 nicLastChange() const { return _nic.lastChange; }
    bool nicValid() const { return _nic.lastUpdate > 0; }
    ///@}

    /// NIC supplement A of the operational status message.
    bool nicSupplementA() const { return _nicSupplementA.value; }
    /// When it was last received (milliseconds, 0: never); valid once received, from version 1 on.
    ///@{
    u64 nicSuppALastUpdate() const { return _nicSupplementA.lastUpdate; }
    bool nicSupplementAValid() const {
        return _mopsVersion.value >= MOPSVersion1 && _nicSupplementA.lastUpdate > 0;
    }
    ///@}

    /// NIC supplement B of the airborne position message.
    bool nicSupplementB() const { return _nicSupplementB.value; }
    /// When it was last received (milliseconds, 0: never); valid once received, from version 2 on.
    ///@{
    u64 nicSuppBLastUpdate() const { return _nicSupplementB.lastUpdate; }
    bool nicSupplementBValid() const {
        return _mopsVersion.value >= MOPSVersion2 && _nicSupplementB.lastUpdate > 0;
    }
    ///@}

    /// NIC supplement C; false, since no message sets it.
    bool nicSupplementC() const { return _nicSupplementC.value; }
    /// When it was last received (milliseconds, 0: never); valid once received, from version 2 on.
    ///@{
    u64 nicSuppCLastUpdate() const { return _nicSupplementC.lastUpdate; }
    bool nicSupplementCValid() const {
        return _mopsVersion.value >= MOPSVersion2 && _nicSupplementC.lastUpdate > 0;
    }
    ///@}

    /// Position integrity category, 0 to 14, best 14: the NIC on a scale that all MOPS versions
    /// share.
    u8 pic() const { return _pic.value; }
    /// When it was last received and last changed (milliseconds, 0: never); valid once received. A
    /// new MOPS version makes it 0 and not valid.
    ///@{
    u64 picLastUpdate() const { return _pic.lastUpdate; }
    u64 picLastChange() const { return _pic.lastChange; }
    bool picValid() const { return _pic.lastUpdate > 0; }
    ///@}

    /// Navigation accuracy category of the position (RTCA DO-260B), 0 to 11, best 11. The type code
    /// gives it at MOPS version 0; what later versions send is not taken over.
    u8 nacp() const { return _nacp.value; }
    /// When it was last received and last changed (milliseconds, 0: never); valid once changed. A
    /// new MOPS version makes value and last update 0; a value that was 0 before keeps its last
    /// change and stays valid.
    ///@{
    u64 nacpLastUpdate() const { return _nacp.lastUpdate; }
    u64 nacpLastChange() const { return _nacp.lastChange; }
    bool nacpValid() const { return _nacp.lastChange > 0; }
    ///@}

    /// Surveillance integrity level (RTCA DO-260A), 0 or 2. The type code gives it at MOPS version
    /// 0; what later versions send is not taken over.
    u8 sil() const { return _sil.value; }
    /// When it was last received and last changed (milliseconds, 0: never); valid once changed. A
    /// new MOPS version makes value and last update 0; a value that was 0 before keeps its last
    /// change and stays valid.
    ///@{
    u64 silLastUpdate() const { return _sil.lastUpdate; }
    u64 silLastChange() const { return _sil.lastChange; }
    bool silValid() const { return _sil.lastChange > 0; }
    ///@}

    /// How many messages of a format, or of all formats, were taken in; 0 for a value that is no
    /// format. A DF-17 whose payload does not decode is not counted.
    ///@{
    u32 statisticDfMsgCount(DFMessage::DownlinkFormat format) const;
    u32 statisticDfMsgCount() const;
    ///@}
    /// How many payloads of a kind were taken in; 0 for a value that is no kind.
    u32 statisticADSBMsgCount(ADSBMessage::ADSBMessageType type) const;
    /// When a message was last counted (milliseconds, 0: never); valid once one was counted.
    ///@{
    u64 statisticLastUpdate() const { return _statisticLastUpdate; }
    // NOLINTNEXTLINE(readability-make-member-function-const): const would change the interface
    bool statisticValid() { return _statisticLastUpdate > 0; }
    ///@}

    /// A snapshot of the record as a report, with every datum that a report has, valid or not.
    ADSBTargetReport report() const;

private:
    friend class ADSBTracker;

    struct CPRFrame {
        i32 latitude = 0;
        i32 longitude = 0;
        u64 timeStamp = 0;
    };

    ONDREL_HIDDEN void setLastUpdate(u64 time);
    ONDREL_HIDDEN void setAltitudeBaro(i32 altitude, u64 time);
    ONDREL_HIDDEN void setGroundSpeed(double speed, u64 time);
    ONDREL_HIDDEN void setVerticalRateBaro(i32 rate, u64 time);
    ONDREL_HIDDEN void setSignalAmplitude(u8 amplitude, u64 time);
    ONDREL_HIDDEN void setNICSupplementA(bool supplement, u64 time);
    ONDREL_HIDDEN void setNICSupplementB(bool supplement, u64 time);
    ONDREL_HIDDEN void setNICSupplementC(bool supplement, u64 time);
    ONDREL_HIDDEN void setPosition(double latitude, double longitude, u64 time);
    ONDREL_HIDDEN void setHeading(double heading, u64 time);
    ONDREL_HIDDEN void setNUCp(u8 nucp, u64 time);
    ONDREL_HIDDEN void setNUCr(u8 nucr, u64 time);
    ONDREL_HIDDEN void setNIC(u8 nic, u64 time);
    ONDREL_HIDDEN void setPIC(u8 pic, u64 time);
    ONDREL_HIDDEN void setNACp(u8 nacp, u64 time);
    ONDREL_HIDDEN void setSIL(u8 sil, u64 time);
    ONDREL_HIDDEN void setSpi(bool spi, u64 time);
    ONDREL_HIDDEN void setAlert(bool alert, u64 time);
    ONDREL_HIDDEN void setEmitterCategory(u8 category, u64 time);
    ONDREL_HIDDEN void setEmitterCategory(u8 category, u64 lastUpdate, u64 lastChange);
    ONDREL_HIDDEN void setSquawk(u32 squawk, u64 time);
    ONDREL_HIDDEN void setCallsign(const std::string& callsign, u64 time);
    ONDREL_HIDDEN void setCallsign(const std::string& callsign, u64 lastUpdate, u64 lastChange);
    ONDREL_HIDDEN void setGroundStatus(GroundStatus status, u64 time);
    ONDREL_HIDDEN void setMOPSVersion(const MOPSVersion& version, u64 time);
    ONDREL_HIDDEN void setMOPSVersionAssumed(u64 time);
    ONDREL_HIDDEN void setMOPSVersionConfirmed(u64 time);
    ONDREL_HIDDEN u32 increaseStatistic(DFMessage::DownlinkFormat format, u64 time);
    ONDREL_HIDDEN u32 increaseStatistic(ADSBMessage::ADSBMessageType type, u64 time);
    ONDREL_HIDDEN void resetStatistic();
    ONDREL_HIDDEN void decodeCPRPosition();
    ONDREL_HIDDEN void updateQualityIndicators(u8 typeCode, u64 time);
    ONDREL_HIDDEN void resetQualityIndicators();

    // The data that most replies touch stand first. Among thousands of aircraft a record is not in
    // the cache, and each cache line that a reply needs of it costs time: in the order of their
    // meaning, mixed replies of 2000 aircraft take 2 % longer (road of the benchmarks).
    u32 _icaoAddr;
    u32 _trackId = 0;
    u64 _lastUpdate = 0;
    ADSBDatum<i32> _altitudeBaro;
    ADSBTrackedDatum<GroundStatus> _groundStatus;
    u64 _statisticLastUpdate = 0;
    ADSBTrackedDatum<bool> _spiStatus;
    ADSBTrackedDatum<bool> _alertStatus;
    ADSBDatum<u8> _signalAmplitude;
    std::array<u32, DFMessage::DF24 + 1> _statisticDfCounts{};
    std::array<u32, ADSBMessage::RESERVED + 1> _statisticADSBCounts{};

    ADSBTrackedDatum<MOPSVersion> _mopsVersion;
    bool _mopsVersionConfirmed = false;
    bool _headingValid = false;
    CPRFrame _cprOdd;
    CPRFrame _cprEven;
    ADSBDatum<ADSBPosition> _position;
    ADSBTrackedDatum<u8> _nucp;
    ADSBTrackedDatum<u8> _nic;
    ADSBTrackedDatum<u8> _pic;
    ADSBTrackedDatum<u8> _nacp;
    ADSBTrackedDatum<u8> _sil;
    ADSBDatum<bool> _nicSupplementA;
    ADSBDatum<bool> _nicSupplementB;
    ADSBDatum<bool> _nicSupplementC;
    ADSBDatum<double> _groundSpeed;
    ADSBDatum<double> _heading;
    ADSBDatum<i32> _verticalRateBaro;
    ADSBTrackedDatum<u8> _nucr;
    ADSBTrackedDatum<u32> _squawk;
    ADSBDatum<u8> _transponderCommCapability;
    ADSBTrackedDatum<std::string> _callsign;
    ADSBTrackedDatum<u8> _emitterCategory;
};

} // namespace tolvarin::ondrel
