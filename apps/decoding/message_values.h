#pragma once

#include <ondrel/mode_s_fields.h>
#include <ondrel/types.h>

#include <cstddef>
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

/// Whether a field has another code than 0. The mask has its bits in two neighbouring bytes.
/// Quicker than readBits(), since tracking asks for each message.
inline bool isTold(const std::string& bytes, std::size_t first, unsigned mask) {
    const unsigned two = static_cast<u8>(bytes[first]) * 256U + static_cast<u8>(bytes[first + 1]);
    return (two & mask) != 0;
}

/// Of the ME field of a ground velocity. A component or a rate with code 0 is not available (RTCA
/// DO-260B, 2.2.3.2.6.1).
inline bool tellsGroundSpeed(const std::string& field) {
    return isTold(field, 1, 0x03FF) && isTold(field, 3, 0x7FE0);
}
inline bool tellsVerticalRate(const std::string& field) {
    return isTold(field, 4, 0x07FC);
}

/// What a flight status tells.
struct FlightStatusValues {
    std::optional<bool> onGround;
    bool alert;
    bool spi;
};

/// Nothing for 6 and 7.
std::optional<FlightStatusValues> valuesOf(ModeSMessageFieldFS::FlightStatus status);

} // namespace tolvarin::ondrel::client
