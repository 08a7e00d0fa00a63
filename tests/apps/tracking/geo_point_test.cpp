#include "apps/tracking/geo_point.h"

#include <gtest/gtest.h>

namespace tolvarin::ondrel::client {

namespace {

TEST(GeoPoint, PlaceFromIsAsFarAsTold) {
    for (const GeoPoint& from : {GeoPoint{0, 0}, GeoPoint{51, 179.9}, GeoPoint{-90, 20}}) {
        for (const double miles : {0.0, 1.0, 250.0, 9000.0}) {
            for (double direction = 0; direction < 360; direction += 30) {
                EXPECT_NEAR(nauticalMiles(from, placeFrom(from, direction, miles)), miles, 1e-6);
            }
        }
    }
    const GeoPoint north = placeFrom({50, 8}, 0, 60);
    EXPECT_NEAR(north.latitude, 51, 1e-9);
    EXPECT_NEAR(north.longitude, 8, 1e-9);
    EXPECT_NEAR(placeFrom({0, 8}, 90, 60).longitude, 9, 1e-9);
}

} // namespace

} // namespace tolvarin::ondrel::client
