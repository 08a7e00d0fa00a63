#pragma once

#include "apps/tracking/position_check.h"
#include "apps/tracking/tracked_aircraft.h"

#include <ondrel/adsb_target.h>
#include <ondrel/adsb_tracker.h>
#include <ondrel/df_messages.h>
#include <ondrel/types.h>

#include <algorithm>
#include <array>
#include <bitset>
#include <optional>
#include <string>
#include <vector>

namespace tolvarin::ondrel::client {

/// A new altitude within so many seconds of the last one is believed only if it is at most so many
/// feet away from it.
struct AltitudeCheck {
    u32 seconds;
    u32 feet;
};

struct TrackingCounts {
    u64 replies;  ///< taken in
    u64 tracked;  ///< of these, the ones that updated an aircraft
    u64 aircraft; ///< in the table now
    u64 killed;   ///< aircraft removed
    u64 madeRoom; ///< of these, the ones removed since the table was full
    u64 notTaken; ///< replies of new aircraft that found no room
    PositionCounts positions;
};

/// Takes replies into a table of aircraft, counts them, and keeps the time of the recording.
///
/// The table has places for 4095 aircraft. When it is full, the 64 that have been silent for
/// longest make room for new ones, but none that was heard in the last 300 seconds. Silence counts
/// up to a time that three replies in a row have reached, so a single wild stamp removes no
/// aircraft. Aircraft that were only heard before the time went back count as silent for longest.
class Tracking {
public:
    static constexpr u64 shortestSilence = 300000; ///< ms, of those that make room
    static constexpr u64 furthestBack = 10000;     ///< ms; the time of the run went back by more

    explicit Tracking(const std::optional<AltitudeCheck>& check,
                      double greatestKnots = PositionCheck::usualKnots);

    /// No aircraft makes room from now on.
    void keepAll() { _makesRoom = false; }

    /// Sets the time of the run; call it for each reply.
    void moveTo(u64 timeMs) {
        _wentBack = _wentBack || timeMs + furthestBack < _now;
        _before = {_now, _before[0]};
        _now = timeMs;
    }

    /// The time of the run.
    u64 now() const { return _now; }

    /// Takes the message of a reply in; null for a refused one. Gives the aircraft that it updated,
    /// valid until the next call, or null if the tracker did not believe the reply.
    const ADSBTarget* take(const DFMessage* message);

    /// What became of the position that the last reply gave; nothing if it gave none.
    std::optional<PositionCheck::Verdict> verdict() const { return _verdict; }

    /// The last position of an aircraft that was accepted.
    std::optional<Position> positionOf(const ADSBTarget& aircraft) const {
        return _positions.positionOf(aircraft.trackId());
    }

    /// What the messages of an aircraft told beside what its target keeps.
    const MessageNotes& notesOf(const ADSBTarget& aircraft) const {
        return _notes[aircraft.trackId()];
    }

    /// Notes how many sites heard the last message of an aircraft.
    void noteSites(const ADSBTarget& aircraft, unsigned sites) {
        _notes[aircraft.trackId()].sites = sites;
    }

    /// The aircraft that made room for the last reply.
    const std::vector<TrackedAircraft>& madeRoom() const { return _madeRoom; }

    /// Replies of new aircraft that found no room.
    u64 notTaken() const { return _notTaken; }

    /// Removes the aircraft that were last heard so long ago or longer, and gives them.
    std::vector<TrackedAircraft> killSilentFor(u64 milliseconds);

    /// Copies of all aircraft in the order of their addresses.
    std::vector<TrackedAircraft> aircraft() const { return tracked(_tracker.allTargets()); }

    TrackingCounts counts() const;

private:
    u64 reached() const { return std::min({_now, _before[0], _before[1]}); }
    const ADSBTarget* enter(const DFMessage& message);
    bool makeRoom();
    std::vector<TrackedAircraft> kill(u64 lastUpdate);
    std::vector<TrackedAircraft> killThoseAhead();
    void noteKilled(const std::vector<TrackedAircraft>& killed);
    void noteAltitude(const ADSBTarget& aircraft, bool told, AltitudeSource source);
    void noteSquitter(const ADSBTarget& aircraft, const std::string& field);
    std::vector<TrackedAircraft> tracked(const std::vector<ADSBTarget>& targets) const;

    ADSBTracker _tracker;
    PositionCheck _positions;
    std::optional<PositionCheck::Verdict> _verdict;
    u64 _now = 0;
    std::array<u64, 2> _before{};            ///< the times before _now
    std::bitset<4096> _taken;                ///< by track number
    std::array<MessageNotes, 4096> _notes{}; ///< by track number
    u64 _aircraft = 0;
    bool _makesRoom = true;
    bool _wentBack = false; ///< the time, at some reply
    u64 _lastSearch = 0;    ///< for aircraft that can make room
    std::vector<TrackedAircraft> _madeRoom;
    u64 _replies = 0;
    u64 _tracked = 0;
    u64 _killed = 0;
    u64 _killedForRoom = 0;
    u64 _notTaken = 0;
};

} // namespace tolvarin::ondrel::client
