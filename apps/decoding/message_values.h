#pragma once

#include <ondrel/adsb_airborne_velocity_message.h>
#include <ondrel/mode_s_fields.h>
#include <ondrel/types.h>

#include <optional>
#include <string>

/// What a message tells. The library has a number also where it tells none.
namespace tolvarin::ondrel::client {

/// The bits at this position, of which the bytes have enough; at most 64.
u64 readBits(const std::string& bytes, unsigned position, unsigned count);

/// A code of 0 tells no altitude; the library reads it as -1000 ft in steps of 100 ft.
inline bool tellsAltitude(i32 feet, AltitudeResolution step) {
    return feet != -1000 || step != Resolution100Ft;
}

/// The same of a reply, which may also tell metres, and they are not decoded.
inline bool tellsAltitude(const ModeSMessageFieldAC& code) {
    return code.altitudeUnit() == Feet && tellsAltitude(code.altitude(), code.altitudeResolution());
}

/// A component or a rate with code 0 is not available (RTCA DO-260B, 2.2.3.2.6.1).
bool tellsGroundSpeed(const ADSBAirborneVelocityMessage& message);
bool tellsVerticalRate(const ADSBAirborneVelocityMessage& message);

/// What a flight status tells.
struct FlightStatusValues {
    std::optional<bool> onGround;
    bool alert;
    bool spi;
};

/// Nothing for 6 and 7.
std::optional<FlightStatusValues> valuesOf(ModeSMessageFieldFS::FlightStatus status);

} // namespace tolvarin::ondrel::client
