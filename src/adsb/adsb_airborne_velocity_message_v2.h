/// @file
/// Airborne velocity of MOPS version 2. Only the decoder builds it, so it is no part of the public
/// interface.
#pragma once

#include <ondrel/adsb_airborne_velocity_message.h>

namespace tolvarin::ondrel {

/// Reads what version 1 reads: ME bits 10 to 12 (NACv) are not decoded.
class ADSBAirborneVelocityMessageV2 final : public ADSBAirborneVelocityMessage {
public:
    ADSBAirborneVelocityMessageV2() = default;
};

} // namespace tolvarin::ondrel
