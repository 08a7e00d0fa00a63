/// @file
/// Compact Position Reporting, the sending side (RTCA DO-260B, appendix A.1.7). Pure functions.
#pragma once

#include <cstdint>

namespace tolvarin::ondrel::simulator {

/// The two 17-bit values of one position message.
struct CprFrame {
    std::uint32_t latitude = 0;
    std::uint32_t longitude = 0;
};

/// Which grid a message uses: the surface grid is four times finer.
enum class CprGrid { Airborne, Surface };

/// NL: the number of longitude zones at a latitude in degrees, 59 at the equator to 1 beyond 87
/// degrees north or south, by its formula with NZ = 15.
int longitudeZones(double latitude);

/// Encodes latitude (-90 to 90) and longitude (any finite number of degrees east) for an even or
/// odd message. Values that are not finite give zeros.
CprFrame encodeCpr(double latitude, double longitude, bool odd, CprGrid grid);

} // namespace tolvarin::ondrel::simulator
