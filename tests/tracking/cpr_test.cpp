#include "cpr.h"

#include "simulator/cpr_encoder.h"

#include <gtest/gtest.h>

#include <cmath>
#include <optional>

namespace tolvarin::ondrel {
namespace {

using cpr::cprNL;
using cpr::Frame;
using cpr::solve;

struct Example {
    const char* what;
    Frame even;
    Frame odd;
    bool evenIsNewer;
    std::optional<cpr::Position> position;
};

TEST(Cpr, SolvesExamplesToTheLastBit) {
    const Example examples[] = {
        {"north-east",
         {93000, 51372},
         {74158, 50194},
         true,
         {{52.2572021484375, 3.91937255859375}}},
        {"odd newer",
         {93000, 51372},
         {74158, 50194},
         false,
         {{52.26578017412606, 3.938912527901786}}},
        {"south-west",
         {45875, 52975},
         {58218, 78643},
         true,
         {{-33.90000915527344, -70.49999626315372}}},
        {"odd newer",
         {45875, 52975},
         {58218, 78643},
         false,
         {{-33.899991310248936, -70.5000114440918}}},
        {"one zone", {87381, 3641}, {55342, 3641}, true, {{87.99998474121094, 10.00030517578125}}},
        {"across a zone edge", {97440, 107406}, {94062, 103765}, true, std::nullopt},
        {"across it, odd newer", {97440, 107406}, {94062, 103765}, false, std::nullopt},
        {"nowhere", {0, 0}, {0, 0}, true, {{0, 0}}},
        {"largest values",
         {131071, 131071},
         {131071, 131071},
         true,
         {{-4.57763671875e-05, -4.655223784766349e-05}}},
        {"largest, odd newer",
         {131071, 131071},
         {131071, 131071},
         false,
         {{-4.655223784766349e-05, -4.735486260187827e-05}}},
        // What nobody folds: frames of different places give a latitude beyond the pole.
        {"beyond the pole", {44431, 0}, {0, 0}, true, {{122.03388977050781, 0}}},
        {"just below the fold", {131071, 0}, {32767, 0}, true, {{269.9999542236328, 0}}},
        // A latitude index of -15.
        {"on the fold", {0, 0}, {32768, 0}, true, {{-90, 0}}},
        {"on the fold, odd newer", {0, 0}, {32768, 0}, false, {{-90, 0}}},
        {"on the date line", {0, 65536}, {0, 0}, true, {{0, 180}}},
        {"behind the date line", {0, 65537}, {0, 0}, true, {{0, -179.99995344776218}}},
        // A longitude index of -29.
        {"negative remainder", {0, 0}, {0, 65536}, false, {{0, -176.89655172413794}}},
    };
    for (const Example& example : examples) {
        const auto position = solve(example.even, example.odd, example.evenIsNewer);
        ASSERT_EQ(position.has_value(), example.position.has_value()) << example.what;
        if (position) {
            EXPECT_EQ(position->latitude, example.position->latitude) << example.what;
            EXPECT_EQ(position->longitude, example.position->longitude) << example.what;
        }
    }
}

/// The latitude below which there are `zones` zones, to eight decimals as it is published
/// (RTCA DO-260B, A.1.7.2.d).
double edgeOf(int zones) {
    const double pi = std::acos(-1.0);
    const double part = (1 - std::cos(pi / 30)) / (1 - std::cos(2 * pi / zones));
    return std::round(std::acos(std::sqrt(part)) * 180 / pi * 1e8) / 1e8;
}

TEST(Cpr, CountsZonesByTheirFormula) {
    EXPECT_EQ(edgeOf(59), 10.4704713);
    EXPECT_EQ(edgeOf(2), 87.0);
    for (int zones = 2; zones <= 59; ++zones) {
        const double edge = edgeOf(zones);
        const double below = std::nextafter(edge, 0);
        for (const double sign : {1.0, -1.0}) {
            EXPECT_EQ(cprNL(sign * edge), zones - 1);
            EXPECT_EQ(cprNL(sign * below), zones);
        }
    }
    for (const double latitude : {87.5, 90.0, -90.0, 122.0, 270.0, -360.0, 1e300}) {
        EXPECT_EQ(cprNL(latitude), 1);
    }
    EXPECT_EQ(cprNL(-0.0), 59);
}

bool isAtZoneEdge(double latitude) {
    for (int zones = 2; zones <= 59; ++zones) {
        if (std::fabs(std::fabs(latitude) - edgeOf(zones)) < 1e-4) {
            return true;
        }
    }
    return false;
}

// Half a step of the grid; the other half of a millionth is for the sender's rounding.
TEST(Cpr, FindsPlacesAllOverTheEarth) {
    constexpr auto grid = simulator::CprGrid::Airborne;
    constexpr double halfStep = 0.5000005 / 131072;
    double longitude = 0;
    for (double latitude = -90; latitude <= 90; latitude += 0.00317) {
        longitude = std::remainder(longitude + 137.50776, 360);
        const auto even = simulator::encodeCpr(latitude, longitude, false, grid);
        const auto odd = simulator::encodeCpr(latitude, longitude, true, grid);
        for (const bool evenIsNewer : {true, false}) {
            const auto found = solve(
                {static_cast<i32>(even.latitude), static_cast<i32>(even.longitude)},
                {static_cast<i32>(odd.latitude), static_cast<i32>(odd.longitude)}, evenIsNewer);
            if (!found) {
                ASSERT_TRUE(isAtZoneEdge(latitude)) << latitude;
                continue;
            }
            const int zones = std::max(cprNL(found->latitude) - (evenIsNewer ? 0 : 1), 1);
            ASSERT_NEAR(found->latitude, latitude, 360.0 / (evenIsNewer ? 60 : 59) * halfStep);
            ASSERT_NEAR(std::remainder(found->longitude - longitude, 360), 0,
                        360.0 / zones * halfStep)
                << latitude;
            ASSERT_TRUE(found->longitude > -180 && found->longitude <= 180) << found->longitude;
        }
    }
}

} // namespace
} // namespace tolvarin::ondrel
