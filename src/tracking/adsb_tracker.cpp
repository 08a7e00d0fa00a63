#include <ondrel/adsb_tracker.h>

#include <ondrel/log.h>

#include <algorithm>
#include <bitset>
#include <limits>
#include <utility>

namespace tolvarin::ondrel {

namespace {

const std::string moduleName = "ADSBTracker";

constexpr u32 firstTrackId = 1;
constexpr u32 lastTrackId = 4095;
constexpr u32 mostTargets = lastTrackId - firstTrackId + 1;

} // namespace

ADSBTracker::ADSBTracker() : _nextTrackId(firstTrackId) {
    Log::log(Log::Info, moduleName, "Initialized.");
}

ADSBTracker::ADSBTracker(const ADSBTracker&) = default;
ADSBTracker& ADSBTracker::operator=(const ADSBTracker&) = default;
ADSBTracker::ADSBTracker(ADSBTracker&&) noexcept = default;
ADSBTracker& ADSBTracker::operator=(ADSBTracker&&) noexcept = default;
ADSBTracker::~ADSBTracker() = default;

void ADSBTracker::setAltituteBaroChecking(bool enabled, u32 seconds, u32 limit) {
    _altitudeBaroChecking = enabled;
    _altitudeBaroCheckingSeconds = seconds;
    _altitudeBaroCheckingLimit = limit;
}

/// Copies in ascending order of address.
template <class Condition>
std::vector<ADSBTarget> ADSBTracker::targetsWhere(Condition condition) const {
    std::vector<std::pair<u32, const ADSBTarget*>> selected;
    _targets.forEach([&](u32 address, const auto& target) {
        if (condition(*target)) {
            selected.emplace_back(address, target.get());
        }
    });
    std::sort(selected.begin(), selected.end());
    std::vector<ADSBTarget> targets;
    targets.reserve(selected.size());
    for (const auto& [address, target] : selected) {
        targets.push_back(*target);
    }
    return targets;
}

std::vector<ADSBTarget> ADSBTracker::allTargets() const {
    return targetsWhere([](const ADSBTarget&) { return true; });
}

std::vector<ADSBTarget> ADSBTracker::allTargetsSince(u64 from) {
    return allTargetsSince(from, std::numeric_limits<u64>::max());
}

std::vector<ADSBTarget> ADSBTracker::allTargetsSince(u64 from, u64 to) {
    return targetsWhere([=](const ADSBTarget& target) {
        return target.lastUpdate() > from && target.lastUpdate() <= to;
    });
}

std::vector<ADSBTarget> ADSBTracker::killTargets(u64 time) {
    const auto isSilent = [=](const ADSBTarget& target) { return target.lastUpdate() <= time; };
    std::vector<ADSBTarget> killed = targetsWhere(isSilent);
    if (killed.empty()) {
        return killed;
    }
    decltype(_targets) kept; // made first: once a line is out, no lack of memory keeps a target
    _targets.forEach([&](u32 address, const auto& target) {
        if (!isSilent(*target)) {
            kept[address] = target;
        }
    });
    for (const ADSBTarget& target : killed) {
        Log::log(Log::Debug, moduleName, "Target #%u killed.", target.trackId());
    }
    _targets = std::move(kept);
    return killed;
}

void ADSBTracker::reset() {
    _targets = {};
    _nextTrackId = firstTrackId;
}

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
    return (_targets[icaoAddress] = std::move(target)).get();
}

ADSBTarget* ADSBTracker::findTarget(u32 icaoAddress) const {
    const auto* target = _targets.find(icaoAddress);
    return target != nullptr ? target->get() : nullptr;
}

const ADSBTarget* ADSBTracker::findConstTarget(u32 icaoAddress) const {
    return findTarget(icaoAddress);
}

/// The lowest free number from the cursor on, around the end; 0 when the table is full. One walk of
/// the table finds the numbers in use, which reports may have changed to anything.
u32 ADSBTracker::getNextTrackId() {
    if (_targets.size() >= mostTargets) {
        return 0;
    }
    std::bitset<lastTrackId + 1> used;
    _targets.forEach([&](u32 /*address*/, const auto& target) {
        if (target->_trackId <= lastTrackId) {
            used.set(target->_trackId);
        }
    });
    const auto inRange = [](u32 id) { return id <= lastTrackId ? id : firstTrackId; };
    u32 trackId = inRange(_nextTrackId);
    while (used.test(trackId)) {
        trackId = inRange(trackId + 1);
    }
    _nextTrackId = trackId + 1;
    return trackId;
}

} // namespace tolvarin::ondrel
