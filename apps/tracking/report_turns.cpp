#include "apps/tracking/report_turns.h"

#include "apps/common/partition.h"

namespace tolvarin::ondrel::client {

std::vector<TrackedAircraft> ReportTurns::next(const std::vector<TrackedAircraft>& all) {
    std::vector<TrackedAircraft> chosen;
    std::unordered_map<u32, State> states; // without those that left
    const auto& before = _reported.at(_turn);
    for (const TrackedAircraft& aircraft : all) {
        const u32 address = aircraft.icaoAddress();
        if (partitionOf(address, count) != _turn) {
            continue;
        }
        const State state(aircraft.lastUpdate(), aircraft.messages());
        states.emplace(address, state);
        const auto found = before.find(address);
        if (found == before.end() || found->second != state) {
            chosen.push_back(aircraft);
        }
    }
    _reported.at(_turn) = std::move(states);
    _turn = (_turn + 1) % count;
    return chosen;
}

} // namespace tolvarin::ondrel::client
