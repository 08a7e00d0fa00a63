#pragma once

#include "apps/pages/map_view.h"

#include <optional>
#include <vector>

namespace tolvarin::ondrel::client {

/// A rectangle on a picture.
struct Box {
    double left;
    double top;
    double right;
    double bottom;
};

/// Finds places for labels beside their points, where they cover as little as can be. What is on
/// the picture is kept as a raster of costs, so that a label costs the same however many there are.
class LabelLayout {
public:
    enum class Anchor { Start, Middle, End };

    struct Place {
        MapPoint anchor; ///< of the text, in the middle of its height
        Anchor side;     ///< which part of the text stands there
        bool isFar;      ///< a line should lead there from the point
    };

    LabelLayout(double width, double height);

    /// Makes labels avoid a box, or the way from one point to the other, the more so the higher
    /// the cost.
    void avoid(const Box& box, double cost);
    void avoid(const MapPoint& from, const MapPoint& to, double cost);

    /// Places a label of that size beside the point, and makes later ones avoid it. Nothing where
    /// it would be too crowded to read any.
    std::optional<Place> place(const MapPoint& point, double width, double height);

private:
    double costOf(const Box& box) const;

    long _columns;
    long _rows;
    std::vector<double> _costs; ///< of the cells, row by row
};

} // namespace tolvarin::ondrel::client
