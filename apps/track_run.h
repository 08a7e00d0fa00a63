#pragma once

#include "apps/common/file.h"
#include "apps/console.h"
#include "apps/pages/page_folder.h"
#include "apps/recording_source.h"
#include "apps/replay.h"
#include "apps/track_history.h"
#include "apps/tracking.h"

#include <ondrel/adsb_target.h>
#include <ondrel/types.h>

#include <optional>
#include <string>
#include <vector>

namespace tolvarin::ondrel::client {

/// What to track, and what to show of it.
struct TrackOptions {
    bool json = false;               ///< else as text
    std::string sortKey = "address"; ///< of a column
    bool descending = false;
    std::optional<u64> everyMs;  ///< show all aircraft each time
    std::optional<u64> silentMs; ///< kill aircraft that are silent for so long
    std::optional<double> pace;  ///< replay at this multiple of the recorded speed
    std::optional<AltitudeCheck> altitudeCheck;
    std::optional<std::string> htmlFolder; ///< write pages there at the end
    std::optional<u32> reportAddress;      ///< show all of this aircraft alone, as text
};

/// Tracks the aircraft of one recording and shows them.
class TrackRun {
public:
    /// All of these must outlive the run.
    TrackRun(const TrackOptions& options, RecordingSource& source, Output& output,
             Console& console);

    /// Reads to the end of the recording, or until an interruption, and shows what there is then.
    void run();

    /// Whether the aircraft that was asked for, if any, was tracked to the end.
    bool found() const { return !_options.reportAddress || _found; }

    /// The counts as a table in several lines, the last one without its end.
    std::string summary() const;

private:
    std::optional<Reply> next();
    void checkStamps();
    void moveTo(u64 stampMs);
    void take(const DecodedReply& decoded);
    void killSilent();
    std::vector<ADSBTarget> aircraft() const;
    void writePages(const std::vector<ADSBTarget>& all) const;
    void showAll(const std::vector<ADSBTarget>& all);
    std::string report(const std::vector<ADSBTarget>& all);
    void showKilled(const ADSBTarget& aircraft);

    const TrackOptions& _options;
    RecordingSource& _source;
    Output& _output;
    Console& _console;
    Stamping _stamping;
    Tracking _tracking;
    TrackHistory _history; ///< kept for pages only
    std::optional<PageFolder> _pages;
    std::optional<Pace> _pace;
    std::optional<Periods> _shows;
    std::optional<Periods> _checks;
    bool _found = false; ///< the aircraft that was asked for, when all were last shown
};

} // namespace tolvarin::ondrel::client
