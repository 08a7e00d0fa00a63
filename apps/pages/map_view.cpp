#include "apps/pages/map_view.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdlib>

namespace tolvarin::ondrel::client {

namespace {

constexpr double fullCircle = 360;
constexpr double pole = 90;
constexpr double degreesInRadian = 57.29577951308232;

constexpr double sideMargin = 56;    // left and right of the points, for labels
constexpr double upperMargin = 50;   // above and below the points
constexpr double flattest = 0.45;    // smallest ratio of height to width
constexpr double smallestView = 0.2; // degrees
constexpr double narrowest = 0.02;   // smallest cosine of a latitude, near a pole
constexpr double gridSpacing = 84;   // smallest distance of two lines

constexpr std::array<int, 14> gridSteps = {1,  2,   5,   10,  15,  20,   30,
                                           60, 120, 300, 600, 900, 1800, 2700}; // minutes of arc

/// Degrees from `west` to the east, from 0 to below 360.
double eastward(double west, double longitude) {
    const double degrees = std::fmod(longitude - west, fullCircle);
    return degrees < 0 ? degrees + fullCircle : degrees;
}

/// The longitude that has the widest gap to the west of it.
double westernmost(const std::vector<GeoPoint>& points) {
    std::vector<double> east;
    east.reserve(points.size());
    for (const GeoPoint& point : points) {
        east.push_back(eastward(0, point.longitude));
    }
    std::sort(east.begin(), east.end());
    double west = east.front();
    double widest = east.front() + fullCircle - east.back();
    for (std::size_t i = 1; i < east.size(); ++i) {
        if (east[i] - east[i - 1] > widest) {
            widest = east[i] - east[i - 1];
            west = east[i];
        }
    }
    return west;
}

int gridStep(double unitsPerDegree) {
    const auto isWideEnough = [unitsPerDegree](int minutes) {
        return minutes * unitsPerDegree / 60 >= gridSpacing;
    };
    const auto* const step = std::find_if(gridSteps.begin(), gridSteps.end(), isWideEnough);
    return step != gridSteps.end() ? *step : gridSteps.back();
}

/// Degrees and minutes with the letter of the side; without it for 0 and 180 degrees.
std::string angleText(int minutes, char positive, char negative) {
    const int magnitude = std::abs(minutes);
    std::string text = std::to_string(magnitude / 60) + "\u00B0";
    if (magnitude % 60 != 0) {
        text += (magnitude % 60 < 10 ? "0" : "") + std::to_string(magnitude % 60) + "\u2032";
    }
    if (magnitude != 0 && magnitude != 180 * 60) {
        text += minutes > 0 ? positive : negative;
    }
    return text;
}

/// Calls `add` with all multiples of the step from one number of degrees to another.
template <class Add>
void forEachStep(int step, double fromDegrees, double toDegrees, Add add) {
    const int first = static_cast<int>(std::ceil(fromDegrees * 60 / step));
    const int last = static_cast<int>(std::floor(toDegrees * 60 / step));
    for (int i = first; i <= last; ++i) {
        add(i * step);
    }
}

} // namespace

MapView::MapView(const std::vector<GeoPoint>& points, double width, double greatestHeight)
    : _width(width) {
    const double west = westernmost(points);
    double east = 0;
    double south = pole;
    double north = -pole;
    for (const GeoPoint& point : points) {
        east = std::max(east, eastward(west, point.longitude));
        south = std::min(south, point.latitude);
        north = std::max(north, point.latitude);
    }
    _middleLon = west + east / 2;
    _middleLat = (south + north) / 2;
    const double shrinkage = std::max(narrowest, std::cos(_middleLat / degreesInRadian));
    const double across = std::max(smallestView, east * shrinkage);
    const double upward = std::max(smallestView, north - south);
    const double room = width - 2 * sideMargin;
    _height =
        std::clamp(room / across * upward + 2 * upperMargin, flattest * width, greatestHeight);
    _latScale = std::min(room / across, (_height - 2 * upperMargin) / upward);
    _lonScale = _latScale * shrinkage;
}

MapPoint MapView::at(const GeoPoint& place) const {
    return {_width / 2 + eastOfMiddle(place.longitude) * _lonScale,
            _height / 2 - (place.latitude - _middleLat) * _latScale};
}

/// In degrees, from -180 to 180.
double MapView::eastOfMiddle(double longitude) const {
    return std::remainder(longitude - _middleLon, fullCircle);
}

GeoBox MapView::bounds() const {
    const double upward = _height / 2 / _latScale;
    const double across = std::min(fullCircle / 2, _width / 2 / _lonScale);
    return {_middleLat - upward, _middleLat + upward,
            std::remainder(_middleLon - across, fullCircle), 2 * across};
}

bool MapView::joins(const GeoPoint& from, const GeoPoint& to) const {
    return std::abs(eastOfMiddle(from.longitude) - eastOfMiddle(to.longitude)) < fullCircle / 2;
}

/// Whether the line between them may be on the picture.
bool MapView::shows(const MapPoint& from, const MapPoint& to) const {
    return std::max(from.x, to.x) >= 0 && std::min(from.x, to.x) <= _width &&
           std::max(from.y, to.y) >= 0 && std::min(from.y, to.y) <= _height;
}

std::vector<std::vector<MapPoint>> MapView::lines(const std::vector<GeoPoint>& places,
                                                  double shortestStep) const {
    std::vector<std::vector<MapPoint>> parts;
    bool continues = false;
    for (std::size_t i = 1; i < places.size(); ++i) {
        const MapPoint from = at(places[i - 1]);
        const MapPoint to = at(places[i]);
        if (!shows(from, to) || !joins(places[i - 1], places[i])) {
            continues = false;
            continue;
        }
        if (!continues) {
            parts.push_back({from, to});
            continues = true;
            continue;
        }
        // The last point stays until it is known that it is not the last one.
        std::vector<MapPoint>& part = parts.back();
        const MapPoint& kept = part[part.size() - 2];
        const MapPoint& last = part.back();
        if (std::hypot(last.x - kept.x, last.y - kept.y) < shortestStep) {
            part.back() = to;
        } else {
            part.push_back(to);
        }
    }
    return parts;
}

std::vector<GridLine> MapView::meridians() const {
    const double reach = std::min(fullCircle / 2, _width / 2 / _lonScale);
    std::vector<GridLine> lines;
    forEachStep(gridStep(_lonScale), _middleLon - reach, _middleLon + reach, [&](int minutes) {
        constexpr int circle = 360 * 60;
        const int west = (minutes % circle + circle + circle / 2) % circle - circle / 2;
        lines.push_back(
            {_width / 2 + (minutes / 60.0 - _middleLon) * _lonScale, angleText(west, 'E', 'W')});
    });
    return lines;
}

std::vector<GridLine> MapView::parallels() const {
    const double reach = _height / 2 / _latScale;
    std::vector<GridLine> lines;
    forEachStep(gridStep(_latScale), std::max(-pole, _middleLat - reach),
                std::min(pole, _middleLat + reach), [&](int minutes) {
                    lines.push_back({_height / 2 - (minutes / 60.0 - _middleLat) * _latScale,
                                     angleText(minutes, 'N', 'S')});
                });
    return lines;
}

double MapView::nauticalMile() const {
    return _latScale / 60; // a minute of latitude
}

} // namespace tolvarin::ondrel::client
