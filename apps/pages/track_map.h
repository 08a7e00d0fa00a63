#pragma once

#include "apps/pages/label_layout.h"
#include "apps/pages/map_view.h"
#include "apps/tracking/track_history.h"

#include <ondrel/adsb_target.h>

#include <string>
#include <string_view>
#include <vector>

namespace tolvarin::ondrel::client {

/// Aircraft up to some altitude, which have a colour of their own.
struct AltitudeBand {
    i32 below; ///< feet
    std::string_view style;
    std::string_view label;
};

/// From the lowest to the highest, and that of aircraft without an altitude last.
const std::vector<AltitudeBand>& altitudeBands();

/// Draws where aircraft have been and are, as an SVG picture for a page: graticule and scale, the
/// track of each aircraft, a marker that points along its heading, and its callsign or else its
/// address, which lead to its page. Aircraft without a place on earth are left out.
class TrackMap {
public:
    /// What is given must outlive the map, and at least one of the aircraft have a place.
    TrackMap(const std::vector<ADSBTarget>& aircraft, const TrackHistory& history, double width,
             double greatestHeight);

    /// The picture, with classes for the style sheet; `style` is that of the whole. To be called
    /// once.
    std::string svg(std::string_view style);

private:
    void addGraticule();
    void addDegrees(const MapPoint& at, const std::string& label);
    void addScale();
    void addTrack(const ADSBTarget& aircraft);
    void addMarker(const ADSBTarget& aircraft);
    void addLabel(const ADSBTarget& aircraft);
    void addLine(const MapPoint& from, const MapPoint& to, std::string_view style);
    void addText(const MapPoint& at, std::string_view attributes, std::string_view text);

    std::vector<const ADSBTarget*> _aircraft; ///< those with a place
    const TrackHistory& _history;
    MapView _view;
    LabelLayout _labels;
    std::string _svg;
};

} // namespace tolvarin::ondrel::client
