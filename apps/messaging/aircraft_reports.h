#pragma once

#include "apps/input/reply_source.h"
#include "apps/messaging/message_server.h"
#include "apps/tracking/tracked_aircraft.h"

#include <memory>
#include <optional>

namespace tolvarin::ondrel::client {

/// The aircraft that workers report to a message server. If the server has a store (JetStream), the
/// last report of each comes first. If it has none, an aircraft comes when it is reported next.
class AircraftReports {
public:
    /// Does not wait until the server answers. Throws Failure if the options are of no use.
    AircraftReports(const MessageServer& server, const SourceEvents& events);
    ~AircraftReports();

    /// The next report; the same one may come again. Nothing if none comes within a tenth of a
    /// second, or after an interruption.
    std::optional<TrackedAircraft> next();

    SourceState state() const;

private:
    class Reading;

    std::unique_ptr<Reading> _reading;
};

} // namespace tolvarin::ondrel::client
