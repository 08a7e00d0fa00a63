#pragma once

#include "apps/commands/reply_input.h"
#include "apps/commands/run_status.h"
#include "apps/commands/track.h"
#include "apps/commands/track_output.h"
#include "apps/input/replay.h"
#include "apps/terminal/console.h"
#include "apps/terminal/live_table.h"
#include "apps/terminal/summaries.h"
#include "apps/tracking/duplicate_filter.h"
#include "apps/tracking/partitioned_tracking.h"
#include "apps/tracking/track_history.h"

#include <ondrel/types.h>

#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace tolvarin::ondrel::client {

/// Tracks the aircraft of one input and shows them.
class TrackRun {
public:
    /// All arguments must outlive the run.
    TrackRun(const TrackOptions& options, std::optional<u64> startMs, ReplyInput& input,
             TrackOutput& output, Console& console);

    /// Reads to the end of the input or until an interruption, and shows what there is then. Gives
    /// the aircraft that were tracked to the end.
    std::vector<TrackedAircraft> run();

    TrackRunCounts counts() const;

    /// For the head line of the live table.
    LiveTableState tableState() const;

    /// The state of the run for monitoring, as a JSON object.
    std::string statusJson() const;

private:
    ReplySource::Got next(Reply& reply);
    void checkStamps();
    void waitFor(u64 stampMs);
    void report(const std::string& message) { _console.write(_input.name() + ": " + message); }
    void moveTo(u64 timeMs);
    void take(const Reply& reply);
    void noteLosses();
    void noteHistory(const ADSBTarget& aircraft);
    void killSilent();
    void tellViews(const DFMessage& message, const ADSBTarget& aircraft);
    void updateOutput();
    Sky sky() const;

    const TrackOptions& _options;
    ReplyInput& _input;
    TrackOutput& _output;
    Console& _console;
    u64 _replies = 0;
    Speed _speed;
    Stamping _stamping;
    PartitionedTracking _tracking;
    TrackHistory _history;
    std::optional<Pace> _pace;
    std::optional<Periods> _checks;
    DuplicateFilter _heard;
    u64 _duplicates = 0;
    bool _saidRoom = false;
    bool _saidNoRoom = false;
};

} // namespace tolvarin::ondrel::client
