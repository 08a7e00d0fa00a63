// Aircraft status, type code 28 (RTCA DO-260B, 2.2.3.2.7.8): emergency state, and from version 2 on
// the Mode A code (squawk). Only subtype 1, the emergency state, is decoded in full.

#include <ondrel/adsb_aircraft_status_message.h>

#include <ondrel/log.h>

#include "surveillance_codes.h"
#include "text.h"
#include "wire_field.h"

#include <array>

namespace tolvarin::ondrel {

namespace {

const std::string moduleName = "ADSBAcStatMsg";

// By subtype. 3 to 7 are reserved, and such a message is refused.
constexpr std::array<const char*, 3> subtypeTokens = {"NO_INFO", "EMERGENCY", "TCAS_RA"};

constexpr std::array<const char*, 8> emergencyTokens = {
    "NO_EMG", "EMERGENCY", "MEDICAL", "MIN_FUEL", "NO_COMM", "HIJACK", "AC_DOWNED", "UNDEFINED",
};

std::string modeAText(std::int64_t code) {
    return text::octal(static_cast<u32>(code));
}

namespace layout {

constexpr ShownField<5, 3> subtype{ADSBMessageField::SUB_TYPE_AC_STATUS, token<subtypeTokens>};
constexpr ShownField<8, 3> emergencyState{ADSBMessageField::EMG_STATE, token<emergencyTokens>};
constexpr ShownField<11, 13> modeACode{ADSBMessageField::MODE_A, modeAText};

} // namespace layout

} // namespace

ADSBAircraftStatusMessage::ADSBAircraftStatusMessage() : ADSBMessage(AC_STATUS) {}

bool ADSBAircraftStatusMessage::decodeImpl() {
    FieldWriter writer(*this);
    const u32 subtype = layout::subtype.read(data());
    if (subtype >= subtypeTokens.size()) {
        Log::log(Log::Critical, moduleName, "Unknown Subtype=%u.", subtype);
        _subtype = AircraftStatusSubtype::UNDEFINED;
        return false;
    }
    _subtype = static_cast<AircraftStatusSubtype>(subtype);
    writer.show(layout::subtype, subtype);
    if (_subtype == AircraftStatusSubtype::EMERGENCY) {
        _emergencyState = static_cast<EmergencyState>(layout::emergencyState.read(data()));
    } else { // the bits have another meaning, so the emergency state stays as it was
        Log::log(Log::Critical, moduleName, "Unsupported subtype %u detected.", subtype);
    }
    writer.show(layout::emergencyState, static_cast<i32>(_emergencyState));
    return true;
}

std::string ADSBAircraftStatusMessage::description() const {
    std::string text = "TC=AC_STATUS";
    if (_subtype == AircraftStatusSubtype::EMERGENCY) {
        text += ", ST=EMG, EMG=" + std::to_string(static_cast<u32>(_emergencyState));
    }
    return text;
}

ADSBAircraftStatusMessageV2::ADSBAircraftStatusMessageV2() = default;

bool ADSBAircraftStatusMessageV2::decodeImpl() {
    if (!ADSBAircraftStatusMessage::decodeImpl()) {
        return false;
    }
    FieldWriter writer(*this);
    switch (subtype()) {
    case AircraftStatusSubtype::EMERGENCY:
        _modeACode = identityCode(layout::modeACode.read(data()));
        writer.show(layout::modeACode, _modeACode);
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
    return ADSBAircraftStatusMessage::description() + ", MA=" + modeAOctString();
}

} // namespace tolvarin::ondrel
