#include "apps/tracking/tracking.h"

namespace tolvarin::ondrel::client {

Tracking::Tracking(const std::optional<AltitudeCheck>& check) {
    if (check) {
        _tracker.setAltituteBaroChecking(true, check->seconds, check->feet);
    }
}

const ADSBTarget* Tracking::take(const DFMessage* message) {
    ++_replies;
    const ADSBTarget* aircraft = _tracker.procModeSMsg(message);
    _tracked += aircraft != nullptr ? 1U : 0U;
    return aircraft;
}

std::vector<ADSBTarget> Tracking::killSilentFor(u64 milliseconds) {
    if (_now < milliseconds) {
        return {};
    }
    std::vector<ADSBTarget> killed = _tracker.killTargets(_now - milliseconds);
    _killed += killed.size();
    return killed;
}

TrackingCounts Tracking::counts() const {
    return {_replies, _tracked, aircraft().size(), _killed};
}

} // namespace tolvarin::ondrel::client
