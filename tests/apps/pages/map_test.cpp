#include "apps/pages/label_layout.h"
#include "apps/pages/map_view.h"

#include "simulator/random.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <optional>
#include <string>
#include <vector>

namespace tolvarin::ondrel::client {

namespace {

constexpr double width = 1000;
constexpr double greatestHeight = 600;

std::vector<std::string> labelsOf(const std::vector<GridLine>& lines) {
    std::vector<std::string> labels;
    for (const GridLine& line : lines) {
        labels.push_back(line.label);
    }
    return labels;
}

TEST(MapView, ShowsAllPointsAndALabelledGraticule) {
    struct Row {
        std::vector<GeoPoint> points;
        std::vector<std::string> meridians; ///< labels, west to east
        std::vector<std::string> parallels; ///< south to north
    };
    const Row rows[] = {
        // one point
        {{{50, 8.5}},
         {"8°15′E", "8°20′E", "8°25′E", "8°30′E", "8°35′E", "8°40′E", "8°45′E"},
         {"49°55′N", "50°N", "50°05′N"}},
        // the date line
        {{{-17, 179}, {-18, -179}},
         {"179°E", "179°15′E", "179°30′E", "179°45′E", "180°", "179°45′W", "179°30′W", "179°15′W",
          "179°W"},
         {"18°S", "17°45′S", "17°30′S", "17°15′S", "17°S"}},
        // near the pole
        {{{89, 0}, {80, 170}},
         {"0°", "30°E", "60°E", "90°E", "120°E", "150°E", "180°"},
         {"80°N", "82°N", "84°N", "86°N", "88°N"}},
        // degrees below one
        {{{51, -0.5}, {51.5, 0.5}},
         {"0°40′W", "0°30′W", "0°20′W", "0°10′W", "0°", "0°10′E", "0°20′E", "0°30′E", "0°40′E"},
         {"51°N", "51°10′N", "51°20′N", "51°30′N"}},
    };
    for (const Row& row : rows) {
        const MapView view(row.points, width, greatestHeight);
        EXPECT_LE(view.height(), greatestHeight);
        for (const GeoPoint& point : row.points) {
            const MapPoint at = view.at(point);
            EXPECT_TRUE(at.x >= 40 && at.x <= width - 40) << at.x;
            EXPECT_TRUE(at.y >= 40 && at.y <= view.height() - 40) << at.y;
            EXPECT_TRUE(view.joins(row.points.front(), point));
        }
        EXPECT_EQ(labelsOf(view.meridians()), row.meridians);
        EXPECT_EQ(labelsOf(view.parallels()), row.parallels);
    }
}

TEST(MapView, IsTrueToScaleInItsMiddle) {
    const MapView view({{40, 10}, {60, 30}}, width, greatestHeight);
    const MapPoint middle = view.at({50, 20});
    EXPECT_NEAR(middle.x, width / 2, 1e-6);
    EXPECT_NEAR(middle.y, view.height() / 2, 1e-6);
    EXPECT_NEAR(middle.y - view.at({51, 20}).y, 60 * view.nauticalMile(), 1e-6);
    EXPECT_NEAR(view.at({50, 21}).x - middle.x,
                60 * view.nauticalMile() * std::cos(50 * 3.141592653589793 / 180), 1e-6);
    for (const GridLine& line : view.parallels()) {
        EXPECT_NEAR(line.at, view.at({std::stod(line.label), 20}).y, 1e-6) << line.label;
    }
    for (const GridLine& line : view.meridians()) {
        if (line.label.back() == 'E') {
            EXPECT_NEAR(line.at, view.at({50, std::stod(line.label)}).x, 1e-6) << line.label;
        }
    }
}

TEST(MapView, HasItsEdgesInTheWidestGap) {
    const MapView world({{0, -170}, {10, -60}, {0, 60}, {-10, 170}}, width, greatestHeight);
    EXPECT_FALSE(world.joins({0, 60}, {0, -60})); // both edges of the map
    EXPECT_TRUE(world.joins({0, 179}, {0, -179}));
    EXPECT_LT(world.at({0, 60}).x, world.at({0, -60}).x);
}

TEST(MapView, DrawsOnlyTheLinesInItsView) {
    const MapView view({{-17, 179}, {-18, -179}}, width, greatestHeight);
    const auto countsOf = [&view](const std::vector<GeoPoint>& places, double shortestStep) {
        std::vector<std::size_t> counts;
        for (const std::vector<MapPoint>& line : view.lines(places, shortestStep)) {
            counts.push_back(line.size());
        }
        return counts;
    };
    using Counts = std::vector<std::size_t>;
    EXPECT_EQ(countsOf({{-17, 179.5}, {-17.5, -179.5}, {-18, 179.5}}, 1), Counts({3}));
    // through the whole view, from and to places that are not in it
    EXPECT_EQ(countsOf({{-17.5, 170}, {-17.5, 190}}, 1), Counts({2}));
    // out of the view and back
    EXPECT_EQ(countsOf({{-17, 180}, {10, 180}, {11, 181}, {-17.5, 181}}, 1), Counts({2, 2}));
    EXPECT_EQ(countsOf({{10, 180}, {11, 181}, {12, 180}}, 1), Counts());
    EXPECT_EQ(countsOf({{-17, 0}, {-17, 1}}, 1), Counts());
    EXPECT_EQ(countsOf({{-17, 180}}, 1), Counts());
    // the one in the middle is too near, the last one stays
    EXPECT_EQ(countsOf({{-17, 180}, {-17, 180.001}, {-17, 180.5}, {-17, 180.501}}, 2), Counts({3}));

    const MapView world({{0, -170}, {10, -60}, {0, 60}, {-10, 170}}, width, greatestHeight);
    EXPECT_EQ(world.lines({{0, 60}, {0, -60}}, 1).size(), 0U); // from edge to edge
    for (const MapView& one : {view, world}) {
        const GeoBox box = one.bounds();
        EXPECT_NEAR(one.at({box.south, box.west}).x, 0, 1e-6);
        EXPECT_NEAR(one.at({box.south, box.west}).y, one.height(), 1e-6);
        EXPECT_NEAR(one.at({box.north, box.west + box.width}).x, width, 1e-6);
        EXPECT_NEAR(one.at({box.north, box.west + box.width}).y, 0, 1e-6);
    }
}

bool overlap(const Box& left, const Box& right) {
    return left.left < right.right && right.left < left.right && left.top < right.bottom &&
           right.top < left.bottom;
}

TEST(LabelLayout, KeepsLabelsApartAndOnThePicture) {
    constexpr double labelWidth = 50;
    constexpr double labelHeight = 12;
    simulator::Random random(1);
    LabelLayout layout(600, 400);
    std::vector<Box> placed;
    for (int i = 0; i < 80; ++i) {
        const MapPoint point = {static_cast<double>(random.bits() % 500) + 50,
                                static_cast<double>(random.bits() % 320) + 40};
        const auto place = layout.place(point, labelWidth, labelHeight);
        if (!place) {
            continue;
        }
        double left = place->anchor.x;
        left -= place->side == LabelLayout::Anchor::End      ? labelWidth
                : place->side == LabelLayout::Anchor::Middle ? labelWidth / 2
                                                             : 0;
        const Box box = {left, place->anchor.y - labelHeight / 2, left + labelWidth,
                         place->anchor.y + labelHeight / 2};
        // Less a cell of the raster.
        const Box inner = {box.left + 4, box.top + 4, box.right - 4, box.bottom - 4};
        EXPECT_TRUE(box.left >= 0 && box.right <= 600 && box.top >= 0 && box.bottom <= 400);
        for (const Box& other : placed) {
            EXPECT_FALSE(overlap(inner, other)) << i;
        }
        EXPECT_FALSE(overlap(box, {point.x - 4, point.y - 4, point.x + 4, point.y + 4}));
        EXPECT_TRUE(overlap(box, {point.x - 20, point.y - 20, point.x + 20, point.y + 20})) << i;
        placed.push_back(box);
    }
    EXPECT_GT(placed.size(), 50U);
    EXPECT_LT(placed.size(), 80U);
}

TEST(LabelLayout, AvoidsWhatIsInTheWay) {
    LabelLayout layout(600, 400);
    EXPECT_EQ(layout.place({300, 200}, 50, 12)->side, LabelLayout::Anchor::Start);
    LabelLayout blocked(600, 400);
    blocked.avoid(MapPoint{300, 200}, MapPoint{380, 200}, 1); // a track to the east
    EXPECT_EQ(blocked.place({300, 200}, 50, 12)->side, LabelLayout::Anchor::End);
    int placed = 1; // beside the same point until there is no room
    while (placed < 60 && layout.place({300, 200}, 50, 12)) {
        ++placed;
    }
    EXPECT_GT(placed, 4);
    EXPECT_LT(placed, 20);
}

} // namespace

} // namespace tolvarin::ondrel::client
