/// @file
/// The types and enumerations that all classes share.
#pragma once

#include <cstdint>

namespace tolvarin::ondrel {

using u8 = std::uint8_t;   ///< a byte, or a number that fits into one
using u32 = std::uint32_t; ///< addresses, parities and raw codes
using u64 = std::uint64_t; ///< time stamps, lengths and counts
using i32 = std::int32_t;  ///< altitudes, rates, and the type under every enumeration

/// The edition of the ADS-B MOPS that an aircraft follows.
enum MOPSVersion : i32 {
    MOPSVersion0 = 0,       ///< RTCA DO-260
    MOPSVersion1 = 1,       ///< RTCA DO-260A
    MOPSVersion2 = 2,       ///< RTCA DO-260B
    MOPSVersionUnknown = 3, ///< a version number above 2
};

/// Which of the two zone grids a CPR position refers to. The value is the inverse of the F bit.
enum CPRFormat : i32 {
    Odd = 0,  ///< F bit 1
    Even = 1, ///< F bit 0
};

/// The step of an altitude code; the value is the step itself, in feet.
enum AltitudeResolution : i32 {
    Resolution25Ft = 25,   ///< Q bit 1
    Resolution100Ft = 100, ///< Q bit 0
};

/// What an altitude or a vertical rate is measured by.
enum AltitudeSource : i32 {
    Baro = 0, ///< barometric
    Gnss = 1, ///< satellite navigation
};

/// The unit that the M bit of an altitude code announces.
enum ALtitudeUnit : i32 {
    Feet = 0,   ///< M bit 0
    Metres = 1, ///< M bit 1
};

} // namespace tolvarin::ondrel
