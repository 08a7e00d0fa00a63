#pragma once

#include "apps/commands/track.h"
#include "apps/common/file.h"
#include "apps/display/aircraft_sink.h"
#include "apps/display/live_view.h"
#include "apps/input/replay.h"
#include "apps/pages/page_folder.h"
#include "apps/terminal/console.h"
#include "apps/tracking/track_history.h"
#include "apps/tracking/tracked_aircraft.h"

#include <ondrel/types.h>

#include <chrono>
#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace tolvarin::ondrel::client {

/// All aircraft of a run, as they are at one time of it.
struct Sky {
    std::vector<TrackedAircraft> aircraft;
    u64 timeMs;
    const TrackHistory& history;
    std::size_t lostFeeds = 0; ///< that are not connected
};

/// Shows the aircraft of a run, whichever way they became known: as text or JSON, on live views and
/// as pages in a folder. It chooses and sorts them as the options say, and tells the run when it
/// wants to see the sky.
class TrackOutput {
public:
    /// `name` is that of the input; `hasFeeds`: pages in a folder are kept current. Options, output
    /// and console must outlive the object.
    TrackOutput(const TrackOptions& options, std::string name, bool hasFeeds, Output& output,
                Console& console);

    /// Keeps the view current from now on.
    void add(std::unique_ptr<LiveView> view);
    const std::vector<std::unique_ptr<LiveView>>& views() const { return _views; }

    /// Whether something shows the paths of aircraft.
    bool keepsHistory() const { return _keepsHistory; }

    /// Whether views and pages want to be kept current, once a second; then call keepCurrent().
    /// Call it at least ten times a second: the user may do something.
    bool isDue() { return _isLive && Clock::now() >= _nextPoll && poll(); }
    void keepCurrent(Sky sky);

    /// The user ended the run.
    bool ended() const { return _ended; }

    /// Whether an interval (--every) ends before this time; then call showInterval().
    bool intervalEnds(u64 timeMs) { return _intervals && _intervals->ended(timeMs); }
    void showInterval(Sky sky);

    /// An aircraft was removed because it was silent.
    void showKilled(const TrackedAircraft& aircraft, u64 timeMs);

    /// Shows the end of the run, and removes the views. Gives the aircraft that were shown.
    std::vector<TrackedAircraft> end(Sky sky);

    /// Aircraft that were not shown at the end.
    u64 hidden() const { return _hidden; }

private:
    using Clock = std::chrono::steady_clock;

    bool poll();
    bool isShown(const TrackedAircraft& aircraft) const;
    Showing showingOf(u64 timeMs, std::size_t lostFeeds = 0) const {
        return {timeMs, _showings + 1, _options.receiver, lostFeeds};
    }
    Showing showingOf(const Sky& sky) const { return showingOf(sky.timeMs, sky.lostFeeds); }
    void arrange(Sky& sky) const;
    void arrangeAndShow(Sky& sky) const;
    void showViews(const Sky& sky, bool hidden) const;
    void writeLivePages(const Sky& sky);
    void writePages(const Sky& sky) const;

    const TrackOptions& _options;
    std::string _name;
    Console& _console;
    std::unique_ptr<AircraftSink> _sink;
    std::vector<std::unique_ptr<LiveView>> _views;
    std::optional<PageFolder> _pages;
    std::optional<Periods> _intervals;
    Clock::time_point _nextPoll;
    Clock::time_point _nextViews;
    Clock::time_point _nextPages;
    bool _isLive;          ///< something is to be done while the run lasts
    bool _writesLivePages; ///< also into the folder
    bool _keepsHistory = false;
    bool _ended = false;
    u64 _showings = 0; ///< of all aircraft, done
    u64 _hidden = 0;
};

} // namespace tolvarin::ondrel::client
