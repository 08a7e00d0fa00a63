/// @file
/// Movement on a spherical earth of 60 nautical miles a degree. All angles are in degrees.
#pragma once

namespace tolvarin::ondrel::simulator {

struct GeoPoint {
    double latitude = 0;
    double longitude = 0; ///< -180 to 180
};

struct Vector {
    double x = 0;
    double y = 0;
    double z = 0;
};

/// A place and a direction of travel. Both are unit vectors, so poles and date line need no special
/// cases. Latitude and longitude are calculated on demand.
class Course {
public:
    Course(GeoPoint place, double heading);

    /// Moves along the great circle. The heading changes on the way, since meridians converge.
    void move(double nauticalMiles);

    /// Turns on the spot, clockwise if positive.
    void turn(double degrees);

    GeoPoint place() const;

    /// 0 up to but not including 360, against the meridian of place().
    double heading() const;

    /// Clockwise turn, -180 to 180, that would point the course at a place.
    double turnTowards(GeoPoint place) const;

    /// The cosine of the angle between the two places, seen from the centre of the earth.
    double cosineTo(const Course& other) const;

private:
    Vector _up;
    Vector _forward;
};

double distanceNm(GeoPoint from, GeoPoint to);

} // namespace tolvarin::ondrel::simulator
