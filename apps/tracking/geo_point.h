#pragma once

namespace tolvarin::ondrel::client {

/// A place on earth in degrees, north and east positive.
struct GeoPoint {
    double latitude;
    double longitude;
};

/// The shortest way from one place to the other.
double nauticalMiles(const GeoPoint& from, const GeoPoint& to);

} // namespace tolvarin::ondrel::client
