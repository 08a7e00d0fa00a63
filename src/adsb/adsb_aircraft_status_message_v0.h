/// @file
/// Aircraft status of MOPS versions 0 and 1, which only the decoder builds.
#pragma once

#include <ondrel/adsb_aircraft_status_message.h>

namespace tolvarin::ondrel {

/// Reads what all versions have.
class ADSBAircraftStatusMessageV0 final : public ADSBAircraftStatusMessage {
public:
    ADSBAircraftStatusMessageV0() = default;
};

} // namespace tolvarin::ondrel
