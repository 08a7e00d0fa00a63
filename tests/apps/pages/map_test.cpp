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
    for (int i = 0; i < 40; ++i) {
        const MapPoint point = {static_cast<double>(random.bits() % 500) + 50,
                                static_cast<double>(random.bits() % 320) + 40};
        const auto place = layout.place(point, labelWidth, labelHeight);
        ASSERT_TRUE(place);
        double left = place->anchor.x;
        left -= place->side == LabelLayout::Anchor::End      ? labelWidth
                : place->side == LabelLayout::Anchor::Middle ? labelWidth / 2
                                                             : 0;
        const Box box = {left, place->anchor.y - labelHeight / 2, left + labelWidth,
                         place->anchor.y + labelHeight / 2};
        EXPECT_TRUE(box.left >= 0 && box.right <= 600 && box.top >= 0 && box.bottom <= 400);
        for (const Box& other : placed) {
            EXPECT_FALSE(overlap(box, other)) << i;
        }
        EXPECT_FALSE(overlap(box, {point.x - 4, point.y - 4, point.x + 4, point.y + 4}));
        placed.push_back(box);
    }
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
    EXPECT_GT(placed, 8);
    EXPECT_LT(placed, 60);
}

} // namespace

} // namespace tolvarin::ondrel::client
