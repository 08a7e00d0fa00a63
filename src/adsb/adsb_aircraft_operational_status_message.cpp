// Aircraft operational status, type code 31 (RTCA DO-260B, 2.2.3.2.7.2). The only message that
// tells the MOPS version of its aircraft. Of its other contents only NIC supplement A is read.

#include <ondrel/adsb_aircraft_operational_status_message.h>

#include <ondrel/log.h>

#include "text.h"
#include "wire_field.h"

namespace tolvarin::ondrel {

namespace {

constexpr const char* moduleName = "ADSBOpStatMsg";

namespace layout {

constexpr WireField<40, 3> versionNumber{ADSBMessageField::VER_NUM};
constexpr WireField<43, 1> nicSupplementA{ADSBMessageField::NIC_SUPP_A};
constexpr FieldGroup fields{versionNumber, nicSupplementA};

} // namespace layout

} // namespace

ADSBAircraftOperationalStatusMessage::ADSBAircraftOperationalStatusMessage()
    : ADSBMessage(OP_STATUS) {}

bool ADSBAircraftOperationalStatusMessage::decodeImpl() {
    PayloadAccess payload(*this);
    _versionNumber = static_cast<u8>(payload.read(layout::versionNumber));
    // This layout came with version 1. At version 0 type code 31 has another one.
    if (_versionNumber == 0) {
        Log::log(Log::Critical, moduleName, "MOPS Version 0 detected.");
        return false;
    }
    // A later version is read too: it should have these two fields at the same places.
    if (version() == MOPSVersionUnknown) {
        Log::log(Log::Critical, moduleName, "Unsupported MOPS Version %u detected.",
                 unsigned{_versionNumber});
    }
    _nicSupplementA = payload.read(layout::nicSupplementA) != 0;
    payload.list(layout::fields);
    return true;
}

MOPSVersion ADSBAircraftOperationalStatusMessage::version() const {
    return _versionNumber <= MOPSVersion2 ? static_cast<MOPSVersion>(_versionNumber)
                                          : MOPSVersionUnknown;
}

std::string ADSBAircraftOperationalStatusMessage::description() const {
    return text::Line() << "TC=OP_STAT, VN=" << _versionNumber
                        << ", NICsa=" << (_nicSupplementA ? "1" : "0");
}

} // namespace tolvarin::ondrel
