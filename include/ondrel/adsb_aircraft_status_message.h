/// @file
/// Aircraft status, by MOPS version.
#pragma once

#include <ondrel/adsb_message.h>
#include <ondrel/export.h>
#include <ondrel/types.h>

#include <string>

namespace tolvarin::ondrel {

/// Aircraft status, type code 28 (RTCA DO-260B, 2.2.3.2.7.8): the emergency state. Any other
/// subtype than that is noted in the log.
class ONDREL_EXPORT ADSBAircraftStatusMessage : public ADSBMessage {
public:
    /// The subtype on the wire.
    enum class AircraftStatusSubtype : i32 {
        NO_INFO = 0,   ///< no information
        EMERGENCY = 1, ///< emergency state, and in version 2 the Mode A code
        TCAS_RA = 2,   ///< resolution advisory of the collision avoidance system
        UNDEFINED = 3, ///< any other on the wire
    };

    /// The emergency state; the value is that on the wire.
    enum class EmergencyState : i32 {
        NO_EMG = 0,    ///< no emergency
        EMERGENCY = 1, ///< general emergency
        MEDICAL = 2,   ///< medical emergency, or a flight with a patient
        MIN_FUEL = 3,  ///< minimum fuel
        NO_COMM = 4,   ///< no communication: the radio has failed
        HIJACK = 5,    ///< unlawful interference
        AC_DOWNED = 6, ///< downed aircraft
        UNDEFINED = 7, ///< reserved
    };

    /// The subtype of the last decode; `UNDEFINED` before.
    AircraftStatusSubtype subtype() const { return _subtype; }

    /// The state of the last decode with subtype `EMERGENCY`; `NO_EMG` before.
    EmergencyState emergencyState() const { return _emergencyState; }

    /// Such as "TC=AC_STATUS, ST=EMG, EMG=1"; without the state for another subtype.
    std::string description() const override;

protected:
    /// A message with no data yet.
    ADSBAircraftStatusMessage();

    bool decodeImpl() override;

private:
    AircraftStatusSubtype _subtype = AircraftStatusSubtype::UNDEFINED;
    EmergencyState _emergencyState = EmergencyState::NO_EMG;
};

/// Aircraft status of MOPS version 2. Refuses resolution advisories with a line in the log.
class ONDREL_EXPORT ADSBAircraftStatusMessageV2 : public ADSBAircraftStatusMessage {
public:
    /// A message with no data yet.
    ADSBAircraftStatusMessageV2();

    /// The Mode A code of the last decode with subtype `EMERGENCY`, 0 to 4095; 0 before. Its octal
    /// form is the code as an operator reads it.
    u32 modeACode() const { return _modeACode; }

    /// The code as four octal digits.
    std::string modeAOctString() const;

    /// The text of the base class with the Mode A code at its end, such as "..., EMG=1, MA=7700".
    std::string description() const override;

protected:
    bool decodeImpl() override;

private:
    u32 _modeACode = 0;
};

} // namespace tolvarin::ondrel
