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
    enum class AircraftStatusSubtype : i32 {
        NO_INFO = 0,
        EMERGENCY = 1,
        TCAS_RA = 2,
        UNDEFINED = 3, ///< any other on the wire
    };

    enum class EmergencyState : i32 {
        NO_EMG = 0,
        EMERGENCY = 1,
        MEDICAL = 2,
        MIN_FUEL = 3,
        NO_COMM = 4,
        HIJACK = 5,
        AC_DOWNED = 6,
        UNDEFINED = 7,
    };

    AircraftStatusSubtype subtype() const { return _subtype; }

    EmergencyState emergencyState() const { return _emergencyState; }

    std::string description() const override;

protected:
    ADSBAircraftStatusMessage();

    bool decodeImpl() override;

private:
    AircraftStatusSubtype _subtype = AircraftStatusSubtype::UNDEFINED;
    EmergencyState _emergencyState = EmergencyState::NO_EMG;
};

/// Aircraft status of MOPS version 2. Refuses resolution advisories with a line in the log.
class ONDREL_EXPORT ADSBAircraftStatusMessageV2 : public ADSBAircraftStatusMessage {
public:
    ADSBAircraftStatusMessageV2();

    /// The Mode A code of an emergency, 0 to 4095: its octal form is the code as an operator reads
    /// it.
    u32 modeACode() const { return _modeACode; }

    /// The code as four octal digits.
    std::string modeAOctString() const;

    std::string description() const override;

protected:
    bool decodeImpl() override;

private:
    u32 _modeACode = 0;
};

} // namespace tolvarin::ondrel
