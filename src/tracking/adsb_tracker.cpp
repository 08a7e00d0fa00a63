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

/// Asks for all of a record while the payload that is to go into it is still being decoded: among
/// thousands of aircraft it is in no near cache.
void prefetch(const ADSBTarget& target) {
    constexpr std::size_t cacheLine = 64;
    const auto* const bytes = reinterpret_cast<const char*>(&target);
    for (std::size_t i = 0; i < sizeof target; i += cacheLine) {
        __builtin_prefetch(bytes + i);
    }
}

} // namespace

ADSBTracker::ADSBTracker() : _nextTrackId(firstTrackId) {
    Log::log(Log::Info, moduleName, "Initialized.");
}

ADSBTracker::ADSBTracker(const ADSBTracker&) = default;

ADSBTracker& ADSBTracker::operator=(const ADSBTracker& other) {
    if (this != &other) {
        ADSBTracker copy(other); // first, so that the two rows cannot part
        *this = std::move(copy);
    }
    return *this;
}

ADSBTracker::~ADSBTracker() = default;

// NOLINTNEXTLINE(bugprone-copy-constructor-init): the decoder has no state to move
ADSBTracker::ADSBTracker(ADSBTracker&& other) noexcept
    : _decoder(other._decoder), _addresses(std::exchange(other._addresses, {})),
      _targets(std::exchange(other._targets, {})), _nextTrackId(other._nextTrackId),
      _altitudeBaroChecking(other._altitudeBaroChecking),
      _altitudeBaroCheckingSeconds(other._altitudeBaroCheckingSeconds),
      _altitudeBaroCheckingLimit(other._altitudeBaroCheckingLimit) {}

ADSBTracker& ADSBTracker::operator=(ADSBTracker&& other) noexcept {
    if (this != &other) {
        _addresses = std::exchange(other._addresses, {});
        _targets = std::exchange(other._targets, {});
        _nextTrackId = other._nextTrackId;
        _altitudeBaroChecking = other._altitudeBaroChecking;
        _altitudeBaroCheckingSeconds = other._altitudeBaroCheckingSeconds;
        _altitudeBaroCheckingLimit = other._altitudeBaroCheckingLimit;
    }
    return *this;
}

void ADSBTracker::setAltituteBaroChecking(bool enabled, u32 seconds, u32 limit) {
    _altitudeBaroChecking = enabled;
    _altitudeBaroCheckingSeconds = seconds;
    _altitudeBaroCheckingLimit = limit;
}

std::vector<ADSBTarget> ADSBTracker::allTargets() const {
    std::vector<ADSBTarget> targets;
    targets.reserve(_targets.size());
    for (const auto& target : _targets) {
        targets.push_back(*target);
    }
    return targets;
}

std::vector<ADSBTarget> ADSBTracker::allTargetsSince(u64 from) {
    return allTargetsSince(from, std::numeric_limits<u64>::max());
}

std::vector<ADSBTarget> ADSBTracker::allTargetsSince(u64 from, u64 to) {
    std::vector<ADSBTarget> targets;
    for (const auto& target : _targets) {
        if (target->lastUpdate() > from && target->lastUpdate() <= to) {
            targets.push_back(*target);
        }
    }
    return targets;
}

std::vector<ADSBTarget> ADSBTracker::killTargets(u64 time) {
    std::vector<ADSBTarget> killed;
    for (const auto& target : _targets) {
        if (target->lastUpdate() <= time) {
            Log::log(Log::Debug, moduleName, "Target #%u killed.", target->trackId());
            killed.push_back(*target);
        }
    }
    std::size_t kept = 0;
    for (std::size_t i = 0; i < _targets.size(); ++i) {
        if (_targets[i]->lastUpdate() > time) {
            _addresses[kept] = _addresses[i];
            std::swap(_targets[kept], _targets[i]);
            ++kept;
        }
    }
    _addresses.resize(kept);
    _targets.resize(kept);
    return killed;
}

void ADSBTracker::reset() {
    _addresses.clear();
    _targets.clear();
    _nextTrackId = firstTrackId;
}

/// Where the address stands, or would have to stand, in the table. Halves the rest without a
/// branch: which half an address lies in cannot be foreseen.
std::size_t ADSBTracker::placeOf(u32 icaoAddress) const {
    std::size_t first = 0;
    for (std::size_t rest = _addresses.size(); rest > 0;) {
        const std::size_t half = (rest + 1) / 2;
        first += _addresses[first + half - 1] < icaoAddress ? half : 0;
        rest -= half;
    }
    return first;
}

bool ADSBTracker::holds(std::size_t place, u32 icaoAddress) const {
    return place < _addresses.size() && _addresses[place] == icaoAddress;
}

ADSBTarget* ADSBTracker::createTarget(u32 icaoAddress) {
    const std::size_t place = placeOf(icaoAddress);
    if (holds(place, icaoAddress)) {
        prefetch(*_targets[place]);
        return _targets[place].get();
    }
    const u32 trackId = getNextTrackId();
    if (trackId == 0) {
        return nullptr;
    }
    auto target = std::make_shared<ADSBTarget>(icaoAddress);
    target->_trackId = trackId;
    const auto offset = static_cast<std::ptrdiff_t>(place);
    if (_addresses.size() == _addresses.capacity()) {
        _addresses.reserve(2 * _addresses.size() + 16); // now, so that the two rows cannot part
    }
    const auto entry = _targets.insert(_targets.begin() + offset, std::move(target));
    _addresses.insert(_addresses.begin() + offset, icaoAddress);
    return entry->get();
}

ADSBTarget* ADSBTracker::findTarget(u32 icaoAddress) {
    const std::size_t place = placeOf(icaoAddress);
    return holds(place, icaoAddress) ? _targets[place].get() : nullptr;
}

const ADSBTarget* ADSBTracker::findConstTarget(u32 icaoAddress) const {
    const std::size_t place = placeOf(icaoAddress);
    return holds(place, icaoAddress) ? _targets[place].get() : nullptr;
}

/// The lowest free number from the cursor on, around the end; 0 when the table is full. One walk of
/// the table finds the numbers in use, which reports may have changed to anything.
u32 ADSBTracker::getNextTrackId() {
    if (_targets.size() >= mostTargets) {
        return 0;
    }
    std::bitset<lastTrackId + 1> used;
    for (const auto& target : _targets) {
        if (target->_trackId <= lastTrackId) {
            used.set(target->_trackId);
        }
    }
    const auto inRange = [](u32 id) { return id <= lastTrackId ? id : firstTrackId; };
    u32 trackId = inRange(_nextTrackId);
    while (used.test(trackId)) {
        trackId = inRange(trackId + 1);
    }
    _nextTrackId = trackId + 1;
    return trackId;
}

} // namespace tolvarin::ondrel
