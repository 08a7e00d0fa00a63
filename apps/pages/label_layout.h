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

/// Finds places for labels beside their points, where they cover as little as possible. A raster of
/// costs stands for what is on the picture, so the time for a label does not depend on the number
/// of labels.
class LabelLayout {
public:
    enum class Anchor { Start, Middle, End };

    struct Place {
        MapPoint anchor; ///< a point of the text at the middle of its height
        Anchor side;     ///< which part of the text that point is
    };

    LabelLayout(double width, double height);

    /// Makes labels avoid a box, or the line from one point to another. A higher cost is avoided
    /// more.
    void avoid(const Box& box, double cost);
    void avoid(const MapPoint& from, const MapPoint& to, double cost);

    /// Whether the box is on the picture and nothing in it is to be avoided.
    bool isFree(const Box& box) const { return costOf(box) == 0; }

    /// Places a label of that size close beside the point and makes later labels avoid it. Gives
    /// nothing where the label would cover other labels or markers.
    std::optional<Place> place(const MapPoint& point, double width, double height);

private:
    double costOf(const Box& box) const;

    long _columns;
    long _rows;
    std::vector<double> _costs; ///< of the cells of the raster, row by row
};

} // namespace tolvarin::ondrel::client
