#include "apps/tracking.h"

#include "apps/count_row.h"

#include <algorithm>

namespace tolvarin::ondrel::client {

Tracking::Tracking(const std::optional<AltitudeCheck>& check) {
    if (check) {
        _tracker.setAltituteBaroChecking(true, check->seconds, check->feet);
    }
}

void Tracking::moveTo(u64 stampMs) {
    _now = std::max(_now, stampMs);
}

const ADSBTarget* Tracking::take(const DecodedReply& decoded) {
    ++_replies;
    const ADSBTarget* aircraft = _tracker.procModeSMsg(decoded.message.get());
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

std::string Tracking::summary(u64 unreadableLines) const {
    std::string table = countRow("replies read", _replies);
    table += countRow("  tracked", _tracked, _replies);
    table += countRow("aircraft", aircraft().size());
    table += countRow("killed", _killed);
    table += countRow("lines not readable", unreadableLines);
    table.pop_back();
    return table;
}

} // namespace tolvarin::ondrel::client
