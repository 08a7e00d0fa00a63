#pragma once

#include "apps/commands/command.h"
#include "apps/commands/reply_input.h"
#include "apps/terminal/live_screen.h"
#include "apps/tracking/geo_point.h"
#include "apps/tracking/tracking.h"

#include <ondrel/types.h>

#include <memory>
#include <optional>
#include <string>

namespace tolvarin::ondrel::client {

class Console;
class TrackRun;

/// What to track, and what to show of it.
struct TrackOptions {
    bool json = false;                     ///< instead of text
    std::string sortKey = "address";       ///< of a column
    bool descending = false;               ///< sort from the highest to the lowest
    std::optional<u64> everyMs;            ///< show all aircraft each time
    bool once = false;                     ///< show them at the end only
    u32 minMessages = 2;                   ///< show aircraft with so many; not for a report
    std::optional<u64> silentMs;           ///< remove aircraft that are silent for so long
    bool tellSilent = false;               ///< write a line about each of them
    bool keepAll = false;                  ///< also when the table is full
    std::optional<std::string> serve;      ///< an address for live pages
    bool force = false;                    ///< write pages over files of other programs
    std::optional<double> pace;            ///< replay at this multiple of the recorded speed
    std::optional<std::string> htmlFolder; ///< write pages there at the end
    std::optional<std::string> jsonFolder; ///< keep files for map pages there
    std::optional<std::string> sbsAddress; ///< serve SBS lines there
    std::optional<u32> reportAddress;      ///< show only this aircraft, with all its data
    std::optional<GeoPoint> receiver;      ///< where it stands
    std::optional<AltitudeCheck> altitudeCheck;
    double greatestKnots = PositionCheck::usualKnots;
    std::optional<std::string> start; ///< of a counter: seconds since 1970, or "mtime"
};

/// `ondrel track`: the aircraft of a recording as a table, JSON or pages.
class TrackCommand final : public Command {
public:
    explicit TrackCommand(CLI::App& program);

    int run() override;

private:
    void addOutputOptions();
    void addTrackingOptions();
    void checkLiveOptions();
    std::unique_ptr<LiveScreen> openScreen() const;
    void addViews(TrackRun& track, Console& console) const;

    ReplyInputOptions _input;
    TrackOptions _options;
};

} // namespace tolvarin::ondrel::client
