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

} // namespace tolvarin::ondrel::client
