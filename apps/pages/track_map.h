#pragma once

#include "apps/display/showing.h"
#include "apps/pages/label_layout.h"
#include "apps/pages/map_view.h"
#include "apps/tracking/track_history.h"
#include "apps/tracking/tracked_aircraft.h"

#include <string>
#include <string_view>
#include <vector>

namespace tolvarin::ondrel::client {

/// A range of altitudes with a colour.
struct AltitudeBand {
    i32 below;              ///< feet; the range ends below this altitude
    std::string_view style; ///< class for the style sheet
    std::string_view label; ///< for the legend
};

/// From the lowest to the highest; the last one is for aircraft without an altitude.
const std::vector<AltitudeBand>& altitudeBands();

/// Draws the tracks of aircraft as an SVG picture for a page: coasts, graticule and scale, the
/// receiver and circles of distance around it, then for each aircraft its track, a marker that
/// points along its heading, and a label with its callsign or else its address. Marker and label
/// link to its page; they have the class `old` if the position is old. A label that finds no place
/// stays away. Aircraft without a position are left out.
///
/// The picture shows all tracks. It shows the receiver too, unless the aircraft would be drawn at
/// less than half the size for that.
class TrackMap {
public:
    /// The arguments must outlive the map. At least one aircraft must have a position.
    TrackMap(const std::vector<TrackedAircraft>& aircraft, const TrackHistory& history,
             const Showing& showing, double width, double greatestHeight);

    /// The picture; `style` is its class for the style sheet, and `name` tells in plain text what
    /// it shows. Call it once.
    std::string svg(std::string_view style, std::string_view name);

private:
    void addCoasts();
    void addGraticule();
    void addReceiver(const GeoPoint& receiver);
    void addRing(const GeoPoint& receiver, double miles);
    void addRingLabel(const std::vector<std::vector<MapPoint>>& lines, const std::string& label);
    void addDegrees(const MapPoint& at, const std::string& label);
    void addScale();
    void addTrack(const TrackedAircraft& aircraft);
    void addMarker(const TrackedAircraft& aircraft);
    void addLabel(const TrackedAircraft& aircraft);
    std::string stateOf(const TrackedAircraft& aircraft) const;
    void addLine(const MapPoint& from, const MapPoint& to, std::string_view style);
    void addText(const MapPoint& at, std::string_view attributes, std::string_view text);

    std::vector<const TrackedAircraft*> _aircraft; ///< those with a position
    const TrackHistory& _history;
    const Showing& _showing;
    MapView _view;
    LabelLayout _labels;
    std::string _svg;
};

} // namespace tolvarin::ondrel::client
