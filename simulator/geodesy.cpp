// Great circles by vectors: `up` points from the centre of the earth to the place, `forward` along
// the direction of travel. A turn or a movement rotates these two.

#include "simulator/geodesy.h"

#include <cmath>

namespace tolvarin::ondrel::simulator {
namespace {

constexpr double degree = 3.14159265358979323846 / 180.0;

double dot(const Vector& a, const Vector& b) {
    return a.x * b.x + a.y * b.y + a.z * b.z;
}

Vector cross(const Vector& a, const Vector& b) {
    return {a.y * b.z - a.z * b.y, a.z * b.x - a.x * b.z, a.x * b.y - a.y * b.x};
}

/// `factorA` times `a` plus `factorB` times `b`.
Vector combine(double factorA, const Vector& a, double factorB, const Vector& b) {
    return {factorA * a.x + factorB * b.x, factorA * a.y + factorB * b.y,
            factorA * a.z + factorB * b.z};
}

Vector unit(const Vector& a) {
    return combine(1.0 / std::sqrt(dot(a, a)), a, 0, a);
}

Vector upAt(GeoPoint place) {
    const double latitude = place.latitude * degree;
    const double longitude = place.longitude * degree;
    return {std::cos(latitude) * std::cos(longitude), std::cos(latitude) * std::sin(longitude),
            std::sin(latitude)};
}

Vector northAt(GeoPoint place) {
    const double latitude = place.latitude * degree;
    const double longitude = place.longitude * degree;
    return {-std::sin(latitude) * std::cos(longitude), -std::sin(latitude) * std::sin(longitude),
            std::cos(latitude)};
}

Vector eastAt(GeoPoint place) {
    return {-std::sin(place.longitude * degree), std::cos(place.longitude * degree), 0};
}

GeoPoint placeOf(const Vector& up) {
    return {std::atan2(up.z, std::hypot(up.x, up.y)) / degree, std::atan2(up.y, up.x) / degree};
}

} // namespace

Course::Course(GeoPoint place, double heading)
    : _up(upAt(place)), _forward(combine(std::cos(heading * degree), northAt(place),
                                         std::sin(heading * degree), eastAt(place))) {}

void Course::move(double nauticalMiles) {
    const double angle = nauticalMiles / 60.0 * degree;
    const Vector up = combine(std::cos(angle), _up, std::sin(angle), _forward);
    _forward = combine(std::cos(angle), _forward, -std::sin(angle), _up);
    // Makes the two unit vectors at right angles again, so that rounding errors of many steps do
    // not add up.
    _up = unit(up);
    _forward = unit(combine(1, _forward, -dot(_up, _forward), _up));
}

void Course::turn(double degrees) {
    const Vector right = cross(_forward, _up);
    _forward = combine(std::cos(degrees * degree), _forward, std::sin(degrees * degree), right);
}

GeoPoint Course::place() const {
    return placeOf(_up);
}

double Course::heading() const {
    const GeoPoint here = place();
    const double angle = std::atan2(dot(_forward, eastAt(here)), dot(_forward, northAt(here)));
    const double degrees = angle / degree + (angle < 0 ? 360.0 : 0.0);
    return degrees < 360.0 ? degrees : 0.0;
}

double Course::turnTowards(GeoPoint place) const {
    const Vector target = upAt(place);
    return std::atan2(dot(target, cross(_forward, _up)), dot(target, _forward)) / degree;
}

double Course::cosineTo(const Course& other) const {
    return dot(_up, other._up);
}

double distanceNm(GeoPoint from, GeoPoint to) {
    const Vector a = upAt(from);
    const Vector b = upAt(to);
    const Vector c = cross(a, b);
    return 60.0 / degree * std::atan2(std::sqrt(dot(c, c)), dot(a, b));
}

} // namespace tolvarin::ondrel::simulator
