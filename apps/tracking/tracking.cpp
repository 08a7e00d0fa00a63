#include "apps/tracking/tracking.h"

#include "apps/decoding/message_values.h"

#include <ondrel/adsb_message.h>

#include <algorithm>
#include <cstddef>
#include <string>
#include <utility>

namespace tolvarin::ondrel::client {

namespace {

u8 typeCodeOf(const std::string& field) {
    return static_cast<u8>(static_cast<u8>(field.front()) >> 3U);
}

/// Whether the position is of the odd format (RTCA DO-260B, 2.2.3.2.3.5).
bool isOdd(const std::string& positionField) {
    return (static_cast<u8>(positionField[2]) & 0x04U) != 0;
}

/// Subtypes 1 and 2. The tracker takes no other velocity.
bool isGroundVelocity(const std::string& field) {
    const unsigned subtype = static_cast<u8>(field.front()) & 7U;
    return subtype == 1 || subtype == 2;
}

constexpr u8 firstGnssTypeCode = 20; // of airborne positions

constexpr u64 places = 4095;          // in the tracker's table
constexpr std::size_t leaving = 64;   // at once, since each search looks at the whole table
constexpr u64 betweenSearches = 1000; // ms

/// Whether the tracker would make a new aircraft of it (ADSBTracker::procModeSMsg).
bool makesAircraft(const DFMessage& message) {
    switch (message.downlinkFormat()) {
    case DFMessage::DF0:
    case DFMessage::DF4:
    case DFMessage::DF5:
    case DFMessage::DF16:
    case DFMessage::DF20:
    case DFMessage::DF21:
        return message.confidence() >= ModeSMessage::Medium;
    case DFMessage::DF17:
        return message.confidence() == ModeSMessage::High;
    default:
        return false;
    }
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
    _madeRoom.clear();
    const ADSBTarget* aircraft = _tracker.procModeSMsg(message);
    if (aircraft == nullptr && _aircraft == places && message != nullptr) {
        aircraft = enter(*message);
    }
    if (aircraft == nullptr) {
        return nullptr;
    }
    ++_tracked;
    if (!_taken[aircraft->trackId()]) {
        _taken.set(aircraft->trackId());
        ++_aircraft;
    }
    switch (message->downlinkFormat()) {
    case DFMessage::DF0:
    case DFMessage::DF4:
    case DFMessage::DF16:
    case DFMessage::DF20: // AC (ICAO Annex 10 Volume IV, 3.1.2.6.5.4)
        noteAltitude(*aircraft, isTold(message->data(), 2, 0x1FFF), Baro);
        break;
    case DFMessage::DF17:
        noteSquitter(*aircraft, static_cast<const DF17Message&>(*message).constFieldME().data());
        break;
    default:
        break;
    }
    return aircraft;
}

/// The altitude check can have refused the altitude: it is new if it is as new as its message.
void Tracking::noteAltitude(const ADSBTarget& aircraft, bool told, AltitudeSource source) {
    if (aircraft.altitudeBaroLastUpdate() == aircraft.lastUpdate()) {
        MessageNotes& notes = _notes[aircraft.trackId()];
        notes.altitudeTold = told;
        notes.altitudeSource = source;
    }
}

/// A position is new if it is as new as its squitter. Places of fields by RTCA DO-260B, 2.2.3.2.3
/// and 2.2.3.2.6.
void Tracking::noteSquitter(const ADSBTarget& aircraft, const std::string& field) {
    const u8 typeCode = typeCodeOf(field);
    const auto type = ADSBMessage::typeByCode(typeCode);
    MessageNotes& notes = _notes[aircraft.trackId()];
    if (type == ADSBMessage::ACID) {
        notes.identityTypeCode = typeCode;
    } else if (type == ADSBMessage::POS_AIR) {
        noteAltitude(aircraft, isTold(field, 1, 0xFFF0),
                     typeCode >= firstGnssTypeCode ? Gnss : Baro);
        if (aircraft.positionLastUpdate() == aircraft.lastUpdate()) {
            _verdict = _positions.check(
                aircraft.trackId(),
                {{aircraft.latitude(), aircraft.longitude()}, aircraft.positionLastUpdate()},
                isOdd(field));
        }
    } else if (type == ADSBMessage::AIR_VEL && isGroundVelocity(field)) {
        notes.velocityTold = tellsGroundSpeed(field);
        if (!isTold(field, 4, 0x1000)) { // the source bit: the tracker takes a rate with 0 only
            notes.verticalRateTold = tellsVerticalRate(field);
        }
    }
}

/// Takes a message in that the full table refused. Null if it can make no room for it.
const ADSBTarget* Tracking::enter(const DFMessage& message) {
    if (!makesAircraft(message)) {
        return nullptr;
    }
    const ADSBTarget* aircraft = makeRoom() ? _tracker.procModeSMsg(&message) : nullptr;
    _notTaken += aircraft == nullptr ? 1U : 0U;
    return aircraft;
}

/// Removes aircraft. False if none has been silent for long enough.
bool Tracking::makeRoom() {
    // Where the time has gone back, the difference wraps around and is large.
    const bool hasSearched = reached() - _lastSearch < betweenSearches;
    if (!_makesRoom || hasSearched || reached() < shortestSilence) {
        return false;
    }
    _lastSearch = reached();
    if (_madeRoom = kill(0); !_madeRoom.empty()) { // those ahead of the time
        _killedForRoom += _madeRoom.size();
        return true;
    }
    std::vector<u64> heard;
    for (const ADSBTarget& target : _tracker.allTargets()) {
        heard.push_back(target.lastUpdate());
    }
    const auto last =
        heard.begin() + static_cast<std::ptrdiff_t>(std::min(leaving, heard.size())) - 1;
    std::nth_element(heard.begin(), last, heard.end());
    _madeRoom = kill(std::min(*last, reached() - shortestSilence));
    _killedForRoom += _madeRoom.size();
    return !_madeRoom.empty();
}

std::vector<TrackedAircraft> Tracking::killSilentFor(u64 milliseconds) {
    if (reached() < milliseconds) {
        return {};
    }
    return kill(reached() - milliseconds);
}

/// Removes the aircraft that were last heard then or before.
std::vector<TrackedAircraft> Tracking::kill(u64 lastUpdate) {
    std::vector<TrackedAircraft> killed = killThoseAhead();
    for (TrackedAircraft& target : tracked(_tracker.killTargets(lastUpdate))) {
        killed.push_back(std::move(target));
    }
    noteKilled(killed);
    return killed;
}

/// Removes the aircraft that were last heard before the time went back. The tracker removes only
/// those that are behind a time, so a report sets these behind all others, which have 1 or more.
std::vector<TrackedAircraft> Tracking::killThoseAhead() {
    if (!_wentBack) {
        return {};
    }
    std::vector<ADSBTarget> ahead = _tracker.allTargetsSince(reached() + furthestBack);
    for (const ADSBTarget& target : ahead) {
        ADSBTargetReport report;
        report.setIcaoAddress(target.icaoAddr());
        report.setTrackId(target.trackId());
        report.setLastUpdate(1);
        _tracker.procTargetReport(&report);
    }
    const auto isAhead = [&ahead](const ADSBTarget& killed) {
        return std::any_of(ahead.begin(), ahead.end(), [&killed](const ADSBTarget& target) {
            return target.icaoAddr() == killed.icaoAddr();
        });
    };
    for (ADSBTarget& killed : _tracker.killTargets(1)) {
        if (!isAhead(killed)) { // it was heard then
            ahead.push_back(std::move(killed));
        }
    }
    return tracked(ahead);
}

void Tracking::noteKilled(const std::vector<TrackedAircraft>& killed) {
    for (const TrackedAircraft& target : killed) {
        _positions.forget(target.trackId());
        _taken.reset(target.trackId());
        _notes[target.trackId()] = {};
    }
    _aircraft -= killed.size();
    _killed += killed.size();
}

std::vector<TrackedAircraft> Tracking::tracked(const std::vector<ADSBTarget>& targets) const {
    std::vector<TrackedAircraft> all;
    all.reserve(targets.size());
    for (const ADSBTarget& target : targets) {
        TrackedAircraft& aircraft = all.emplace_back(target);
        aircraft.position = positionOf(target);
        aircraft.notes = notesOf(target);
    }
    return all;
}

TrackingCounts Tracking::counts() const {
    return {_replies, _tracked, _aircraft, _killed, _killedForRoom, _notTaken, _positions.counts()};
}

} // namespace tolvarin::ondrel::client
