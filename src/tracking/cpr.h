/// @file
/// Compact position reporting, decoded globally from an even and an odd frame (RTCA DO-260B,
/// A.1.7.7).
#pragma once

#include <ondrel/types.h>

#include <optional>

namespace tolvarin::ondrel::cpr {

/// The raw 17-bit values of one frame.
struct Frame {
    i32 latitude;
    i32 longitude;
};

/// Degrees, north and east positive.
struct Position {
    double latitude;
    double longitude;
};

/// The number of longitude zones at a latitude in degrees: 59 at the equator, 1 from 87 degrees on.
i32 cprNL(double latitude);

/// The position of the newer of two frames. Nothing when the two lie in bands of different numbers
/// of longitude zones. Frames of different places give a position all the same, even a latitude
/// beyond 90 degrees.
std::optional<Position> solve(const Frame& even, const Frame& odd, bool evenIsNewer);

} // namespace tolvarin::ondrel::cpr
