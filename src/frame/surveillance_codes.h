/// @file
/// The 13-bit altitude and identity codes, which replies and squitters share.
#pragma once

#include <ondrel/types.h>

namespace tolvarin::ondrel {

/// An altitude code taken apart.
struct AltitudeCode {
    ALtitudeUnit unit;
    AltitudeResolution resolution;
    i32 feet; ///< -1000 to 203700
};

/// Reads the 13 bits of an AC field (ICAO Annex 10 Volume IV, 3.1.2.6.5.4), M and Q bit included.
AltitudeCode altitudeCode(u32 code);

/// Reads the 12 bits of a squitter's altitude: an AC field without its M bit.
AltitudeCode squitterAltitudeCode(u32 code);

/// Reads the 13 bits of an ID field (ICAO Annex 10 Volume IV, 3.1.2.6.7.1): the four octal digits
/// ABCD as a number from 0 to 4095.
u32 identityCode(u32 code);

} // namespace tolvarin::ondrel
