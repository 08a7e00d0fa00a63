/// @file
/// The altitude and identity codes, which replies and squitters share.
#pragma once

#include <ondrel/types.h>

namespace tolvarin::ondrel {

/// What an altitude code says. Every code gives a number; none is refused.
struct AltitudeCode {
    ALtitudeUnit unit;
    AltitudeResolution resolution;
    i32 feet; ///< -1000 to 50175 in steps of 25 feet, to 203700 in steps of 100 feet
};

/// Reads the 13 bits of an AC field (ICAO Annex 10 Volume IV, 3.1.2.6.5.4), M and Q bit included.
AltitudeCode altitudeCode(u32 code);

/// Reads the 12 bits of a squitter's altitude: an AC field without its M bit.
AltitudeCode squitterAltitudeCode(u32 code);

/// Reads the 13 bits of an ID field (ICAO Annex 10 Volume IV, 3.1.2.6.7.1). The result is a number
/// from 0 to 4095, whose four octal digits ABCD are the squawk.
u32 identityCode(u32 code);

} // namespace tolvarin::ondrel
