#include "apps/pages/track_map.h"

#include "apps/common/text.h"
#include "apps/display/aircraft_columns.h"
#include "apps/pages/coastline.h"
#include "apps/pages/html.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <optional>

namespace tolvarin::ondrel::client {

namespace {

constexpr double shortestStep = 1.5; // between two points of a track, in units of the picture
constexpr double coastStep = 2.5;    // between two points of a coast; islands below it stay away
constexpr double characterWidth = 8; // of the widest usual fonts
constexpr double labelHeight = 12;
constexpr double baseline = 4; // of a text, below the middle of its height
constexpr double markerSize = 8;
constexpr double widestRings = 200;  // units between two rings, at most
constexpr double ringStep = 12;      // units between two points of a ring
constexpr double halfCircle = 10800; // nautical miles, to the other side of the earth

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

/// The past positions and the current one, in a part for each time without a gap.
std::vector<std::vector<GeoPoint>> pathOf(const TrackedAircraft& aircraft,
                                          const TrackHistory& history) {
    std::vector<std::vector<GeoPoint>> parts(1);
    for (const PastPosition& position : history.pathOf(aircraft.icaoAddress())) {
        if (position.afterGap) {
            parts.emplace_back();
        }
        parts.back().push_back(position.place);
    }
    parts.back().push_back(aircraft.position->place);
    return parts;
}

std::vector<GeoPoint> allPoints(const std::vector<const TrackedAircraft*>& aircraft,
                                const TrackHistory& history) {
    std::vector<GeoPoint> points;
    for (const TrackedAircraft* one : aircraft) {
        for (const std::vector<GeoPoint>& part : pathOf(*one, history)) {
            points.insert(points.end(), part.begin(), part.end());
        }
    }
    return points;
}

/// With the receiver, if that costs at most half the size.
MapView viewOf(std::vector<GeoPoint> points, const std::optional<GeoPoint>& receiver, double width,
               double greatestHeight) {
    const MapView view(points, width, greatestHeight);
    if (!receiver) {
        return view;
    }
    points.push_back(*receiver);
    const MapView wider(points, width, greatestHeight);
    return wider.nauticalMile() * 2 >= view.nauticalMile() ? wider : view;
}

std::string_view bandStyle(const TrackedAircraft& aircraft) {
    const auto& bands = altitudeBands();
    if (!aircraft.notes.altitudeTold) {
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

/// The lines as a path of SVG, in steps to a tenth of a unit.
std::string pathText(const std::vector<std::vector<MapPoint>>& lines) {
    const auto tenths = [](double coordinate) { return std::round(coordinate * 10) / 10; };
    std::string text;
    for (const std::vector<MapPoint>& line : lines) {
        MapPoint last{};
        std::string_view command = "M";
        for (const MapPoint& point : line) {
            const MapPoint rounded = {tenths(point.x), tenths(point.y)};
            text += command;
            text += pair({rounded.x - last.x, rounded.y - last.y});
            command = command == "M" ? "l" : " ";
            last = rounded;
        }
    }
    return text;
}

/// ` name="12.3"`.
std::string attribute(std::string_view name, double value) {
    return client::attribute(name, decimalText(value, 1));
}

std::string nameOf(const TrackedAircraft& aircraft) {
    return callsignOf(aircraft).value_or(hex24(aircraft.icaoAddress()));
}

/// For scripts: longitude and latitude of the middle, and the degrees across and upward.
std::string degreesText(const GeoBox& box) {
    std::string text;
    for (const double degrees : {box.west + box.width / 2, (box.south + box.north) / 2, box.width,
                                 box.north - box.south}) {
        text += (text.empty() ? "" : " ") + decimalText(degrees, 4);
    }
    return text;
}

/// A link to the page of an aircraft, in whose coordinates the aircraft is at 0, 0. So its content
/// can change its size without moving. The keyboard gets to that page from the table.
std::string linkAt(const MapPoint& at, const TrackedAircraft& aircraft) {
    return "<a" + client::attribute("href", pageName(aircraft.icaoAddress())) +
           R"( tabindex="-1" transform="translate()" + pair(at) + ")\">";
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
                   const Showing& showing, double width, double greatestHeight)
    : _aircraft(withPlace(aircraft)), _history(history), _showing(showing),
      _view(viewOf(allPoints(_aircraft, history), showing.receiver, width, greatestHeight)),
      _labels(_view.width(), _view.height()) {}

std::string TrackMap::svg(std::string_view style, std::string_view name) {
    _svg = "<svg" + attribute("class", style) + " viewBox=\"0 0 " + decimalText(_view.width(), 0) +
           " " + decimalText(_view.height(), 0) + "\"" +
           client::attribute("data-degrees", degreesText(_view.bounds())) + " role=\"img\">\n" +
           element("title", htmlText(name)) + "\n";
    addCoasts();
    addGraticule();
    addScale();
    if (_showing.receiver) {
        addReceiver(*_showing.receiver);
    }
    for (const TrackedAircraft* aircraft : _aircraft) {
        addTrack(*aircraft);
    }
    for (const TrackedAircraft* aircraft : _aircraft) {
        addMarker(*aircraft);
    }
    // Those that are drawn first find a place.
    const auto rank = [this](const TrackedAircraft* aircraft) {
        if (!emergencyOf(*aircraft).empty()) {
            return 0;
        }
        return isOld(aircraft->position->stampMs, _showing) ? 2 : 1;
    };
    std::stable_sort(_aircraft.begin(), _aircraft.end(),
                     [rank](const TrackedAircraft* left, const TrackedAircraft* right) {
                         return rank(left) < rank(right);
                     });
    for (const TrackedAircraft* aircraft : _aircraft) {
        addLabel(*aircraft);
    }
    return _svg + "</svg>\n";
}

void TrackMap::addCoasts() {
    const auto isSmall = [](const std::vector<MapPoint>& line) {
        return std::hypot(line.back().x - line.front().x, line.back().y - line.front().y) <
                   coastStep &&
               line.size() == 2;
    };
    std::string path;
    for (const std::vector<GeoPoint>& coast : coastsIn(_view.bounds())) {
        auto lines = _view.lines(coast, coastStep);
        lines.erase(std::remove_if(lines.begin(), lines.end(), isSmall), lines.end());
        path += pathText(lines);
    }
    _svg += "<path" + attribute("class", "coast") + attribute("d", path) + "/>\n";
}

void TrackMap::addGraticule() {
    constexpr double gap = 4;
    for (const GridLine& meridian : _view.meridians()) {
        addLine({meridian.at, 0}, {meridian.at, _view.height()}, "grid");
        addDegrees({meridian.at + gap, _view.height() - 2 * gap}, meridian.label);
    }
    for (const GridLine& parallel : _view.parallels()) {
        addLine({0, parallel.at}, {_view.width(), parallel.at}, "grid");
        const bool fits = parallel.at >= 2 * gap + labelHeight / 2;
        addDegrees({gap, parallel.at + (fits ? -2 * gap : 2 * gap)}, parallel.label);
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

void TrackMap::addReceiver(const GeoPoint& receiver) {
    const GeoBox box = _view.bounds();
    const GeoPoint middle = {(box.south + box.north) / 2, box.west + box.width / 2};
    const double diagonal = std::hypot(_view.width(), _view.height()) / _view.nauticalMile();
    const double step = roundNumber(std::max(1.0, widestRings / _view.nauticalMile()));
    const double toMiddle = nauticalMiles(receiver, middle);
    const int first = std::max(1, static_cast<int>((toMiddle - diagonal) / step));
    const int last = static_cast<int>(std::min(halfCircle, toMiddle + diagonal) / step);
    for (int ring = first; ring <= last; ++ring) {
        addRing(receiver, ring * step);
    }
    const MapPoint at = _view.at(receiver);
    _svg += "<g transform=\"translate(" + pair(at) + ")\"><path" + attribute("class", "receiver") +
            " d=\"M-7,0H7M0,-7V7M4,0A4,4,0,1,1,-4,0A4,4,0,1,1,4,0\">" +
            element("title", "Receiver") + "</path></g>\n";
    _labels.avoid(Box{at.x - markerSize, at.y - markerSize, at.x + markerSize, at.y + markerSize},
                  markerCost);
}

/// A circle on earth, with its label.
void TrackMap::addRing(const GeoPoint& receiver, double miles) {
    const double around = 2 * 3.14 * miles * _view.nauticalMile();
    const int corners = static_cast<int>(std::clamp(around / ringStep, 24.0, 720.0));
    std::vector<GeoPoint> places;
    for (int i = 0; i <= corners; ++i) {
        places.push_back(placeFrom(receiver, 360.0 * i / corners, miles));
    }
    const auto lines = _view.lines(places, shortestStep);
    if (lines.empty()) {
        return;
    }
    _svg += "<path" + attribute("class", "ring") + attribute("d", pathText(lines)) + "/>\n";
    addRingLabel(lines, decimalText(miles, 0) + " NM");
}

/// Writes the label where the lines come nearest to the upper edge and leave room for it.
void TrackMap::addRingLabel(const std::vector<std::vector<MapPoint>>& lines,
                            const std::string& label) {
    const double halfWidth = characterWidth * static_cast<double>(label.size()) / 2;
    const auto boxAt = [halfWidth](const MapPoint& at) {
        return Box{at.x - halfWidth, at.y - labelHeight / 2, at.x + halfWidth,
                   at.y + labelHeight / 2};
    };
    std::optional<MapPoint> highest;
    for (const std::vector<MapPoint>& line : lines) {
        for (const MapPoint& point : line) {
            if ((!highest || point.y < highest->y) && _labels.isFree(boxAt(point))) {
                highest = point;
            }
        }
    }
    if (highest) {
        addText(*highest, attribute("class", "distance") + attribute("text-anchor", "middle"),
                label);
        _labels.avoid(boxAt(*highest), gridLabelCost);
    }
}

void TrackMap::addTrack(const TrackedAircraft& aircraft) {
    std::string path;
    for (std::vector<GeoPoint>& part : pathOf(aircraft, _history)) {
        if (part.size() == 1) {
            part.push_back(part.front()); // a dot
        }
        const auto lines = _view.lines(part, shortestStep);
        for (const std::vector<MapPoint>& line : lines) {
            for (std::size_t i = 1; i < line.size(); ++i) {
                _labels.avoid(line[i - 1], line[i], trackCost);
            }
        }
        path += pathText(lines);
    }
    _svg += "<path" +
            attribute("class", "track " + std::string(bandStyle(aircraft)) + stateOf(aircraft)) +
            attribute("d", path) + "/>\n";
}

/// " old" if the position is old.
std::string TrackMap::stateOf(const TrackedAircraft& aircraft) const {
    return isOld(aircraft.position->stampMs, _showing) ? " old" : "";
}

/// An arrow head along the heading, or a disc if the heading is not known.
void TrackMap::addMarker(const TrackedAircraft& aircraft) {
    const MapPoint at = _view.at(aircraft.position->place);
    const std::string style =
        attribute("class", "marker " + std::string(bandStyle(aircraft)) + stateOf(aircraft));
    _svg += linkAt(at, aircraft) + element("title", htmlText(hex24(aircraft.icaoAddress()) + " " +
                                                             callsignOf(aircraft).value_or("")));
    if (aircraft.hasTrack()) {
        _svg += "<path" + style + " transform=\"rotate(" + decimalText(aircraft.heading(), 0) +
                ")\" d=\"M0,-8L5.5,7L0,4L-5.5,7Z\"/>";
    } else {
        _svg += "<circle" + style + " r=\"4.5\"/>";
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
    const std::string style =
        (!emergencyOf(aircraft).empty() ? "name alarming" : "name") + stateOf(aircraft);
    _svg += linkAt(at, aircraft);
    addText({place->anchor.x - at.x, place->anchor.y - at.y},
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
