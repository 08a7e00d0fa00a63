#pragma once

#include "apps/display/live_view.h"
#include "apps/display/showing.h"
#include "apps/tracking/geo_point.h"
#include "apps/tracking/tracked_aircraft.h"

#include <ondrel/types.h>

#include <optional>
#include <string>
#include <vector>

/// Aircraft for map pages that read aircraft.json and receiver.json, and for other programs of the
/// field. docs/outputs.md lists the keys. What is not known, and what is old, has no key.
namespace tolvarin::ondrel::client {

/// What aircraft.json holds. `messages` counts all that were tracked in this run.
std::string aircraftMapJson(const std::vector<TrackedAircraft>& aircraft, const Showing& showing,
                            u64 messages);

/// What receiver.json holds.
std::string receiverMapJson(const std::optional<GeoPoint>& receiver);

/// Keeps both files in a folder current.
class MapJsonFolder final : public LiveView {
public:
    /// Creates the folder unless it exists, and writes receiver.json and a list of no aircraft.
    /// Here and later, throws Failure if a file cannot be written.
    MapJsonFolder(std::string path, const std::optional<GeoPoint>& receiver);

    void show(const std::vector<TrackedAircraft>& aircraft, const Showing& showing,
              const TrackHistory& history) override;
    void note(const DFMessage& message, const ADSBTarget& aircraft,
              const std::optional<Position>& position) override;
    bool showsPaths() const override { return false; }

private:
    std::string _path;
    u64 _messages = 0;
};

} // namespace tolvarin::ondrel::client
