// Target state and status, type code 29 (RTCA DO-260B, 2.2.3.2.7.1): accuracy and integrity of the
// position. Subtype 0 is that of version 1 and subtype 1 that of version 2; both have these fields
// at the same places. What the aircraft intends (selected altitude, heading) is not read.

#include <ondrel/adsb_target_status_message.h>

#include <ondrel/log.h>

#include "text.h"
#include "wire_field.h"

namespace tolvarin::ondrel {

namespace {

constexpr const char* moduleName = "ADSBTgStatMsg";

constexpr u8 lastKnownSubtype = 1; // 2 and 3 are reserved, and such a message is refused

namespace layout {

constexpr WireField<5, 2> subtype{ADSBMessageField::SUB_TYPE_TG_STATUS};
constexpr WireField<7, 1> silSupplement{ADSBMessageField::SIL_SUPP};
constexpr WireField<39, 4> nacp{ADSBMessageField::NAC_P};
constexpr WireField<43, 1> nicBaro{ADSBMessageField::NIC_BARO};
constexpr WireField<44, 2> sil{ADSBMessageField::SIL};
constexpr FieldGroup fields{subtype, nacp, nicBaro, sil};
constexpr FieldGroup silSupplementFields{silSupplement};

} // namespace layout

} // namespace

ADSBTargetStatusMessage::ADSBTargetStatusMessage() : ADSBMessage(TG_STATUS) {}

bool ADSBTargetStatusMessage::decodeImpl() {
    PayloadAccess payload(*this);
    _subtype = static_cast<u8>(payload.read(layout::subtype));
    if (_subtype > lastKnownSubtype) {
        Log::log(Log::Critical, moduleName, "Unknown Subtype=%u.", unsigned{_subtype});
        return false;
    }
    _nacp = static_cast<u8>(payload.read(layout::nacp));
    _nicBaro = static_cast<u8>(payload.read(layout::nicBaro));
    _sil = static_cast<u8>(payload.read(layout::sil));
    payload.list(layout::fields);
    return true;
}

std::string ADSBTargetStatusMessage::description() const {
    return text::Line() << "TC=TG_STATUS, ST=" << _subtype << ", NACp=" << _nacp
                        << ", NICbaro=" << _nicBaro << ", SIL=" << _sil;
}

ADSBTargetStatusMessageV1::ADSBTargetStatusMessageV1() = default;

ADSBTargetStatusMessageV2::ADSBTargetStatusMessageV2() = default;

bool ADSBTargetStatusMessageV2::decodeImpl() {
    // Version 2 has only subtype 1: subtype 0 is the layout of version 1.
    if (!ADSBTargetStatusMessage::decodeImpl() || subtype() != 1) {
        return false;
    }
    PayloadAccess payload(*this);
    _silSupplement = payload.read(layout::silSupplement) != 0;
    payload.list(layout::silSupplementFields);
    return true;
}

std::string ADSBTargetStatusMessageV2::description() const {
    return text::Line() << ADSBTargetStatusMessage::description()
                        << ", SILsupp=" << (_silSupplement ? "1" : "0");
}

} // namespace tolvarin::ondrel
