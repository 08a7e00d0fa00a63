#pragma once

namespace tolvarin::ondrel::client {

/// A place on earth in degrees, north and east positive.
struct GeoPoint {
    double latitude;
    double longitude;
};

/// The shortest way from one place to the other.
double nauticalMiles(const GeoPoint& from, const GeoPoint& to);

/// The place that far from the other one, in a direction in degrees from north by east. The
/// longitude may be beyond 180 degrees.
GeoPoint placeFrom(const GeoPoint& from, double direction, double miles);

} // namespace tolvarin::ondrel::client
