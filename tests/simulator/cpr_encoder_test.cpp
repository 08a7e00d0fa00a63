#include "simulator/cpr_encoder.h"

#include "wire.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

using namespace tolvarin::ondrel::simulator;

namespace {

/// Encodes a place and decodes it with a reference nearby. The result lies within half a step.
void expectRoundTrip(wire::Place place, bool odd, CprGrid grid) {
    const double circle = grid == CprGrid::Surface ? 90 : 360;
    const CprFrame frame = encodeCpr(place.latitude, place.longitude, odd, grid);
    const wire::Place back = wire::decode(frame.latitude, frame.longitude, odd, circle,
                                          {place.latitude + 0.2, place.longitude - 0.2});
    const double step = circle / (odd ? 59 : 60) / 131072;
    const int zones = wire::zonesAt(back.latitude) - (odd ? 1 : 0);
    const double lonStep = circle / (zones > 1 ? zones : 1) / 131072;
    const double east = std::remainder(back.longitude - place.longitude, 360);
    EXPECT_NEAR(back.latitude, place.latitude, step * 0.5000001) << "odd " << odd;
    EXPECT_NEAR(east, 0, lonStep * 0.5000001) << place.latitude << ", " << place.longitude;
}

void expectAllRoundTrips(wire::Place place) {
    for (const bool odd : {false, true}) {
        expectRoundTrip(place, odd, CprGrid::Airborne);
        expectRoundTrip(place, odd, CprGrid::Surface);
    }
}

TEST(CprEncoder, PlacesAtTheEdgesOfTheEarthDecodeToThemselves) {
    for (const double latitude : {-90.0, -89.99999, -87.1, -86.9, -45.0, -6.0, -1e-7, 0.0, 1e-7,
                                  6.0, 10.47, 10.48, 52.2572, 59.96, 86.53, 86.99, 88.0, 90.0}) {
        for (const double longitude :
             {-180.0, -179.99999, -90.0, -1e-7, 0.0, 1e-7, 90.0, 179.99999, 180.0}) {
            expectAllRoundTrips({latitude, longitude});
        }
    }
}

// Rounding may move a place over an edge. Sender and receiver must count the same zones even then.
TEST(CprEncoder, PlacesAtZoneEdgesDecodeToThemselves) {
    for (int zones = 3; zones <= 59; ++zones) {
        for (double off = -2.5e-5; off < 2.6e-5; off += 1e-6) {
            expectAllRoundTrips({wire::zoneEdge(zones) + off, 151.3});
            expectAllRoundTrips({-wire::zoneEdge(zones) + off, -77.7});
        }
    }
}

TEST(CprEncoder, CountsZonesByTheFormula) {
    EXPECT_EQ(longitudeZones(0), 59);
    EXPECT_EQ(longitudeZones(-87), 2);
    EXPECT_EQ(longitudeZones(90), 1);
    for (double latitude = -89.99; latitude < 90; latitude += 0.00731) {
        ASSERT_EQ(longitudeZones(latitude), wire::zonesAt(latitude)) << latitude;
    }
}

TEST(CprEncoder, WhatIsNotFiniteGivesZeros) {
    const double none = std::numeric_limits<double>::quiet_NaN();
    const double endless = std::numeric_limits<double>::infinity();
    EXPECT_EQ(encodeCpr(none, 10, false, CprGrid::Airborne).longitude, 0U);
    EXPECT_EQ(encodeCpr(50, endless, true, CprGrid::Surface).latitude, 0U);
    const CprFrame turned = encodeCpr(50, 10 + 360.0 * 1000, false, CprGrid::Airborne);
    EXPECT_EQ(turned.longitude, encodeCpr(50, 10, false, CprGrid::Airborne).longitude);
}

} // namespace
