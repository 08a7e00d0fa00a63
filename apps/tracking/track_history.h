#pragma once

#include "apps/tracking/geo_point.h"
#include "apps/tracking/position_check.h"

#include <ondrel/types.h>

#include <cstddef>
#include <unordered_map>
#include <vector>

namespace tolvarin::ondrel::client {

/// Where an aircraft was, and when.
struct PastPosition {
    GeoPoint place;
    u64 stampMs;
    bool afterGap; ///< no position came for longestGapMs before it, or the stamps went back
};

/// An altitude that an aircraft told, and when.
struct PastAltitude {
    u64 stampMs;
    i32 feet;
    bool afterGap; ///< nothing was heard for longestGapMs before it, or the stamps went back
};

/// The past positions and altitudes of each aircraft, in the order in which they were received, so
/// their stamps may go back.
///
/// Each has at most 256 points for an aircraft. When there is no room for a new one, those go that
/// change the line least, but never the first and the last one. What is long ago becomes coarser
/// than the last ten minutes. So an aircraft takes at most 12.5 kB, and a full table of 4095
/// aircraft 52 MB, however long the run.
class TrackHistory {
public:
    static constexpr std::size_t mostPoints = 256;
    static constexpr u64 longestGapMs = 300000;

    /// Adds a position that differs from the last one by 55 m or more.
    void notePosition(u32 address, const Position& position);

    /// Adds an altitude that differs from the last one by 100 feet or more, or comes 30 s later.
    void noteAltitude(u32 address, i32 feet, u64 stampMs);

    void forgetPath(u32 address) { _aircraft[address].path.clear(); }
    void forget(u32 address) { _aircraft.erase(address); }

    /// From the first to the last; empty for an aircraft that is not known.
    const std::vector<PastPosition>& pathOf(u32 address) const;
    const std::vector<PastAltitude>& altitudesOf(u32 address) const;

private:
    struct Record {
        std::vector<PastPosition> path;
        u64 positionMs = 0;     ///< when the last position came, noted or not
        bool gapInPath = false; ///< since the last point of the path
        std::vector<PastAltitude> altitudes;
    };

    const Record& recordOf(u32 address) const;

    std::unordered_map<u32, Record> _aircraft; ///< by address
};

} // namespace tolvarin::ondrel::client
