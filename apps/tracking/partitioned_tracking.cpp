#include "apps/tracking/partitioned_tracking.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace tolvarin::ondrel::client {

namespace {

constexpr u64 mostOutOfOrder = 1000; // ms

bool isBefore(const TrackedAircraft& one, const TrackedAircraft& other) {
    return one.icaoAddress() < other.icaoAddress();
}

} // namespace

PartitionedTracking::PartitionedTracking(const Partitions& partitions,
                                         const std::optional<AltitudeCheck>& check,
                                         double greatestKnots)
    : _byNumber(partitions.count) {
    _parts.reserve(partitions.numbers.size()); // so that pointers stay valid
    for (const unsigned number : partitions.numbers) {
        _byNumber.at(number) = &_parts.emplace_back(check, greatestKnots);
    }
    _last = &_parts.front();
}

void PartitionedTracking::keepAll() {
    for (Tracking& part : _parts) {
        part.keepAll();
    }
}

void PartitionedTracking::moveTo(u64 timeMs) {
    for (Tracking& part : _parts) {
        part.moveTo(timeMs);
    }
}

/// Null if it is not tracked.
Tracking* PartitionedTracking::partOf(u32 address) const {
    return _byNumber[partitionOf(address, static_cast<unsigned>(_byNumber.size()))];
}

const ADSBTarget* PartitionedTracking::take(const DFMessage* message) {
    Tracking* part = message != nullptr ? partOf(message->icaoAddress()) : _last;
    if (part == nullptr) {
        ++_otherParts;
        return nullptr;
    }
    _last = part;
    if (!_leavesOutLate || message == nullptr) {
        return part->take(message);
    }
    const auto newest = _newest.find(message->icaoAddress());
    if (newest != _newest.end() && message->timeStamp() + mostOutOfOrder < newest->second) {
        ++_late;
        return nullptr;
    }
    const ADSBTarget* aircraft = part->take(message);
    if (aircraft != nullptr) {
        u64& stamp = newest != _newest.end() ? newest->second : _newest[aircraft->icaoAddr()];
        stamp = std::max(stamp, message->timeStamp());
    }
    for (const TrackedAircraft& one : part->madeRoom()) {
        _newest.erase(one.icaoAddress());
    }
    return aircraft;
}

std::optional<Position> PartitionedTracking::positionOf(const ADSBTarget& aircraft) const {
    return partOf(aircraft.icaoAddr())->positionOf(aircraft);
}

const MessageNotes& PartitionedTracking::notesOf(const ADSBTarget& aircraft) const {
    return partOf(aircraft.icaoAddr())->notesOf(aircraft);
}

std::vector<TrackedAircraft> PartitionedTracking::killSilentFor(u64 milliseconds) {
    std::vector<TrackedAircraft> killed;
    for (Tracking& part : _parts) {
        std::vector<TrackedAircraft> some = part.killSilentFor(milliseconds);
        std::move(some.begin(), some.end(), std::back_inserter(killed));
    }
    for (const TrackedAircraft& one : killed) {
        _newest.erase(one.icaoAddress());
    }
    return killed;
}

std::vector<TrackedAircraft> PartitionedTracking::aircraft() const {
    std::vector<TrackedAircraft> all;
    for (const Tracking& part : _parts) {
        std::vector<TrackedAircraft> some = part.aircraft();
        const auto middle = static_cast<std::ptrdiff_t>(all.size());
        std::move(some.begin(), some.end(), std::back_inserter(all));
        std::inplace_merge(all.begin(), all.begin() + middle, all.end(), isBefore);
    }
    return all;
}

TrackingCounts PartitionedTracking::counts() const {
    TrackingCounts all{};
    for (const Tracking& part : _parts) {
        const TrackingCounts counts = part.counts();
        all.replies += counts.replies;
        all.tracked += counts.tracked;
        all.aircraft += counts.aircraft;
        all.killed += counts.killed;
        all.madeRoom += counts.madeRoom;
        all.notTaken += counts.notTaken;
        all.positions.checked += counts.positions.checked;
        all.positions.refused += counts.positions.refused;
        all.positions.unconfirmed += counts.positions.unconfirmed;
    }
    all.replies += _late + _otherParts;
    return all;
}

} // namespace tolvarin::ondrel::client
