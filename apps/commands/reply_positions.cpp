#include "apps/commands/reply_positions.h"

namespace tolvarin::ondrel::client {

/// Only a DF-17 tells the tracker a position, or how to read one.
std::optional<GeoPoint> ReplyPositions::take(const DFMessage* message) {
    if (!_stamped || message == nullptr || message->downlinkFormat() != DFMessage::DF17) {
        return std::nullopt;
    }
    const ADSBTarget* aircraft = _tracking.take(message);
    const auto verdict = _tracking.verdict();
    if (!verdict) {
        return std::nullopt;
    }
    if (_stamping.byClock() && !_saidClock) {
        _saidClock = true;
        _report("the first reply has no time stamp; they are solved by the clock, and may be wrong "
                "or missing");
    }
    using Verdict = PositionCheck::Verdict;
    if (*verdict != Verdict::Accepted && *verdict != Verdict::Overruled) {
        return std::nullopt;
    }
    return _tracking.positionOf(*aircraft)->place;
}

} // namespace tolvarin::ondrel::client
