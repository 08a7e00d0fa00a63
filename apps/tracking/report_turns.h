#pragma once

#include "apps/tracking/tracked_aircraft.h"

#include <ondrel/types.h>

#include <array>
#include <unordered_map>
#include <utility>
#include <vector>

namespace tolvarin::ondrel::client {

/// Chooses which aircraft are reported to other programs. Each has its turn, one of five, so that
/// they do not all leave at once, and is reported in it if it was updated since.
class ReportTurns {
public:
    static constexpr unsigned count = 5;

    /// Those of the next turn. `all` are the aircraft of now.
    std::vector<TrackedAircraft> next(const std::vector<TrackedAircraft>& all);

    /// Reports each again in its next turn.
    void forget() { _reported = {}; }

private:
    using State = std::pair<u64, u32>; ///< last update and number of messages

    unsigned _turn = 0;
    std::array<std::unordered_map<u32, State>, count> _reported; ///< by turn and address
};

} // namespace tolvarin::ondrel::client
