#include "apps/pages/track_map.h"

#include "apps/common/text.h"
#include "apps/display/aircraft_columns.h"
#include "apps/pages/html.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace tolvarin::ondrel::client {

namespace {

constexpr double shortestStep = 1.5; // between two points of a track, in units of the picture
constexpr double characterWidth = 8; // of the widest usual fonts
constexpr double labelHeight = 12;
constexpr double baseline = 4; // of a text, below the middle of its height
constexpr double markerSize = 8;

// How strongly labels avoid what is drawn. A track costs least: a label is always near its own.
constexpr double trackCost = 1;
constexpr double gridLabelCost = 20;
constexpr double markerCost = 40;

/// The aircraft that have a position on earth.
std::vector<const TrackedAircraft*> withPlace(const std::vector<TrackedAircraft>& aircraft) {
    std::vector<const TrackedAircraft*> chosen;
    for (const TrackedAircraft& one : aircraft) {
        if (one.position) {
            chosen.push_back(&one);
        }
    }
    return chosen;
}

/// The past positions and the current one.
std::vector<GeoPoint> pathOf(const TrackedAircraft& aircraft, const TrackHistory& history) {
    std::vector<GeoPoint> path;
    for (const Position& position : history.pathOf(aircraft.icaoAddr())) {
        path.push_back(position.place);
    }
    path.push_back(aircraft.position->place);
    return path;
}

std::vector<GeoPoint> allPoints(const std::vector<const TrackedAircraft*>& aircraft,
                                const TrackHistory& history) {
    std::vector<GeoPoint> points;
    for (const TrackedAircraft* one : aircraft) {
        const std::vector<GeoPoint> path = pathOf(*one, history);
        points.insert(points.end(), path.begin(), path.end());
    }
    return points;
}

std::string_view bandStyle(const TrackedAircraft& aircraft) {
    const auto& bands = altitudeBands();
    if (!aircraft.altitudeBaroValid()) {
        return bands.back().style;
    }
    return std::find_if(
               bands.begin(), bands.end(),
               [&](const AltitudeBand& band) { return aircraft.altitudeBaro() < band.below; })
        ->style;
}

std::string pair(const MapPoint& point) {
    return decimalText(point.x, 1) + "," + decimalText(point.y, 1);
}

/// ` name="12.3"`.
std::string attribute(std::string_view name, double value) {
    return client::attribute(name, decimalText(value, 1));
}

std::string nameOf(const TrackedAircraft& aircraft) {
    return callsignOf(aircraft).value_or(hex24(aircraft.icaoAddr()));
}

std::string_view anchorName(LabelLayout::Anchor anchor) {
    switch (anchor) {
    case LabelLayout::Anchor::Start:
        return "start";
    case LabelLayout::Anchor::Middle:
        return "middle";
    default:
        return "end";
    }
}

/// The largest of 1, 2, 5, 10, 20 and so on that is at most `limit`, which is at least 1.
double roundNumber(double limit) {
    const double power = std::pow(10, std::floor(std::log10(limit)));
    for (const double factor : {5, 2}) {
        if (factor * power <= limit) {
            return factor * power;
        }
    }
    return power;
}

} // namespace

const std::vector<AltitudeBand>& altitudeBands() {
    constexpr i32 highest = std::numeric_limits<i32>::max();
    static const std::vector<AltitudeBand> bands = {
        {5000, "b0", "below 5000 ft"}, {15000, "b1", "5000 to 15 000 ft"},
        {25000, "b2", "to 25 000 ft"}, {35000, "b3", "to 35 000 ft"},
        {highest, "b4", "above"},      {highest, "b5", "altitude unknown"},
    };
    return bands;
}

TrackMap::TrackMap(const std::vector<TrackedAircraft>& aircraft, const TrackHistory& history,
                   double width, double greatestHeight)
    : _aircraft(withPlace(aircraft)), _history(history),
      _view(allPoints(_aircraft, history), width, greatestHeight),
      _labels(_view.width(), _view.height()) {}

std::string TrackMap::svg(std::string_view style) {
    _svg = "<svg" + attribute("class", style) + " viewBox=\"0 0 " + decimalText(_view.width(), 0) +
           " " + decimalText(_view.height(), 0) + "\">\n";
    addGraticule();
    addScale();
    for (const TrackedAircraft* aircraft : _aircraft) {
        addTrack(*aircraft);
    }
    for (const TrackedAircraft* aircraft : _aircraft) {
        addMarker(*aircraft);
    }
    for (const TrackedAircraft* aircraft : _aircraft) {
        addLabel(*aircraft);
    }
    return _svg + "</svg>\n";
}

void TrackMap::addGraticule() {
    constexpr double gap = 4;
    for (const GridLine& meridian : _view.meridians()) {
        addLine({meridian.at, 0}, {meridian.at, _view.height()}, "grid");
        addDegrees({meridian.at + gap, _view.height() - 2 * gap}, meridian.label);
    }
    for (const GridLine& parallel : _view.parallels()) {
        addLine({0, parallel.at}, {_view.width(), parallel.at}, "grid");
        addDegrees({gap, parallel.at - 2 * gap}, parallel.label);
    }
}

