#include "apps/pages/label_layout.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <limits>

namespace tolvarin::ondrel::client {

namespace {

constexpr double cell = 4;        // side of a cell of the raster
constexpr double outside = 1000;  // cost of a cell beyond the edge
constexpr double otherLabel = 50; // cost of a cell under a label
constexpr double mostHidden = 3;  // cells of other labels that a label may cover

// In the order of preference.
constexpr std::array<double, 2> distances = {13, 18};
constexpr std::array<MapPoint, 8> directions = {
    {{1, 0}, {-1, 0}, {0.4, -1.4}, {0.4, 1.4}, {-0.4, -1.4}, {-0.4, 1.4}, {0, -1.4}, {0, 1.4}}};

/// Rounds towards minus infinity.
long cellAt(double coordinate) {
    return static_cast<long>(std::floor(coordinate / cell));
}

LabelLayout::Anchor anchorOf(const MapPoint& direction) {
    if (direction.x == 0) {
        return LabelLayout::Anchor::Middle;
    }
    return direction.x > 0 ? LabelLayout::Anchor::Start : LabelLayout::Anchor::End;
}

Box boxOf(const LabelLayout::Place& place, double width, double height) {
    double left = place.anchor.x;
    if (place.side != LabelLayout::Anchor::Start) {
        left -= place.side == LabelLayout::Anchor::End ? width : width / 2;
    }
    return {left, place.anchor.y - height / 2, left + width, place.anchor.y + height / 2};
}

} // namespace

LabelLayout::LabelLayout(double width, double height)
    : _columns(cellAt(width)), _rows(cellAt(height)),
      _costs(static_cast<std::size_t>(_columns * _rows)) {}

void LabelLayout::avoid(const Box& box, double cost) {
    const long lastRow = std::min(cellAt(box.bottom), _rows - 1);
    const long lastColumn = std::min(cellAt(box.right), _columns - 1);
    for (long row = std::max(0L, cellAt(box.top)); row <= lastRow; ++row) {
        for (long column = std::max(0L, cellAt(box.left)); column <= lastColumn; ++column) {
            _costs[static_cast<std::size_t>(row * _columns + column)] += cost;
        }
    }
}

void LabelLayout::avoid(const MapPoint& from, const MapPoint& to, double cost) {
    const double length = std::hypot(to.x - from.x, to.y - from.y);
    const int steps = static_cast<int>(std::ceil(length / cell));
    for (int i = 0; i < steps; ++i) {
        const double part = static_cast<double>(i) / steps;
        const double x = from.x + part * (to.x - from.x);
        const double y = from.y + part * (to.y - from.y);
        avoid(Box{x, y, x, y}, cost);
    }
}

double LabelLayout::costOf(const Box& box) const {
    double cost = 0;
    for (long row = cellAt(box.top); row <= cellAt(box.bottom); ++row) {
        for (long column = cellAt(box.left); column <= cellAt(box.right); ++column) {
            const bool inside = row >= 0 && row < _rows && column >= 0 && column < _columns;
            cost += inside ? _costs[static_cast<std::size_t>(row * _columns + column)] : outside;
        }
    }
    return cost;
}

std::optional<LabelLayout::Place> LabelLayout::place(const MapPoint& point, double width,
                                                     double height) {
    Place best{};
    double lowest = std::numeric_limits<double>::infinity();
    double preference = 0; // always smaller than the cost of anything drawn
    for (const double distance : distances) {
        for (const MapPoint& direction : directions) {
            const Place place = {
                {point.x + distance * direction.x, point.y + distance * direction.y},
                anchorOf(direction)};
            const double cost = costOf(boxOf(place, width, height)) + preference;
            if (cost < lowest) {
                lowest = cost;
                best = place;
            }
            preference += 0.02;
        }
    }
    if (lowest > otherLabel * mostHidden) {
        return std::nullopt;
    }
    avoid(boxOf(best, width, height), otherLabel);
    return best;
}

} // namespace tolvarin::ondrel::client
