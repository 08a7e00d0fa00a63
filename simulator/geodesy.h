#pragma once

/// Movement on a spherical earth of 60 nautical miles a degree. All angles are in degrees.
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

/// A place and a direction of travel. Both are unit vectors from the centre of the earth, so that
/// neither the poles nor the date line are special; latitude and longitude are worked out on
/// demand.
class Course {
public:
    Course(GeoPoint place, double heading);

    /// Goes along the great circle; the heading changes as it does on a real one.
    void move(double nauticalMiles);

    /// Turns on the spot, clockwise if positive.
    void turn(double degrees);

    GeoPoint place() const;

    /// 0 up to but not including 360, against the meridian of place().
    double heading() const;

    /// Clockwise turn, -180 to 180, that would point the course at a place.
    double turnTowards(GeoPoint place) const;

    /// Angle at the centre of the earth between two courses' places, as its cosine.
    double cosineTo(const Course& other) const;

private:
    Vector _up;
    Vector _forward;
};

double distanceNm(GeoPoint from, GeoPoint to);

} // namespace tolvarin::ondrel::simulator
