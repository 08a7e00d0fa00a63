#pragma once

#include "apps/pages/coastline.h"
#include "apps/tracking/geo_point.h"

#include <string>
#include <vector>

namespace tolvarin::ondrel::client {

/// A point of a picture, in its units from the upper left corner.
struct MapPoint {
    double x;
    double y;
};

/// A line of the graticule: its x or y on the picture, and a label such as "50°N".
struct GridLine {
    double at;
    std::string label;
};

/// An equirectangular map that shows all of some points and is true to scale at its middle
/// latitude. Its edges lie in the widest gap between the longitudes of the points, so that points
/// on both sides of the date line are shown side by side.
class MapView {
public:
    /// Needs at least one point; latitudes are from -90 to 90. The height is what the points need,
    /// within limits.
    MapView(const std::vector<GeoPoint>& points, double width, double greatestHeight);

    double width() const { return _width; }
    double height() const { return _height; }

    MapPoint at(const GeoPoint& place) const;

    /// What the picture shows.
    GeoBox bounds() const;

    /// Whether the shortest way from one point to the other does not leave the map at an edge.
    bool joins(const GeoPoint& from, const GeoPoint& to) const;

    /// The parts of the line through these places that are on the picture, or begin or end there.
    /// Points that are closer to the one before than `shortestStep` units are left out, but not the
    /// last one of a part.
    std::vector<std::vector<MapPoint>> lines(const std::vector<GeoPoint>& places,
                                             double shortestStep) const;

    /// The graticule, in steps of minutes or degrees that leave room for the labels.
    std::vector<GridLine> meridians() const;
    std::vector<GridLine> parallels() const;

    /// Units of the picture for one nautical mile.
    double nauticalMile() const;

private:
    double eastOfMiddle(double longitude) const;
    bool shows(const MapPoint& from, const MapPoint& to) const;

    double _width;
    double _height = 0;
    double _middleLon = 0; ///< longitude of the middle
    double _middleLat = 0; ///< latitude of the middle
    double _latScale = 0;  ///< units for one degree
    double _lonScale = 0;  ///< units for one degree
};

} // namespace tolvarin::ondrel::client
