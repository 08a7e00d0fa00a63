// The table of aircraft: track numbers, lists and removal. reply_processing.cpp and
// squitter_processing.cpp have what a message does to a target, report_transfer.cpp has what a
// report does.

#include <ondrel/adsb_tracker.h>

#include <ondrel/log.h>

#include "target_table.h"

#include <limits>
#include <utility>

namespace tolvarin::ondrel {

namespace {

constexpr const char* moduleName = "ADSBTracker";

/// Copies of the targets for which the condition holds. A null pointer, as in a tracker that was
/// moved from, means an empty table.
template <class Condition>
std::vector<ADSBTarget> copiesWhere(const std::unique_ptr<TargetTable>& targets,
                                    Condition condition) {
    return targets ? targets->copiesWhere(condition) : std::vector<ADSBTarget>();
}

} // namespace

ADSBTracker::ADSBTracker() : _nextTrackId(firstTrackId) {
    Log::log(Log::Info, moduleName, "Initialized.");
}

ADSBTracker::ADSBTracker(const ADSBTracker& other)
    : _decoder(other._decoder),
      _targets(other._targets ? std::make_unique<TargetTable>(*other._targets) : nullptr),
      _nextTrackId(other._nextTrackId), _altitudeBaroChecking(other._altitudeBaroChecking),
      _altitudeBaroCheckingSeconds(other._altitudeBaroCheckingSeconds),
      _altitudeBaroCheckingLimit(other._altitudeBaroCheckingLimit) {}

ADSBTracker& ADSBTracker::operator=(const ADSBTracker& other) {
    return *this = ADSBTracker(other);
}

ADSBTracker::ADSBTracker(ADSBTracker&&) noexcept = default;
ADSBTracker& ADSBTracker::operator=(ADSBTracker&&) noexcept = default;
ADSBTracker::~ADSBTracker() = default;

void ADSBTracker::setAltituteBaroChecking(bool enabled, u32 seconds, u32 limit) {
    _altitudeBaroChecking = enabled;
    _altitudeBaroCheckingSeconds = seconds;
    _altitudeBaroCheckingLimit = limit;
}

std::vector<ADSBTarget> ADSBTracker::allTargets() const {
    return copiesWhere(_targets, [](const ADSBTarget&) { return true; });
}

std::vector<ADSBTarget> ADSBTracker::allTargetsSince(u64 from) {
    return allTargetsSince(from, std::numeric_limits<u64>::max());
}

// `from` is excluded and `to` included. So a client that passes the `to` of its last call as `from`
// gets each update once.
std::vector<ADSBTarget> ADSBTracker::allTargetsSince(u64 from, u64 to) {
    return copiesWhere(_targets, [=](const ADSBTarget& target) {
        return target.lastUpdate() > from && target.lastUpdate() <= to;
    });
}

std::vector<ADSBTarget> ADSBTracker::killTargets(u64 time) {
    const auto isSilent = [=](const ADSBTarget& target) { return target.lastUpdate() <= time; };
    std::vector<ADSBTarget> killed = copiesWhere(_targets, isSilent);
    if (killed.empty()) {
        return killed;
    }
    // The log is the last that can run out of memory, and nothing is removed before.
    TargetTable kept = _targets->without(isSilent);
    for (const ADSBTarget& target : killed) {
        Log::log(Log::Debug, moduleName, "Target #%u killed.", target.trackId());
    }
    *_targets = std::move(kept);
    return killed;
}

void ADSBTracker::reset() {
    _targets.reset();
    _nextTrackId = firstTrackId;
}

/// The target of the address, created if there is none. Null if the table is full.
ADSBTarget* ADSBTracker::createTarget(u32 icaoAddress) {
    if (ADSBTarget* known = findTarget(icaoAddress)) {
        return known;
    }
    const u32 trackId = getNextTrackId();
    if (trackId == 0) {
        return nullptr;
    }
    auto target = std::make_shared<ADSBTarget>(icaoAddress);
    target->_trackId = trackId;
    ADSBTarget* created = target.get();
    _targets->enter(std::move(target));
    _nextTrackId = trackId + 1; // last, so that no number is lost if memory runs out
    return created;
}

ADSBTarget* ADSBTracker::findTarget(u32 icaoAddress) const {
    return _targets ? _targets->find(icaoAddress) : nullptr;
}

const ADSBTarget* ADSBTracker::findConstTarget(u32 icaoAddress) const {
    return findTarget(icaoAddress);
}

/// The lowest free number from _nextTrackId on. 0 if the table is full.
u32 ADSBTracker::getNextTrackId() {
    if (!_targets) {
        _targets = std::make_unique<TargetTable>();
    }
    return _targets->freeTrackId(_nextTrackId);
}

} // namespace tolvarin::ondrel
