#pragma once

#include "apps/tracking/track_history.h"

#include <string>
#include <vector>

namespace tolvarin::ondrel::client {

/// A place on a picture, in its units from the upper left corner.
struct MapPoint {
    double x;
    double y;
};

/// A line of the graticule: its x or y on the picture, and "50 deg N" or the like in signs.
struct GridLine {
    double at;
    std::string label;
};

/// An equirectangular map that shows all of some points, true to scale in its middle latitude. It
/// is cut where the points leave the widest gap, so that the date line is a meridian like others.
class MapView {
public:
    /// At least one point, each a place on earth. The height is what the points need, within
    /// limits.
    MapView(const std::vector<GeoPoint>& points, double width, double greatestHeight);

    double width() const { return _width; }
    double height() const { return _height; }

    MapPoint at(const GeoPoint& place) const;

    /// Whether the way from one point to the other lies on the map, and not around the earth.
    bool joins(const GeoPoint& from, const GeoPoint& to) const;

    /// The graticule, in whole steps of minutes or degrees that leave room for the labels.
    std::vector<GridLine> meridians() const;
    std::vector<GridLine> parallels() const;

    /// Units of the picture for one nautical mile.
    double nauticalMile() const;

private:
    double _width;
    double _height = 0;
    double _west;          ///< longitude of the westernmost point
    double _middle = 0;    ///< degrees from there to the middle of the map
    double _middleLat = 0; ///< latitude of the middle
    double _latScale = 0;  ///< units for one degree
    double _lonScale = 0;
};

} // namespace tolvarin::ondrel::client
