/// @file
/// Message classes that only the decoder builds. They are no part of the public interface: they add
/// nothing to their base class.
#pragma once

#include <ondrel/adsb_airborne_velocity_message.h>
#include <ondrel/adsb_aircraft_status_message.h>

namespace tolvarin::ondrel {

/// Airborne velocity of MOPS version 2. Reads what version 1 reads: ME bits 10 to 12 (NACv) are not
/// decoded.
class ADSBAirborneVelocityMessageV2 final : public ADSBAirborneVelocityMessage {
public:
    ADSBAirborneVelocityMessageV2() = default;
};

/// Aircraft status of MOPS versions 0 and 1. Reads only the emergency state: the Mode A code came
/// with version 2.
class ADSBAircraftStatusMessageV0 final : public ADSBAircraftStatusMessage {
public:
    ADSBAircraftStatusMessageV0() = default;
};

} // namespace tolvarin::ondrel
