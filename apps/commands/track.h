#pragma once

#include "apps/commands/command.h"
#include "apps/commands/reply_input.h"
#include "apps/terminal/live_screen.h"
#include "apps/terminal/live_table.h"
#include "apps/tracking/geo_point.h"
#include "apps/tracking/partitioned_tracking.h"

#include <ondrel/types.h>

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace tolvarin::ondrel::client {

class Console;
class Output;
class TrackOutput;

/// What to track, and what to show of it.
struct TrackOptions {
    Partitions partitions;                 ///< that are tracked
    bool isMerged = false;                 ///< the replies of several sites, which may come late
    bool isView = false;                   ///< show what workers report; track nothing
    std::string sortKey = "address";       ///< of a column
    std::optional<u64> everyMs;            ///< show all aircraft each time
    std::optional<u64> silentMs;           ///< remove aircraft that are silent for so long
    std::optional<double> pace;            ///< replay at this multiple of the recorded speed
    std::optional<std::string> htmlFolder; ///< write pages there
    std::optional<std::string> serve;      ///< an address for live pages
    std::string dataOrigin;                ///< whose pages may read the data of live pages
    std::optional<std::string> jsonFolder; ///< keep files for map pages there
    std::optional<std::string> sbsAddress; ///< serve SBS lines there
    std::optional<std::string> start;      ///< of a counter: seconds since 1970, or "mtime"
    std::optional<GeoPoint> receiver;      ///< where it stands
    double greatestKnots = PositionCheck::usualKnots;
    std::optional<AltitudeCheck> altitudeCheck;
    std::optional<u32> reportAddress; ///< show only this aircraft, with all its data
    u32 minMessages = 2;              ///< show aircraft with so many; not for a report
    bool json = false;                ///< instead of text
    bool descending = false;          ///< sort from the highest to the lowest
    bool once = false;                ///< show all aircraft at the end only
    bool tellSilent = false;          ///< write a line about each one that is removed
    bool keepAll = false;             ///< also when the table is full
    bool force = false;               ///< write pages over files of other programs
};

/// `ondrel track`: the aircraft of a recording as a table, JSON or pages.
class TrackCommand final : public Command {
public:
    explicit TrackCommand(CLI::App& program);

    int run() override;

private:
    /// What the views tell of a run.
    struct RunState {
        std::function<std::string()> status; ///< a JSON object
        std::function<LiveTableState()> table;
        std::string what; ///< comes in the run
    };

    void addOutputOptions();
    void addTrackingOptions();
    void checkOtherOptions();
    void checkViewOptions();
    void setLiveOptions();
    int track(Output& output, Console& console);
    int view(Output& output, Console& console);
    std::unique_ptr<LiveScreen> openScreen();
    void addViews(TrackOutput& display, const std::string& input, Console& console,
                  std::unique_ptr<LiveScreen> screen, const RunState& state) const;
    void checkReport(const std::vector<TrackedAircraft>& aircraft) const;
    MessageServer server() const;

    ReplyInputOptions _input;
    TrackOptions _options;
};

} // namespace tolvarin::ondrel::client