/// Leaves out a label that the right edge would cut.
void TrackMap::addDegrees(const MapPoint& at, const std::string& label) {
    const double width = characterWidth * static_cast<double>(label.size());
    if (at.x + width > _view.width()) {
        return;
    }
    addText(at, attribute("class", "degrees"), label);
    _labels.avoid(Box{at.x, at.y - labelHeight / 2, at.x + width, at.y + labelHeight / 2},
                  gridLabelCost);
}

/// Draws the scale of distance in the upper right corner.
void TrackMap::addScale() {
    constexpr double margin = 14;
    constexpr double tick = 4;
    const double miles = roundNumber(std::max(1.0, _view.width() / 6 / _view.nauticalMile()));
    const MapPoint right = {_view.width() - margin, margin};
    const MapPoint left = {right.x - miles * _view.nauticalMile(), margin};
    addLine(left, right, "scale");
    for (const MapPoint& end : {left, right}) {
        addLine({end.x, end.y - tick}, {end.x, end.y + tick}, "scale");
    }
    addText({right.x, margin + 3 * tick},
            attribute("class", "degrees") + attribute("text-anchor", "end"),
            decimalText(miles, 0) + " NM");
    _labels.avoid(Box{left.x, 0, right.x, margin + 5 * tick}, gridLabelCost);
}

void TrackMap::addTrack(const TrackedAircraft& aircraft) {
    const std::vector<GeoPoint> places = pathOf(aircraft, _history);
    MapPoint last = _view.at(places.front());
    std::string path = "M" + pair(last);
    for (std::size_t i = 1; i < places.size(); ++i) {
        const MapPoint point = _view.at(places[i]);
        const bool joins = _view.joins(places[i - 1], places[i]);
        const bool isLong = std::hypot(point.x - last.x, point.y - last.y) >= shortestStep;
        if (joins && !isLong && i + 1 < places.size()) {
            continue;
        }
        path += (joins ? "L" : "M") + pair(point);
        if (joins) {
            _labels.avoid(last, point, trackCost);
        }
        last = point;
    }
    _svg += "<path" + attribute("class", "track " + std::string(bandStyle(aircraft))) +
            attribute("d", path) + "/>\n";
}

/// An arrow head along the heading, or a disc if the heading is not known.
void TrackMap::addMarker(const TrackedAircraft& aircraft) {
    const MapPoint at = _view.at(aircraft.position->place);
    const std::string style = attribute("class", "marker " + std::string(bandStyle(aircraft)));
    _svg += "<a" + attribute("href", pageName(aircraft.icaoAddr())) + "><title>" +
            htmlText(hex24(aircraft.icaoAddr()) + " " + callsignOf(aircraft).value_or("")) +
            "</title>";
    if (aircraft.headingValid()) {
        _svg += "<path" + style + " transform=\"translate(" + pair(at) + ") rotate(" +
                decimalText(aircraft.heading(), 0) + ")\" d=\"M0,-8L5.5,7L0,4L-5.5,7Z\"/>";
    } else {
        _svg += "<circle" + style + attribute("cx", at.x) + attribute("cy", at.y) + " r=\"4.5\"/>";
    }
    _svg += "</a>\n";
    _labels.avoid(Box{at.x - markerSize, at.y - markerSize, at.x + markerSize, at.y + markerSize},
                  markerCost);
}

void TrackMap::addLabel(const TrackedAircraft& aircraft) {
    const MapPoint at = _view.at(aircraft.position->place);
    const std::string name = nameOf(aircraft);
    const auto place =
        _labels.place(at, characterWidth * static_cast<double>(name.size()), labelHeight);
    if (!place) {
        return;
    }
    if (place->isFar) {
        addLine(at, place->anchor, "leader");
    }
    const std::string style = !emergencyOf(aircraft).empty() ? "name alarming" : "name";
    _svg += "<a" + attribute("href", pageName(aircraft.icaoAddr())) + ">";
    addText(place->anchor,
            attribute("class", style) + attribute("text-anchor", anchorName(place->side)), name);
    _svg += "</a>\n";
}

void TrackMap::addLine(const MapPoint& from, const MapPoint& to, std::string_view style) {
    _svg += "<line" + attribute("class", style) + attribute("x1", from.x) +
            attribute("y1", from.y) + attribute("x2", to.x) + attribute("y2", to.y) + "/>\n";
}

/// `at` is at the middle of the height of the text.
void TrackMap::addText(const MapPoint& at, std::string_view attributes, std::string_view text) {
    _svg += "<text" + std::string(attributes) + attribute("x", at.x) +
            attribute("y", at.y + baseline) + ">" + htmlText(text) + "</text>";
}

} // namespace tolvarin::ondrel::client
