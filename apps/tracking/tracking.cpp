#include "apps/tracking/tracking.h"

#include <string>
#include <utility>

namespace tolvarin::ondrel::client {

namespace {

/// The ME field of a squitter with an airborne position; null for other messages.
const std::string* positionField(const DFMessage& message) {
    if (message.downlinkFormat() != DFMessage::DF17) {
        return nullptr;
    }
    const std::string& field = static_cast<const DF17Message&>(message).constFieldME().data();
    const unsigned typeCode = static_cast<u8>(field.front()) >> 3U;
    const bool isPosition = (typeCode >= 9 && typeCode <= 18) || (typeCode >= 20 && typeCode <= 22);
    return isPosition ? &field : nullptr;
}

/// Whether the position is of the odd format (RTCA DO-260B, 2.2.3.2.3.5).
bool isOdd(const std::string& positionField) {
    return (static_cast<u8>(positionField[2]) & 0x04U) != 0;
}

} // namespace

Tracking::Tracking(const std::optional<AltitudeCheck>& check, double greatestKnots)
    : _positions(greatestKnots) {
    if (check) {
        _tracker.setAltituteBaroChecking(true, check->seconds, check->feet);
    }
}

const ADSBTarget* Tracking::take(const DFMessage* message) {
    ++_replies;
    _verdict.reset();
    const ADSBTarget* aircraft = _tracker.procModeSMsg(message);
    if (aircraft == nullptr) {
        return nullptr;
    }
    ++_tracked;
    if (aircraft->positionLastUpdate() == aircraft->lastUpdate()) {
        checkPosition(*aircraft, *message);
    }
    return aircraft;
}

/// Only for a target whose position is as new as the message. Other messages at the same time did
/// not bring it.
void Tracking::checkPosition(const ADSBTarget& aircraft, const DFMessage& message) {
    if (const std::string* field = positionField(message)) {
        _verdict = _positions.check(
            aircraft.trackId(),
            {{aircraft.latitude(), aircraft.longitude()}, aircraft.positionLastUpdate()},
            isOdd(*field));
    }
}

std::vector<TrackedAircraft> Tracking::killSilentFor(u64 milliseconds) {
    if (_now < milliseconds) {
        return {};
    }
    std::vector<TrackedAircraft> killed = withPositions(_tracker.killTargets(_now - milliseconds));
    for (const TrackedAircraft& aircraft : killed) {
        _positions.forget(aircraft.trackId());
    }
    _killed += killed.size();
    return killed;
}

std::vector<TrackedAircraft> Tracking::withPositions(std::vector<ADSBTarget> targets) const {
    std::vector<TrackedAircraft> all;
    all.reserve(targets.size());
    for (ADSBTarget& target : targets) {
        const std::optional<Position> position = positionOf(target);
        all.emplace_back(std::move(target), position);
    }
    return all;
}

TrackingCounts Tracking::counts() const {
    return {_replies, _tracked, _tracker.allTargets().size(), _killed, _positions.counts()};
}

} // namespace tolvarin::ondrel::client
