#pragma once

#include "apps/tracking/geo_point.h"

#include <string_view>
#include <vector>

namespace tolvarin::ondrel::client {

/// An area between two parallels and two meridians, in degrees.
struct GeoBox {
    double south;
    double north;
    double west;  ///< from -180 to 180
    double width; ///< to the east of it, at most 360

    bool touches(const GeoBox& other) const;
};

/// The file coastline.txt beside this one, which the build puts into the program.
extern const std::string_view coastlineText;

/// The stretches of the earth's coasts that have a part in the box, and perhaps some near it.
/// Longitudes may be beyond 180 degrees, where a stretch crosses the date line.
std::vector<std::vector<GeoPoint>> coastsIn(const GeoBox& box);

} // namespace tolvarin::ondrel::client
