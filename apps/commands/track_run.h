#pragma once

#include "apps/commands/reply_input.h"
#include "apps/commands/track.h"
#include "apps/common/file.h"
#include "apps/display/aircraft_sink.h"
#include "apps/display/live_view.h"
#include "apps/input/replay.h"
#include "apps/pages/page_folder.h"
#include "apps/terminal/console.h"
#include "apps/terminal/summaries.h"
#include "apps/tracking/duplicate_filter.h"
#include "apps/tracking/track_history.h"
#include "apps/tracking/tracking.h"

#include <ondrel/types.h>

#include <chrono>
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
             Output& output, Console& console);

    /// Keeps the view current from now on.
    void add(std::unique_ptr<LiveView> view);

    /// Reads to the end of the input or until an interruption, and shows what there is then. Gives
    /// the aircraft that were tracked to the end.
    std::vector<TrackedAircraft> run();

    TrackRunCounts counts() const;

    /// In the last second.
    double repliesPerSecond() const { return _repliesPerSecond; }

    /// Feeds that are not connected.
    std::size_t lostSources() const;

    /// The state of the run for monitoring, as a JSON object.
    std::string statusJson() const;

private:
    using Clock = std::chrono::steady_clock;

    ReplySource::Got next(Reply& reply);
    void checkStamps();
    void waitFor(u64 stampMs);
    void report(const std::string& message) { _console.write(_input.name() + ": " + message); }
    void moveTo(u64 timeMs);
    void take(const Reply& reply);
    void noteLosses();
    void noteHistory(const ADSBTarget& aircraft);
    void writeLivePages(const std::vector<TrackedAircraft>& aircraft);
    void killSilent();
    void tellViews(const DFMessage& message, const ADSBTarget& aircraft);
    void updateViews();
    void showViews(const std::vector<TrackedAircraft>& aircraft) const;

    bool isShown(const TrackedAircraft& aircraft) const;
    Showing showing() const { return {_tracking.now(), _showings + 1, _options.receiver}; }
    std::vector<TrackedAircraft> sortedAircraft() const;
    void writePages(const std::vector<TrackedAircraft>& all) const;

    const TrackOptions& _options;
    ReplyInput& _input;
    Console& _console;
    std::unique_ptr<AircraftSink> _sink;
    std::vector<std::unique_ptr<LiveView>> _views;
    Clock::time_point _nextPoll;
    Clock::time_point _nextViews;
    Clock::time_point _nextPages;
    u64 _repliesAtViews = 0;
    double _repliesPerSecond = 0;
    u64 _replies = 0;
    bool _isLive = false;          ///< something is to be done while replies come
    bool _writesLivePages = false; ///< also into the folder
    bool _ended = false;           ///< by the user
    Stamping _stamping;
    Tracking _tracking;
    TrackHistory _history;
    bool _keepsHistory = false; ///< something shows the paths of aircraft
    std::optional<PageFolder> _pages;
    std::optional<Pace> _pace;
    std::optional<Periods> _shows;
    std::optional<Periods> _checks;
    DuplicateFilter _heard;
    u64 _duplicates = 0;
    u64 _showings = 0; ///< of all aircraft, done
    u64 _hidden = 0;   ///< aircraft of the table that are not shown at the end
    bool _saidRoom = false;
    bool _saidNoRoom = false;
};

} // namespace tolvarin::ondrel::client
