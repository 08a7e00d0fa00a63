#pragma once

#include "apps/tracking/position_check.h"
#include "apps/tracking/tracked_aircraft.h"

#include <ondrel/adsb_target.h>
#include <ondrel/adsb_tracker.h>
#include <ondrel/df_messages.h>
#include <ondrel/types.h>

#include <optional>
#include <vector>

namespace tolvarin::ondrel::client {

/// A new altitude within so many seconds of the last one is believed only if it is at most so many
/// feet away from it.
struct AltitudeCheck {
    u32 seconds;
    u32 feet;
};

struct TrackingCounts {
    u64 replies;  ///< taken in
    u64 tracked;  ///< of these, the ones that updated an aircraft
    u64 aircraft; ///< in the table now
    u64 killed;   ///< aircraft removed
    PositionCounts positions;
};

/// Takes replies into a table of aircraft, counts them, and keeps the time of the recording.
class Tracking {
public:
    explicit Tracking(const std::optional<AltitudeCheck>& check,
                      double greatestKnots = PositionCheck::usualKnots);

    /// Sets the time of the run.
    void moveTo(u64 timeMs) { _now = timeMs; }

    /// The time of the run.
    u64 now() const { return _now; }

    /// Takes the message of a reply in; null for a refused one. Gives the aircraft that it updated,
    /// valid until the next call, or null if the tracker did not believe the reply.
    const ADSBTarget* take(const DFMessage* message);

    /// What became of the position that the last reply gave; nothing if it gave none.
    std::optional<PositionCheck::Verdict> verdict() const { return _verdict; }

    /// The last position of an aircraft that was accepted.
    std::optional<Position> positionOf(const ADSBTarget& aircraft) const {
        return _positions.positionOf(aircraft.trackId());
    }

    /// Removes the aircraft that were last heard so long ago or longer, and gives them.
    std::vector<TrackedAircraft> killSilentFor(u64 milliseconds);

    /// Copies of all aircraft in the order of their addresses.
    std::vector<TrackedAircraft> aircraft() const { return withPositions(_tracker.allTargets()); }

    TrackingCounts counts() const;

private:
    void checkPosition(const ADSBTarget& aircraft, const DFMessage& message);
    std::vector<TrackedAircraft> withPositions(std::vector<ADSBTarget> targets) const;

    ADSBTracker _tracker;
    PositionCheck _positions;
    std::optional<PositionCheck::Verdict> _verdict;
    u64 _now = 0;
    u64 _replies = 0;
    u64 _tracked = 0;
    u64 _killed = 0;
};

} // namespace tolvarin::ondrel::client
