// Aircraft status, type code 28 (RTCA DO-260B, 2.2.3.2.7.8): emergency state, and from version 2 on
// the Mode A code (squawk). Only subtype 1, the emergency state, is decoded in full.

#include <ondrel/adsb_aircraft_status_message.h>

#include <ondrel/log.h>

#include "surveillance_codes.h"
#include "text.h"
#include "wire_field.h"

#include <array>
#include <string_view>

namespace tolvarin::ondrel {

namespace {

constexpr const char* moduleName = "ADSBAcStatMsg";

// By subtype. 3 to 7 are reserved, and such a message is refused.
constexpr std::array<std::string_view, 3> subtypeTokens = {"NO_INFO", "EMERGENCY", "TCAS_RA"};

constexpr std::array<std::string_view, 8> emergencyTokens = {
    "NO_EMG", "EMERGENCY", "MEDICAL", "MIN_FUEL", "NO_COMM", "HIJACK", "AC_DOWNED", "UNDEFINED",
};

std::string modeAText(u64 code) {
    return text::octal(identityCode(static_cast<u32>(code)));
}

namespace layout {

constexpr WireField<5, 3> subtype{ADSBMessageField::SUB_TYPE_AC_STATUS, token<subtypeTokens>};
constexpr WireField<8, 3> emergencyState{ADSBMessageField::EMG_STATE, token<emergencyTokens>};
constexpr WireField<11, 13> modeACode{ADSBMessageField::MODE_A, modeAText};
constexpr FieldGroup subtypeFields{subtype};
constexpr FieldGroup emergencyFields{emergencyState};
constexpr FieldGroup modeAFields{modeACode};

} // namespace layout

} // namespace

ADSBAircraftStatusMessage::ADSBAircraftStatusMessage() : ADSBMessage(AC_STATUS) {}

bool ADSBAircraftStatusMessage::decodeImpl() {
    PayloadAccess payload(*this);
    const u32 subtype = payload.read(layout::subtype);
    if (subtype >= subtypeTokens.size()) {
        Log::log(Log::Critical, moduleName, "Unknown Subtype=%u.", subtype);
        _subtype = AircraftStatusSubtype::UNDEFINED;
        return false;
    }
    _subtype = static_cast<AircraftStatusSubtype>(subtype);
    payload.list(layout::subtypeFields);
    if (_subtype == AircraftStatusSubtype::EMERGENCY) {
        _emergencyState = static_cast<EmergencyState>(payload.read(layout::emergencyState));
    } else { // the bits have another meaning, so the emergency state stays as it was
        Log::log(Log::Critical, moduleName, "Unsupported subtype %u detected.", subtype);
    }
    payload.list(layout::emergencyFields,
                 layout::emergencyState.payloadWith(static_cast<u64>(_emergencyState)));
    return true;
}

std::string ADSBAircraftStatusMessage::description() const {
    text::Line line;
    line << "TC=AC_STATUS";
    if (_subtype == AircraftStatusSubtype::EMERGENCY) {
        line << ", ST=EMG, EMG=" << static_cast<u32>(_emergencyState);
    }
    return line;
}

ADSBAircraftStatusMessageV2::ADSBAircraftStatusMessageV2() = default;

bool ADSBAircraftStatusMessageV2::decodeImpl() {
    if (!ADSBAircraftStatusMessage::decodeImpl()) {
        return false;
    }
    PayloadAccess payload(*this);
    switch (subtype()) {
    case AircraftStatusSubtype::EMERGENCY:
        _modeACode = identityCode(payload.read(layout::modeACode));
        payload.list(layout::modeAFields);
        return true;
    case AircraftStatusSubtype::TCAS_RA: // resolution advisories are not decoded
        Log::log(Log::Warning, moduleName, "Unsupported TCAS RA message detected.");
        return false;
    default:
        return true;
    }
}

std::string ADSBAircraftStatusMessageV2::modeAOctString() const {
    return text::octal(_modeACode);
}

std::string ADSBAircraftStatusMessageV2::description() const {
    return text::Line() << ADSBAircraftStatusMessage::description() << ", MA=" << modeAOctString();
}

} // namespace tolvarin::ondrel
