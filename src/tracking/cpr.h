/// @file
/// Compact position reporting, decoded globally from an even and an odd frame (RTCA DO-260B,
/// A.1.7.7).
#pragma once

#include <ondrel/types.h>

#include <optional>

namespace tolvarin::ondrel::cpr {

/// The raw 17-bit values of one airborne frame: the place within a zone, 0 to 131071.
struct Frame {
    i32 latitude;
    i32 longitude;
};

/// Degrees, north and east positive.
struct Position {
    double latitude;
    double longitude;
};

/// The number of longitude zones (NL) at a latitude in degrees, north or south: 59 at the equator,
/// 1 from 87 degrees on.
i32 cprNL(double latitude);

/// The position of the newer of two frames. Nothing if the two have different numbers of longitude
/// zones. Nothing else is tested: two frames of different places can give any position, even a
/// latitude beyond 90 degrees. The caller makes sure that the frames are close in time. Longitudes
/// are above -180 and up to 180.
std::optional<Position> solve(const Frame& even, const Frame& odd, bool evenIsNewer);

} // namespace tolvarin::ondrel::cpr
