#include "cpr.h"

#include "simulator/wire.h"
#include "support/same_number.h"

#include <gtest/gtest.h>

#include <cmath>
#include <optional>

namespace tolvarin::ondrel {
namespace {

using cpr::cprNL;
using cpr::Frame;
using cpr::solve;

using Solution = std::optional<cpr::Position>;

/// A pair of frames, the position with the even frame as the newer one, and with the odd one.
struct Example {
    const char* what;
    Frame even;
    Frame odd;
    Solution byEven;
    Solution byOdd;
};

// clang-format off
const Example examples[] = {
    {"north-east", {93000, 51372}, {74158, 50194},
     {{52.2572021484375, 3.91937255859375}}, {{52.26578017412606, 3.938912527901786}}},
    {"south-west", {45875, 52975}, {58218, 78643},
     {{-33.90000915527344, -70.49999626315372}}, {{-33.899991310248936, -70.5000114440918}}},
    {"one zone", {87381, 3641}, {55342, 3641},
     {{87.99998474121094, 10.00030517578125}}, {{88.00002275887182, 10.00030517578125}}},
    {"across a zone edge", {97440, 107406}, {94062, 103765}, {}, {}},
    {"all zeros", {0, 0}, {0, 0}, {{0, 0}}, {{0, 0}}},
    {"largest values", {131071, 131071}, {131071, 131071},
     {{-4.57763671875e-05, -4.655223784766349e-05}},
     {{-4.655223784766349e-05, -4.735486260187827e-05}}},
    // Frames of different places may give a latitude beyond the pole. From 270 on it is south.
    {"beyond the pole", {44431, 0}, {0, 0}, {{122.03388977050781, 0}}, {{122.03389830508473, 0}}},
    {"below the fold", {131071, 0}, {32767, 0}, {{269.9999542236328, 0}}, {{269.99995344776215, 0}}},
    {"row -15, on the fold", {0, 0}, {32768, 0}, {{-90, 0}}, {{-90, 0}}},
    {"on the date line", {0, 65536}, {0, 0}, {{0, 180}}, {{0, 180}}},
    {"behind the date line", {0, 65537}, {0, 0}, {{0, -179.99995344776218}}, {{0, 180}}},
    {"column -29", {0, 0}, {0, 65536}, {{0, -176.9491525423729}}, {{0, -176.89655172413794}}},
};
// clang-format on

void expectSame(const Solution& found, const Solution& expected, const char* what) {
    ASSERT_EQ(found.has_value(), expected.has_value()) << what;
    if (found) {
        EXPECT_PRED2(test::sameNumber, found->latitude, expected->latitude) << what;
        EXPECT_PRED2(test::sameNumber, found->longitude, expected->longitude) << what;
    }
}

TEST(Cpr, SolvesExamplesToTheLastBit) {
    for (const Example& example : examples) {
        expectSame(solve(example.even, example.odd, true), example.byEven, example.what);
        expectSame(solve(example.even, example.odd, false), example.byOdd, example.what);
    }
}

/// The latitude below which there are `zones` zones, to eight decimals as published.
double edgeOf(int zones) {
    return std::round(simulator::wire::zoneEdge(zones) * 1e8) / 1e8;
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

} // namespace
} // namespace tolvarin::ondrel
