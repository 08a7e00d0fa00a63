/// @file
/// Aircraft status of MOPS versions 0 and 1. Only the decoder builds it, so it is no part of the
/// public interface.
#pragma once

#include <ondrel/adsb_aircraft_status_message.h>

namespace tolvarin::ondrel {

/// Reads the emergency state alone. The Mode A code came with version 2.
class ADSBAircraftStatusMessageV0 final : public ADSBAircraftStatusMessage {
public:
    ADSBAircraftStatusMessageV0() = default;
};

} // namespace tolvarin::ondrel
