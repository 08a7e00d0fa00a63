#include "simulator/aircraft.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>

using namespace tolvarin::ondrel::simulator;

namespace {

Aircraft flying(GeoPoint place, double heading, double speed, std::uint64_t seed) {
    Airframe airframe;
    airframe.geometricMinusBaroFt = 750;
    Flight flight;
    flight.place = place;
    flight.headingDeg = heading;
    flight.speedKt = speed;
    flight.altitudeFt = 30000;
    return {airframe, flight, seed};
}

GeoPoint placeOf(const AircraftState& state) {
    return {state.latitude, state.longitude};
}

TEST(Course, KeepsToTheGreatCircle) {
    const struct {
        GeoPoint start;
        double heading;
        double nauticalMiles;
        GeoPoint end;
        double endHeading;
    } rows[] = {
        {{0, 0}, 90, 5400, {0, 90}, 90},         {{0, 179.5}, 90, 60, {0, -179.5}, 90},
        {{0, -179.5}, 270, 60, {0, 179.5}, 270}, {{89, 20}, 0, 120, {89, -160}, 180},
        {{-89, 20}, 180, 120, {-89, -160}, 0},   {{45, 10}, 0, 10800, {-45, -170}, 180},
        {{50, 8.5}, 123, 21600, {50, 8.5}, 123},
    };
    for (const auto& row : rows) {
        for (const int steps : {1, 1000}) {
            Course course(row.start, row.heading);
            for (int i = 0; i < steps; ++i) {
                course.move(row.nauticalMiles / steps);
            }
            EXPECT_NEAR(distanceNm(course.place(), row.end), 0, 1e-6) << row.start.longitude;
            EXPECT_NEAR(std::remainder(course.heading() - row.endHeading, 360), 0, 1e-6);
        }
    }
}

TEST(Course, PointsAtPlaces) {
    const Course course({10, 20}, 45);
    EXPECT_NEAR(course.turnTowards({20, 20}), -45, 1e-9);
    EXPECT_NEAR(std::fabs(Course({0, 179}, 270).turnTowards({0, -179})), 180, 1e-9);
    EXPECT_NEAR(Course({80, 0}, 0).turnTowards({80, 180}), 0, 1e-9);
}

// The way between two states must fit speed and heading, also at the poles and the date line.
TEST(Aircraft, PlacesFitSpeedAndHeading) {
    const GeoPoint starts[] = {{50, 8.5}, {89.9, 0}, {-89.9, 77}, {0, 179.9}, {-0.1, -179.9}};
    for (const GeoPoint start : starts) {
        Aircraft aircraft = flying(start, 30, 460, 7);
        for (int i = 0; i < 3000; ++i) {
            const AircraftState before = aircraft.state();
            aircraft.step(250);
            const AircraftState after = aircraft.state();
            const double meanSpeed = (before.groundSpeedKt + after.groundSpeedKt) / 2;
            const double flown = distanceNm(placeOf(before), placeOf(after));
            ASSERT_NEAR(flown, meanSpeed * 0.25 / 3600, 1e-5) << start.latitude << " step " << i;
            const Course course(placeOf(before), before.headingDeg);
            ASSERT_NEAR(course.turnTowards(placeOf(after)), 0, 0.3) << start.latitude;
            ASSERT_NEAR(std::hypot(after.eastKt, after.northKt), after.groundSpeedKt, 0.75);
            ASSERT_EQ(after.gnssHeightFt, after.altitudeFt + 750);
        }
    }
}

TEST(Aircraft, FlightDoesNotDependOnTheSteps) {
    Aircraft coarse = flying({60, 179.9}, 80, 450, 3);
    Aircraft fine = flying({60, 179.9}, 80, 450, 3);
    coarse.step(600123);
    for (int i = 0; i < 600123; i += 3) {
        fine.step(3);
    }
    EXPECT_EQ(coarse.state().latitude, fine.state().latitude);
    EXPECT_EQ(coarse.state().longitude, fine.state().longitude);
    EXPECT_EQ(coarse.state().altitudeFt, fine.state().altitudeFt);
    EXPECT_EQ(coarse.state().squawk, fine.state().squawk);
    EXPECT_NE(coarse.state().latitude, 60);
}

TEST(Aircraft, TakesOffAndLands) {
    Flight departure;
    departure.phase = FlightPhase::Taxiing;
    departure.departs = true;
    Aircraft leaving(Airframe(), departure, 1);
    EXPECT_TRUE(leaving.state().onGround);
    leaving.step(1800000);
    EXPECT_FALSE(leaving.state().onGround);
    EXPECT_GT(leaving.state().altitudeFt, 5000);

    Flight arrival;
    arrival.phase = FlightPhase::Landing;
    arrival.speedKt = 140;
    arrival.altitudeFt = 1500;
    arrival.fieldElevationFt = 375;
    Aircraft coming(Airframe(), arrival, 1);
    EXPECT_FALSE(coming.state().onGround);
    coming.step(300000);
    EXPECT_TRUE(coming.state().onGround);
    EXPECT_EQ(coming.state().altitudeFt, 375);
    EXPECT_LT(coming.state().groundSpeedKt, 25);
}

} // namespace
