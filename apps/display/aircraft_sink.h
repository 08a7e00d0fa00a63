#pragma once

#include "apps/tracking/tracked_aircraft.h"

#include <ondrel/types.h>

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

    /// Shows all aircraft in this order. `newestMs` is the newest stamp of all replies.
    virtual void show(const std::vector<TrackedAircraft>& aircraft, u64 newestMs) = 0;

    /// Shows an aircraft that was removed because it was silent.
    virtual void showKilled(const TrackedAircraft& aircraft, u64 newestMs) = 0;
};

} // namespace tolvarin::ondrel::client
