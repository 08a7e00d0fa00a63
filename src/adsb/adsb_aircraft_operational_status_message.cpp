#include <ondrel/adsb_aircraft_operational_status_message.h>

#include <ondrel/log.h>

#include "wire_field.h"

namespace tolvarin::ondrel {

namespace {

const std::string moduleName = "ADSBOpStatMsg";

namespace layout {

constexpr WireField<40, 3> versionNumber{ADSBMessageField::VER_NUM};
constexpr WireField<43, 1> nicSupplementA{ADSBMessageField::NIC_SUPP_A};

} // namespace layout

} // namespace

ADSBAircraftOperationalStatusMessage::ADSBAircraftOperationalStatusMessage()
    : ADSBMessage(OP_STATUS) {}

bool ADSBAircraftOperationalStatusMessage::decodeImpl() {
    FieldWriter writer(*this);
    _versionNumber = static_cast<u8>(layout::versionNumber.read(data()));
    if (_versionNumber == 0) {
        Log::log(Log::Critical, moduleName, "MOPS Version 0 detected.");
        return false;
    }
    if (version() == MOPSVersionUnknown) {
        Log::log(Log::Critical, moduleName, "Unsupported MOPS Version %u detected.",
                 unsigned{_versionNumber});
    }
    writer.show(layout::versionNumber, _versionNumber);
    _nicSupplementA = writer.take(layout::nicSupplementA) != 0;
    return true;
}

MOPSVersion ADSBAircraftOperationalStatusMessage::version() const {
    return _versionNumber <= MOPSVersion2 ? static_cast<MOPSVersion>(_versionNumber)
                                          : MOPSVersionUnknown;
}

std::string ADSBAircraftOperationalStatusMessage::description() const {
    return "TC=OP_STAT, VN=" + std::to_string(_versionNumber) +
           ", NICsa=" + (_nicSupplementA ? "1" : "0");
}

} // namespace tolvarin::ondrel
