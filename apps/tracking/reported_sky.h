#pragma once

#include "apps/common/newest_time.h"
#include "apps/tracking/tracked_aircraft.h"

#include <ondrel/types.h>

#include <cstddef>
#include <map>
#include <optional>
#include <vector>

namespace tolvarin::ondrel::client {

struct ReportCounts {
    u64 taken = 0;
    u64 known = 0;  ///< of these and of newer ones there was a report before
    u64 silent = 0; ///< of aircraft that had left
    u64 ahead = 0;  ///< of the clock
    u64 noRoom = 0; ///< of new aircraft
    u64 left = 0;   ///< aircraft that were silent
};

/// The aircraft that other programs report, each as its newest report tells. The time is that of
/// the newest report, and goes on with the clock while none comes.
class ReportedSky {
public:
    static constexpr std::size_t mostAircraft = 65536;
    static constexpr u64 furthestAhead = 60000; ///< ms, of a report before the clock

    /// Aircraft leave that were not heard for so long.
    explicit ReportedSky(std::optional<u64> silentMs) : _silentMs(silentMs) {}

    /// Whether the report was taken. It is not if the one that is there is as new, if the aircraft
    /// was silent for too long, if there is no room for it, or if its last update is more than a
    /// minute ahead of the clock.
    bool take(TrackedAircraft aircraft, u64 clockMs);

    void passTo(u64 clockMs) { _time.passTo(clockMs); }

    /// In milliseconds since 1970; 0 before the first report.
    u64 now() const { return _time.now(); }

    /// Removes the aircraft that were not heard for so long, and gives them.
    std::vector<TrackedAircraft> removeSilent();

    /// In the order of their addresses.
    std::vector<TrackedAircraft> aircraft() const;

    std::size_t size() const { return _aircraft.size(); }
    const ReportCounts& counts() const { return _counts; }

private:
    bool isSilent(const TrackedAircraft& aircraft) const {
        return _silentMs && aircraft.lastUpdate() + *_silentMs <= now();
    }
    u64* reasonAgainst(const TrackedAircraft& aircraft, u64 clockMs);

    std::optional<u64> _silentMs;
    std::map<u32, TrackedAircraft> _aircraft; ///< by address
    NewestTime _time;
    ReportCounts _counts;
};

} // namespace tolvarin::ondrel::client
