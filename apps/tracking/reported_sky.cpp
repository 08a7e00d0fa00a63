#include "apps/tracking/reported_sky.h"

#include <utility>

namespace tolvarin::ondrel::client {

namespace {

/// Several messages of an aircraft can have the same stamp.
bool isNewer(const TrackedAircraft& one, const TrackedAircraft& other) {
    return std::pair(one.lastUpdate(), one.messages()) >
           std::pair(other.lastUpdate(), other.messages());
}

} // namespace

bool ReportedSky::take(TrackedAircraft aircraft, u64 clockMs) {
    if (u64* count = reasonAgainst(aircraft, clockMs)) {
        ++*count;
        return false;
    }
    ++_counts.taken;
    _time.note(aircraft.lastUpdate(), clockMs);
    _aircraft.insert_or_assign(aircraft.icaoAddress(), std::move(aircraft));
    return true;
}

/// The count of such reports; null if nothing is against it.
u64* ReportedSky::reasonAgainst(const TrackedAircraft& aircraft, u64 clockMs) {
    if (aircraft.lastUpdate() > clockMs + furthestAhead) {
        return &_counts.ahead;
    }
    if (isSilent(aircraft)) {
        return &_counts.silent;
    }
    const auto found = _aircraft.find(aircraft.icaoAddress());
    if (found == _aircraft.end()) {
        return _aircraft.size() == mostAircraft ? &_counts.noRoom : nullptr;
    }
    return isNewer(aircraft, found->second) ? nullptr : &_counts.known;
}

std::vector<TrackedAircraft> ReportedSky::removeSilent() {
    std::vector<TrackedAircraft> removed;
    for (auto one = _aircraft.begin(); one != _aircraft.end();) {
        if (isSilent(one->second)) {
            removed.push_back(std::move(one->second));
            one = _aircraft.erase(one);
        } else {
            ++one;
        }
    }
    _counts.left += removed.size();
    return removed;
}

std::vector<TrackedAircraft> ReportedSky::aircraft() const {
    std::vector<TrackedAircraft> all;
    all.reserve(_aircraft.size());
    for (const auto& [address, aircraft] : _aircraft) {
        all.push_back(aircraft);
    }
    return all;
}

} // namespace tolvarin::ondrel::client
