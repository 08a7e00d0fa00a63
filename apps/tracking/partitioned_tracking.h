#pragma once

#include "apps/common/partition.h"
#include "apps/tracking/tracking.h"

#include <ondrel/types.h>

#include <optional>
#include <unordered_map>
#include <vector>

namespace tolvarin::ondrel::client {

/// A table of aircraft for each part (partitionOf() of their addresses), so that there is room for
/// more than 4095. All functions do what those of Tracking do.
class PartitionedTracking {
public:
    PartitionedTracking(const Partitions& partitions, const std::optional<AltitudeCheck>& check,
                        double greatestKnots = PositionCheck::usualKnots);

    void keepAll();

    /// Leaves a reply out if another one of its aircraft was more than a second newer. Those of
    /// several sites may come late, and an aircraft must not go back in time.
    void leaveOutLate() { _leavesOutLate = true; }

    void moveTo(u64 timeMs);
    u64 now() const { return _parts.front().now(); }

    /// Leaves out an aircraft of another part too.
    const ADSBTarget* take(const DFMessage* message);

    std::optional<PositionCheck::Verdict> verdict() const { return _last->verdict(); }
    std::optional<Position> positionOf(const ADSBTarget& aircraft) const;
    const MessageNotes& notesOf(const ADSBTarget& aircraft) const;
    void noteSites(const ADSBTarget& aircraft, unsigned sites) {
        partOf(aircraft.icaoAddr())->noteSites(aircraft, sites);
    }
    const std::vector<TrackedAircraft>& madeRoom() const { return _last->madeRoom(); }
    u64 notTaken() const { return _last->notTaken(); } ///< of the part of the last reply
    std::vector<TrackedAircraft> killSilentFor(u64 milliseconds);
    std::vector<TrackedAircraft> aircraft() const;
    TrackingCounts counts() const;

    u64 late() const { return _late; }               ///< replies left out since they came late
    u64 ofOtherParts() const { return _otherParts; } ///< replies left out

private:
    Tracking* partOf(u32 address) const;

    std::vector<Tracking> _parts;
    std::vector<Tracking*> _byNumber; ///< null for parts that are not tracked
    Tracking* _last;                  ///< that of the last reply
    bool _leavesOutLate = false;
    std::unordered_map<u32, u64> _newest; ///< stamp of each aircraft, if late ones are left out
    u64 _late = 0;
    u64 _otherParts = 0;
};

} // namespace tolvarin::ondrel::client
