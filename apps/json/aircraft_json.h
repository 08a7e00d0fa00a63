#pragma once

#include "apps/common/file.h"
#include "apps/display/aircraft_sink.h"
#include "apps/tracking/tracked_aircraft.h"

#include <nlohmann/json.hpp>
#include <ondrel/types.h>

#include <vector>

namespace tolvarin::ondrel::client {

/// An aircraft as an object, whose keys docs/json.md lists. `killed`: it was removed in the
/// interval that this showing ends.
nlohmann::ordered_json aircraftJson(const TrackedAircraft& aircraft, const Showing& showing,
                                    bool killed);

/// Writes each aircraft as a line with such an object.
class AircraftJsonLines final : public AircraftSink {
public:
    /// The output must outlive the sink.
    explicit AircraftJsonLines(Output& output) : _output(output) {}

    void show(const std::vector<TrackedAircraft>& aircraft, const Showing& showing) override;
    void showKilled(const TrackedAircraft& aircraft, const Showing& showing) override;

private:
    Output& _output;
};

} // namespace tolvarin::ondrel::client
