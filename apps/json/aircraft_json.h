#pragma once

#include "apps/common/file.h"
#include "apps/display/aircraft_sink.h"
#include "apps/tracking/tracked_aircraft.h"

#include <nlohmann/json.hpp>
#include <ondrel/types.h>

#include <vector>

namespace tolvarin::ondrel::client {

/// An aircraft as an object with these keys in this order; later versions add keys. Times are
/// milliseconds, null for never:
///
/// | key            | value                                                                  |
/// |----------------|------------------------------------------------------------------------|
/// | time_ms        | the newest stamp of all replies                                        |
/// | address        | six hexadecimal digits                                                 |
/// | track_number   | 1 to 4095                                                              |
/// | killed         | whether the aircraft is removed now because it was silent              |
/// | last_update_ms | when it was last heard                                                 |
/// | age_ms         | time_ms minus last_update_ms                                           |
/// | data           | an object for each datum: value, null if it was never received; valid; |
/// |                | last_update_ms; and last_change_ms where changes are kept              |
/// | statistics     | messages counted: messages, by_format ("DF-17" and the like), by_type  |
/// |                | ("ACID" and the like), each without zeros, and last_update_ms          |
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
