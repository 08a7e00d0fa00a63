#include "apps/pages/coastline.h"

#include "apps/tracking/geo_point.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <vector>

namespace tolvarin::ondrel::client {

namespace {

/// To the nearest point of a coast in a box of four degrees around the place.
double milesToCoast(const GeoPoint& place) {
    double nearest = 1000;
    for (const auto& coast : coastsIn({place.latitude - 2, place.latitude + 2,
                                       std::remainder(place.longitude - 2, 360), 4})) {
        for (const GeoPoint& point : coast) {
            nearest = std::min(nearest, nauticalMiles(place, point));
        }
    }
    return nearest;
}

TEST(Coastline, IsWhereTheCapesAre) {
    const GeoPoint capes[] = {
        {50.066, -5.715},  // Land's End
        {71.171, 25.784},  // North Cape
        {-34.357, 18.474}, // Cape of Good Hope
        {-34.427, 172.68}, // Cape Reinga
        {66.08, -169.65},  // Cape Dezhnev
        {-10.69, 142.53},  // Cape York
        {21.3, -158.11},   // Barbers Point, Oahu
    };
    for (const GeoPoint& cape : capes) {
        EXPECT_LT(milesToCoast(cape), 2.5) << cape.latitude;
    }
    for (const GeoPoint& farOff : {GeoPoint{20, 5}, GeoPoint{45, -35}, GeoPoint{89, 0}}) {
        EXPECT_GT(milesToCoast(farOff), 120) << farOff.latitude;
    }
}

TEST(Coastline, IsWholeAndHasNoLinesAcrossTheMap) {
    std::size_t points = 0;
    double longest = 0;
    for (const auto& coast : coastsIn({-90, 90, -180, 360})) {
        ASSERT_GE(coast.size(), 2U);
        points += coast.size();
        for (std::size_t i = 0; i < coast.size(); ++i) {
            EXPECT_TRUE(coast[i].latitude > -86 && coast[i].latitude < 84);
            longest = i == 0 ? longest : std::max(longest, nauticalMiles(coast[i - 1], coast[i]));
        }
    }
    EXPECT_EQ(points, 97525U);
    EXPECT_LT(longest, 120);
}

TEST(Coastline, GivesWhatIsInTheBox) {
    struct Row {
        GeoBox left;
        GeoBox right;
        bool touch;
    };
    const Row rows[] = {
        {{0, 1, 0, 1}, {0.5, 2, 0.5, 2}, true},     {{0, 1, 0, 1}, {1.5, 2, 0.5, 2}, false},
        {{0, 1, 0, 1}, {0, 1, 1.5, 2}, false},      {{0, 1, 0, 1}, {0, 1, -179, 359.5}, true},
        {{0, 1, 179, 3}, {0, 1, -179.5, 1}, true},  {{0, 1, 179, 3}, {0, 1, 181, 1}, true},
        {{0, 1, 179, 3}, {0, 1, -177.5, 1}, false}, {{0, 1, -180, 360}, {0, 1, 50, 0}, true},
    };
    for (const Row& row : rows) {
        EXPECT_EQ(row.left.touches(row.right), row.touch) << row.right.west;
        EXPECT_EQ(row.right.touches(row.left), row.touch) << row.right.west;
    }
    // Taveuni lies across the date line.
    const GeoPoint taveuni = {-16.85, -179.98};
    EXPECT_LT(milesToCoast(taveuni), 10);
    EXPECT_LT(milesToCoast({taveuni.latitude, 179.98}), 10);
}

} // namespace

} // namespace tolvarin::ondrel::client
