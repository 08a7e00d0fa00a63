/// @file
/// Airborne velocity of MOPS version 2, which only the decoder builds.
#pragma once

#include <ondrel/adsb_airborne_velocity_message.h>

namespace tolvarin::ondrel {

/// Reads what version 1 reads.
class ADSBAirborneVelocityMessageV2 final : public ADSBAirborneVelocityMessage {
public:
    ADSBAirborneVelocityMessageV2() = default;
};

} // namespace tolvarin::ondrel
