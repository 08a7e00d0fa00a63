#pragma once

#include "apps/commands/run_status.h"
#include "apps/commands/track.h"
#include "apps/commands/track_output.h"
#include "apps/input/replay.h"
#include "apps/messaging/aircraft_reports.h"
#include "apps/terminal/console.h"
#include "apps/terminal/live_table.h"
#include "apps/terminal/summaries.h"
#include "apps/tracking/reported_sky.h"
#include "apps/tracking/track_history.h"

#include <ondrel/types.h>

#include <optional>
#include <string>
#include <vector>

namespace tolvarin::ondrel::client {

/// Shows the aircraft that workers report to a message server. Nothing is tracked here.
class ViewRun {
public:
    /// All arguments must outlive the run. Throws Failure if the options of the server are of no
    /// use.
    ViewRun(const TrackOptions& options, const MessageServer& server, TrackOutput& output,
            Console& console);

    /// Lasts until an interruption or until the user ends it. Gives the aircraft that were shown at
    /// the end.
    std::vector<TrackedAircraft> run();

    ViewRunCounts counts() const;

    /// For the head line of the live table.
    LiveTableState tableState() const;

    /// The state of the run for monitoring, as a JSON object.
    std::string statusJson() const;

private:
    void report(const std::string& message) { _console.write(_name + ": " + message); }
    void complain(const std::string& place, const std::string& reason);
    void take(const TrackedAircraft& aircraft);
    void sayOnce();
    void passTime();
    void updateOutput();
    Sky sky() const;

    std::string _name;
    TrackOutput& _output;
    Console& _console;
    ReportedSky _sky;
    TrackHistory _history;
    std::optional<Periods> _checks; ///< for silent aircraft
    Speed _speed;
    u64 _unreadable = 0;
    bool _saidAhead = false;
    bool _saidNoRoom = false;
    AircraftReports _reports;
};

} // namespace tolvarin::ondrel::client
