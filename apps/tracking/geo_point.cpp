#include "apps/tracking/geo_point.h"

#include <algorithm>
#include <cmath>

namespace tolvarin::ondrel::client {

namespace {

constexpr double degreesInRadian = 57.29577951308232;
constexpr double milesInDegree = 60; // of a great circle

double squaredSineOfHalf(double degrees) {
    const double sine = std::sin(degrees / 2 / degreesInRadian);
    return sine * sine;
}

} // namespace

double nauticalMiles(const GeoPoint& from, const GeoPoint& to) {
    const double squared = squaredSineOfHalf(to.latitude - from.latitude) +
                           std::cos(from.latitude / degreesInRadian) *
                               std::cos(to.latitude / degreesInRadian) *
                               squaredSineOfHalf(to.longitude - from.longitude);
    return 2 * std::asin(std::sqrt(std::min(1.0, squared))) * degreesInRadian * milesInDegree;
}

GeoPoint placeFrom(const GeoPoint& from, double direction, double miles) {
    const double latitude = from.latitude / degreesInRadian;
    const double angle = miles / milesInDegree / degreesInRadian;
    const double north = std::cos(direction / degreesInRadian) * std::sin(angle);
    const double east = std::sin(direction / degreesInRadian) * std::sin(angle);
    const double sine = std::sin(latitude) * std::cos(angle) + std::cos(latitude) * north;
    const double around =
        std::atan2(east, std::cos(latitude) * std::cos(angle) - std::sin(latitude) * north);
    return {std::asin(std::clamp(sine, -1.0, 1.0)) * degreesInRadian,
            from.longitude + around * degreesInRadian};
}

} // namespace tolvarin::ondrel::client
