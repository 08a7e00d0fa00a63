/// @file
/// What a receiver hears of a simulated fleet.
#pragma once

#include "simulator/channel.h"
#include "simulator/fleet.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <limits>
#include <optional>
#include <queue>
#include <string>
#include <vector>

namespace tolvarin::ondrel::simulator {

/// One of several receivers of the same traffic. What it loses and what it damages follows from its
/// place, so no two hear the same.
struct Receiver {
    GeoPoint place;
    double rangeNm = 0; ///< it hears no emitter that is farther away
};

struct TrafficOptions : FleetOptions {
    unsigned seconds = 60;
    std::uint64_t seed = 1;
    std::uint64_t startMs = 1700000000000; ///< of the first second, since 1970-01-01 UTC
    unsigned interrogators = 8;            ///< radars around, at most 64
    double receptionShare = 1;             ///< probability that a reply is heard
    DamageShares damage;
    std::optional<Receiver> receiver; ///< without one, all emitters are heard
};

struct Reply {
    static constexpr std::size_t noAircraft = std::numeric_limits<std::size_t>::max();

    std::uint64_t timeMs = 0; ///< since 1970-01-01 UTC
    std::string bytes;        ///< as received
    std::string sent;         ///< as sent; empty for noise
    std::size_t aircraft = noAircraft;
    Damage damage = Damage::None;
    AircraftState truth; ///< of the sender at that time
};

/// What an emitter does; each has its own rhythm.
enum class Task {
    Position,
    Velocity,
    Identification,
    OperationalStatus,
    TargetState,
    AircraftStatus,
    Test,
    AcquisitionSquitter,
    AirAirReply,
    MilitaryApplication,
    Scan,       ///< a radar's beam passes
    RadarReply, ///< one reply within the beam
};

/// Gives what a receiver hears of a fleet, in the order of time. The same options give the same
/// replies. Objects are independent of each other; one object is for one thread at a time.
class Traffic {
public:
    explicit Traffic(const TrafficOptions& options);

    /// The next reply, or nothing when the time is up.
    std::optional<Reply> next();

    /// Indices of aircraft run from 0 to one below this.
    std::size_t aircraftCount() const { return _emitters.size(); }

private:
    struct Interrogator {
        unsigned identifier; ///< II or SI code with its label
        unsigned scanMs;     ///< one turn of the antenna
        double allCallShare; ///< of its replies; the others are selective
    };
    struct Emitter {
        Aircraft aircraft;
        std::uint64_t timeMs = 0; ///< time up to which the aircraft has moved
        bool odd = false;         ///< format of its last position message
    };
    struct Event {
        std::uint64_t timeMs; ///< since the start
        std::uint64_t order;  ///< counts the events, so that equal times have an order too
        std::size_t emitter;
        Task task;
        std::size_t interrogator;
        bool operator>(const Event& other) const;
    };

    void addInterrogators(unsigned count);
    void addEmitter(const Aircraft& aircraft);
    void schedule(std::uint64_t timeMs, const Event& event);
    void scheduleNext(const Event& event, const AircraftState& state);
    std::string transmit(const Event& event, const AircraftState& state);
    void scan(const Event& event);
    std::string radarReply(const Interrogator& interrogator, const AircraftState& state);
    std::string airAir(const Event& event, const AircraftState& state);
    bool hasNeighbour(std::size_t emitter) const;
    std::string militaryFrame();
    bool isHeard(const AircraftState& state);
    Reply received(const Event& event, const std::string& frame, const AircraftState& state);

    TrafficOptions _options;
    Random _random;
    std::optional<Random> _ofReceiver; ///< random numbers of the receiver, if there is one
    std::vector<Interrogator> _interrogators;
    std::vector<Emitter> _emitters;
    std::priority_queue<Event, std::vector<Event>, std::greater<>> _events;
    std::uint64_t _scheduled = 0;
};

} // namespace tolvarin::ondrel::simulator
