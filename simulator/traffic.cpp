// The traffic of a fleet as a queue of events: each transmission schedules the next one of its
// kind. Only the aircraft of the next event is moved, up to the time of this event.

#include "simulator/traffic.h"

#include "simulator/frame_encoder.h"
#include "simulator/transponder.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <iterator>
#include <set>
#include <utility>

namespace tolvarin::ondrel::simulator {
namespace {

/// Shortest and longest time between two transmissions (ICAO Annex 10 Volume IV, 3.1.2.8.5 and
/// 3.1.2.8.6; RTCA DO-260B, 2.2.3.3). Each pause is drawn between the two, so that aircraft do not
/// transmit in step.
struct Rhythm {
    Task task;
    int shortestMs;
    int longestMs;
};
constexpr Rhythm rhythms[] = {
    {Task::Position, 400, 600},         {Task::Velocity, 400, 600},
    {Task::Identification, 4800, 5200}, {Task::OperationalStatus, 2400, 2600},
    {Task::TargetState, 1200, 1300},    {Task::AircraftStatus, 700, 900},
    {Task::Test, 30000, 90000},         {Task::AcquisitionSquitter, 800, 1200},
    {Task::AirAirReply, 800, 1200},     {Task::MilitaryApplication, 2000, 6000},
};

constexpr unsigned mostInterrogators = 64;
constexpr double acasRangeNm = 40;        // in which an ACAS interrogates others
constexpr double coordinationShare = 0.1; // of the air-air replies; they are long (DF16)

const Rhythm& rhythmOf(Task task) {
    return *std::find_if(std::begin(rhythms), std::end(rhythms) - 1,
                         [task](const Rhythm& rhythm) { return rhythm.task == task; });
}

bool hasTransponder(EmitterKind kind) {
    return kind == EmitterKind::Transponder || kind == EmitterKind::Military;
}

/// Whether an emitter of this kind and version can do the task at all.
bool canDo(Task task, const Airframe& airframe) {
    const bool own = hasTransponder(airframe.kind);
    switch (task) {
    case Task::OperationalStatus:
        return airframe.mopsVersion >= 1 && (own || airframe.kind == EmitterKind::Vehicle);
    case Task::TargetState:
        return airframe.mopsVersion >= 1 && own && airframe.sendsTargetState;
    case Task::AircraftStatus:
    case Task::Test:
    case Task::AcquisitionSquitter:
    case Task::AirAirReply:
    case Task::Scan:
        return own;
    case Task::MilitaryApplication:
        return airframe.kind == EmitterKind::Military;
    default:
        return true;
    }
}

/// Whether an emitter that can do the task has a reason to do it now.
bool hasReasonFor(Task task, const AircraftState& state) {
    switch (task) {
    case Task::Velocity:
    case Task::TargetState:
    case Task::AirAirReply:
        return !state.onGround;
    case Task::AircraftStatus:
        return state.emergency != Emergency::None || state.resolutionAdvisory;
    default:
        return true;
    }
}

/// What a standing aircraft adds to its pauses: its positions come every 5 s and its
/// identifications every 10 s.
int standingExtraMs(Task task, const AircraftState& state) {
    if (!state.onGround || state.groundSpeedKt > 0) {
        return 0;
    }
    return task == Task::Position ? 4500 : (task == Task::Identification ? 5000 : 0);
}

std::uint64_t seedOf(const Receiver& receiver, std::uint64_t seed) {
    constexpr double steps = 1e6; // of a degree
    constexpr std::uint64_t spread = 0x9E3779B97F4A7C15;
    for (const double angle : {receiver.place.latitude, receiver.place.longitude}) {
        seed = (seed ^ static_cast<std::uint64_t>(std::llround(angle * steps))) * spread;
    }
    return seed;
}

} // namespace

bool Traffic::Event::operator>(const Event& other) const {
    return std::pair(timeMs, order) > std::pair(other.timeMs, other.order);
}

Traffic::Traffic(const TrafficOptions& options) : _options(options), _random(options.seed) {
    if (options.receiver) {
        _ofReceiver.emplace(seedOf(*options.receiver, options.seed));
    }
    addInterrogators(std::min(options.interrogators, mostInterrogators));
    for (const Aircraft& aircraft : makeFleet(options, _random)) {
        addEmitter(aircraft);
    }
}

std::optional<Reply> Traffic::next() {
    const std::uint64_t endMs = std::uint64_t{_options.seconds} * 1000;
    while (!_events.empty() && _events.top().timeMs < endMs) {
        const Event event = _events.top();
        _events.pop();
        Emitter& emitter = _emitters[event.emitter];
        emitter.aircraft.step(event.timeMs - emitter.timeMs);
        emitter.timeMs = event.timeMs;
        const AircraftState state = emitter.aircraft.state();
        scheduleNext(event, state);
        const std::string frame = hasReasonFor(event.task, state) ? transmit(event, state) : "";
        if (!frame.empty() && isHeard(state)) {
            return received(event, frame, state);
        }
    }
    return std::nullopt;
}

void Traffic::addInterrogators(unsigned count) {
    // II codes are 1 to 15 with the label 0, SI codes 1 to 63 follow from 17 on.
    std::set<unsigned> taken = {16};
    while (_interrogators.size() < count) {
        const auto identifier = static_cast<unsigned>(_random.between(1, 79));
        if (taken.insert(identifier).second) {
            const auto scanMs = static_cast<unsigned>(_random.between(4000, 12000));
            // Most radars lock out the all-calls of aircraft that they track.
            const double allCallShare = _random.chance(0.3) ? 0.5 : 0.1;
            _interrogators.push_back({identifier, scanMs, allCallShare});
        }
    }
}

void Traffic::addEmitter(const Aircraft& aircraft) {
    const std::size_t emitter = _emitters.size();
    _emitters.push_back({aircraft});
    for (const Rhythm& rhythm : rhythms) {
        if (canDo(rhythm.task, aircraft.airframe())) {
            const int first = _random.between(0, rhythm.longestMs);
            schedule(static_cast<std::uint64_t>(first), {0, 0, emitter, rhythm.task, 0});
        }
    }
    for (std::size_t i = 0; i < _interrogators.size(); ++i) {
        if (canDo(Task::Scan, aircraft.airframe()) && _random.chance(0.6)) {
            const int first = _random.between(0, static_cast<int>(_interrogators[i].scanMs));
            schedule(static_cast<std::uint64_t>(first), {0, 0, emitter, Task::Scan, i});
        }
    }
}

void Traffic::schedule(std::uint64_t timeMs, const Event& event) {
    _events.push({timeMs, _scheduled++, event.emitter, event.task, event.interrogator});
}

void Traffic::scheduleNext(const Event& event, const AircraftState& state) {
    if (event.task == Task::Scan || event.task == Task::RadarReply) {
        return;
    }
    const Rhythm& rhythm = rhythmOf(event.task);
    const int pause = _random.between(rhythm.shortestMs, rhythm.longestMs);
    const int extra = standingExtraMs(event.task, state);
    schedule(event.timeMs + static_cast<std::uint64_t>(pause + extra), event);
}

/// The frame that an event sends; empty if it sends none.
std::string Traffic::transmit(const Event& event, const AircraftState& state) {
    Emitter& emitter = _emitters[event.emitter];
    switch (event.task) {
    case Task::Position:
        emitter.odd = !emitter.odd;
        return extendedSquitter(state, positionMessage(state, emitter.odd));
    case Task::Velocity:
        return extendedSquitter(state, velocityMessage(state));
    case Task::Identification:
        return extendedSquitter(state, identificationMessage(state));
    case Task::OperationalStatus:
        return extendedSquitter(state, operationalStatusMessage(state));
    case Task::TargetState:
        return extendedSquitter(state, targetStateMessage(state));
    case Task::AircraftStatus:
        return extendedSquitter(state, aircraftStatusMessage(state));
    case Task::Test:
        return extendedSquitter(state, testMessage(0, _random.bits()));
    case Task::AcquisitionSquitter:
        return allCallReply(state, 0);
    case Task::AirAirReply:
        return airAir(event, state);
    case Task::MilitaryApplication:
        return militaryFrame();
    case Task::Scan:
        scan(event);
        return {};
    case Task::RadarReply:
        return radarReply(_interrogators[event.interrogator], state);
    }
    return {};
}

void Traffic::scan(const Event& event) {
    Event reply = event;
    reply.task = Task::RadarReply;
    std::uint64_t timeMs = event.timeMs;
    for (int left = _random.between(2, 5); left > 0; --left) {
        schedule(timeMs, reply);
        timeMs += static_cast<std::uint64_t>(_random.between(8, 25));
    }
    // The aircraft moves, so the beam finds it a little later than one turn of the antenna.
    const unsigned turnMs = _interrogators[event.interrogator].scanMs;
    schedule(event.timeMs + turnMs + static_cast<std::uint64_t>(_random.between(0, 20)), event);
}

std::string Traffic::radarReply(const Interrogator& interrogator, const AircraftState& state) {
    static constexpr std::array<unsigned, 6> formats = {4, 4, 5, 20, 20, 21};
    static constexpr std::array<unsigned, 4> registers = {0x10, 0x20, 0x40, 0x00};
    if (_random.chance(interrogator.allCallShare)) {
        return allCallReply(state, interrogator.identifier);
    }
    const unsigned format = _random.oneOf(formats);
    return surveillanceReply(state, format, _random.oneOf(registers));
}

std::string Traffic::airAir(const Event& event, const AircraftState& state) {
    if (!hasNeighbour(event.emitter)) {
        return {};
    }
    const bool coordination = _random.chance(state.resolutionAdvisory ? 1 : coordinationShare);
    return airAirReply(state, coordination);
}

/// Whether another aircraft with ACAS is in the air and close enough to interrogate this one.
bool Traffic::hasNeighbour(std::size_t emitter) const {
    const Aircraft& self = _emitters[emitter].aircraft;
    return std::any_of(_emitters.begin(), _emitters.end(), [&self](const Emitter& other) {
        const Aircraft& aircraft = other.aircraft;
        return &aircraft != &self && aircraft.airframe().acas && !aircraft.onGround() &&
               hasTransponder(aircraft.airframe().kind) && aircraft.isNear(self, acasRangeNm);
    });
}

std::string Traffic::militaryFrame() {
    const auto application = static_cast<unsigned>(_random.between(1, 7));
    const auto content = static_cast<std::uint32_t>(_random.bits());
    return df19(content, application, noise(_random));
}

bool Traffic::isHeard(const AircraftState& state) {
    if (!_ofReceiver) {
        return _random.chance(_options.receptionShare);
    }
    const Receiver& receiver = *_options.receiver;
    return _ofReceiver->chance(_options.receptionShare) &&
           distanceNm(receiver.place, {state.latitude, state.longitude}) <= receiver.rangeNm;
}

Reply Traffic::received(const Event& event, const std::string& frame, const AircraftState& state) {
    const std::uint64_t timeMs = _options.startMs + event.timeMs;
    Random& random = _ofReceiver ? *_ofReceiver : _random;
    const Damage damage = drawDamage(_options.damage, random);
    const std::string bytes = damaged(frame, damage, random);
    if (damage == Damage::Noise) {
        return {timeMs, bytes, {}, Reply::noAircraft, damage, {}};
    }
    return {timeMs, bytes, frame, event.emitter, damage, state};
}

} // namespace tolvarin::ondrel::simulator
