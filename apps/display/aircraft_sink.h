#pragma once

#include "apps/display/showing.h"
#include "apps/tracking/tracked_aircraft.h"

#include <vector>

namespace tolvarin::ondrel::client {

/// Shows tracked aircraft during a run and at its end. A new form of output is one class of this
/// kind.
class AircraftSink {
public:
    AircraftSink() = default;
    AircraftSink(const AircraftSink&) = delete;
    AircraftSink& operator=(const AircraftSink&) = delete;
    virtual ~AircraftSink() = default;

    /// Shows all aircraft in this order.
    virtual void show(const std::vector<TrackedAircraft>& aircraft, const Showing& showing) = 0;

    /// Shows an aircraft that was removed because it was silent. It would have been part of this
    /// showing.
    virtual void showKilled(const TrackedAircraft& aircraft, const Showing& showing) = 0;
};

} // namespace tolvarin::ondrel::client
