#pragma once

#include "apps/display/showing.h"
#include "apps/tracking/position_check.h"
#include "apps/tracking/track_history.h"
#include "apps/tracking/tracked_aircraft.h"

#include <ondrel/adsb_target.h>
#include <ondrel/df_messages.h>

#include <optional>
#include <vector>

namespace tolvarin::ondrel::client {

/// Shows tracked aircraft as long as a run with live sources lasts. A new live view is one class of
/// this kind.
class LiveView {
public:
    LiveView() = default;
    LiveView(const LiveView&) = delete;
    LiveView& operator=(const LiveView&) = delete;
    virtual ~LiveView() = default;

    /// Shows all aircraft in this order, about once a second and at the end of the run. `history`
    /// has their paths.
    virtual void show(const std::vector<TrackedAircraft>& aircraft, const Showing& showing,
                      const TrackHistory& history) = 0;

    /// Takes a message that updated an aircraft. `position` is the one that it gave, if that was
    /// accepted.
    virtual void note(const DFMessage& /*message*/, const ADSBTarget& /*aircraft*/,
                      const std::optional<Position>& /*position*/) {}

    /// Whether show() uses the paths; they are kept for it.
    virtual bool showsPaths() const { return true; }

    /// Whether show() wants all aircraft, in any order, with those of too few messages.
    virtual bool showsHidden() const { return false; }

    /// Takes what the user does, about ten times a second. False if the user ends the run.
    virtual bool poll() { return true; }
};

} // namespace tolvarin::ondrel::client
