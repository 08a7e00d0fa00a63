// How an aircraft flies: it decides by chance what it wants, and steers towards it second by
// second.

#include "simulator/aircraft.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <utility>

namespace tolvarin::ondrel::simulator {
namespace {

// Seconds. Alert and SPI stay for about 18 seconds after the pilot's action (ICAO Annex 10).
constexpr int statusSeconds = 18;
constexpr int emergencySeconds = 180;
constexpr int advisorySeconds = 20;

constexpr double liftOffSpeedKt = 145;
constexpr double taxiSpeedKt = 15;
constexpr double landingRateFtMin = 704;
constexpr double largestSpeedOfCode = 1022; // knots; a faster component is sent in steps of 4 knots

/// Rounds to the nearest multiple of `step`.
int nearest(double value, int step) {
    return step * static_cast<int>(std::lround(value / step));
}

/// The altitude that a code of 25-foot steps can carry.
int altitudeSent(double feet) {
    return std::clamp(nearest(feet, 25), -1000, 50175);
}

/// The squawk that an emergency sets, or the one assigned.
unsigned emergencySquawk(Emergency emergency, unsigned assigned) {
    switch (emergency) {
    case Emergency::General:
        return 07700;
    case Emergency::NoCommunications:
        return 07600;
    case Emergency::UnlawfulInterference:
        return 07500;
    default:
        return assigned;
    }
}

/// Any code below 7400, so none of those of the emergencies (7500, 7600 and 7700).
unsigned ordinarySquawk(Random& random) {
    return static_cast<unsigned>(random.between(0, 07377));
}

void setVelocity(AircraftState& state) {
    const double radians = state.headingDeg * (3.14159265358979323846 / 180.0);
    const double east = state.groundSpeedKt * std::sin(radians);
    const double north = state.groundSpeedKt * std::cos(radians);
    state.supersonic = std::max(std::fabs(east), std::fabs(north)) > largestSpeedOfCode;
    const int step = state.supersonic ? 4 : 1;
    state.eastKt = nearest(east, step);
    state.northKt = nearest(north, step);
    state.airSpeedKt = nearest(state.groundSpeedKt, step);
}

} // namespace

// Half of the turn comes before the movement and half behind it: close to the real arc.
void Motion::advance(double seconds) {
    const double meanSpeed = std::max(speedKt + accelerationKtS * seconds / 2, 0.0);
    course.turn(turnDegS * seconds / 2);
    course.move(meanSpeed * seconds / 3600.0);
    course.turn(turnDegS * seconds / 2);
    speedKt = std::max(speedKt + accelerationKtS * seconds, 0.0);
    altitudeFt += verticalRateFtMin * seconds / 60.0;
}

Aircraft::Aircraft(Airframe airframe, const Flight& flight, std::uint64_t seed)
    : _airframe(std::move(airframe)), _flight(flight), _random(seed), _phase(flight.phase),
      _speedWantedKt(flight.speedKt), _altitudeWantedFt(flight.altitudeFt),
      _squawk(ordinarySquawk(_random)) {
    _motion.course = Course(flight.place, flight.headingDeg);
    _motion.speedKt = flight.speedKt;
    _motion.altitudeFt = flight.altitudeFt;
    if (flight.emergency != Emergency::None) {
        startEmergency(flight.emergency);
    }
    decide();
    steer();
}

void Aircraft::step(std::uint64_t milliseconds) {
    _milliseconds += milliseconds;
    for (; _milliseconds >= 1000; _milliseconds -= 1000) {
        advanceOneSecond();
    }
}

AircraftState Aircraft::state() const {
    Motion now = _motion;
    now.advance(static_cast<double>(_milliseconds) / 1000.0);
    AircraftState state;
    static_cast<Airframe&>(state) = _airframe;
    const GeoPoint place = now.course.place();
    state.latitude = place.latitude;
    state.longitude = place.longitude;
    state.groundSpeedKt = now.speedKt;
    state.headingDeg = now.course.heading();
    setVelocity(state);
    state.altitudeFt = altitudeSent(now.altitudeFt);
    state.gnssHeightFt = altitudeSent(now.altitudeFt + _airframe.geometricMinusBaroFt);
    state.verticalRateFtMin = now.verticalRateFtMin;
    state.onGround = onGround();
    state.squawk = emergencySquawk(_emergency, _squawk);
    state.emergency = _emergency;
    state.alert = _alertSeconds > 0 || state.squawk != _squawk;
    state.spi = _spiSeconds > 0;
    state.resolutionAdvisory = _advisorySeconds > 0;
    state.selectedAltitudeFt = nearest(_altitudeWantedFt, 100);
    state.selectedHeadingDeg = std::fmod(state.headingDeg + _turnLeftDeg + 360.0, 360.0);
    return state;
}

bool Aircraft::onGround() const {
    return _phase == FlightPhase::Taxiing || _phase == FlightPhase::TakingOff ||
           (_phase == FlightPhase::Landing && _motion.altitudeFt <= _flight.fieldElevationFt);
}

bool Aircraft::isNear(const Aircraft& other, double nauticalMiles) const {
    const double angle = nauticalMiles / 60.0 * (3.14159265358979323846 / 180.0);
    return _motion.course.cosineTo(other._motion.course) >= std::cos(angle);
}

void Aircraft::advanceOneSecond() {
    _motion.advance(1.0);
    _turnLeftDeg -= _motion.turnDegS;
    changeStatus();
    decide();
    steer();
}

void Aircraft::decide() {
    switch (_phase) {
    case FlightPhase::Taxiing:
        return taxi();
    case FlightPhase::TakingOff:
        return liftOff();
    case FlightPhase::Flying:
        return fly();
    case FlightPhase::Landing:
        return land();
    }
}

void Aircraft::fly() {
    const Performance& able = _airframe.performance;
    if (_random.chance(1.0 / 90)) {
        _turnLeftDeg =
            farFromHome() ? _motion.course.turnTowards(_flight.home) : _random.uniform(-60, 60);
    }
    if (_random.chance(1.0 / 120)) {
        _altitudeWantedFt =
            100 * _random.between(able.lowestAltitudeFt / 100, able.highestAltitudeFt / 100);
        _climbFtMin = 64 * _random.between(10, 36);
    }
    if (_random.chance(1.0 / 150)) {
        _speedWantedKt = _random.uniform(able.lowestSpeedKt, able.highestSpeedKt);
    }
}

void Aircraft::taxi() {
    if (_random.chance(1.0 / 20)) {
        _speedWantedKt = 5 * _random.between(0, 4);
    }
    if (_random.chance(1.0 / 15)) {
        _turnLeftDeg =
            farFromHome() ? _motion.course.turnTowards(_flight.home) : _random.uniform(-90, 90);
    }
    if (_flight.departs && _random.chance(1.0 / 60)) {
        _phase = FlightPhase::TakingOff;
        _speedWantedKt = liftOffSpeedKt;
        _turnLeftDeg = 0;
    }
}

void Aircraft::liftOff() {
    if (_motion.speedKt >= liftOffSpeedKt) {
        _phase = FlightPhase::Flying;
        _speedWantedKt = _airframe.performance.lowestSpeedKt;
        _altitudeWantedFt = _airframe.performance.lowestAltitudeFt;
    }
}

void Aircraft::land() {
    _altitudeWantedFt = _flight.fieldElevationFt;
    _climbFtMin = static_cast<int>(landingRateFtMin);
    if (!onGround()) {
        return;
    }
    _speedWantedKt = taxiSpeedKt;
    if (_motion.speedKt <= taxiSpeedKt) {
        _phase = FlightPhase::Taxiing;
    }
}

void Aircraft::changeStatus() {
    for (int* seconds : {&_emergencySeconds, &_alertSeconds, &_spiSeconds, &_advisorySeconds}) {
        *seconds = std::max(*seconds - 1, 0);
    }
    if (_random.chance(1.0 / 600)) {
        _squawk = ordinarySquawk(_random);
        _alertSeconds = statusSeconds;
    }
    if (_random.chance(1.0 / 600)) {
        _spiSeconds = statusSeconds;
    }
    if (_airframe.acas && !onGround() && _random.chance(1.0 / 2000)) {
        _advisorySeconds = advisorySeconds;
    }
    if (_emergencySeconds == 0) {
        _emergency = Emergency::None;
        if (_random.chance(1.0 / 6000)) {
            startEmergency(static_cast<Emergency>(_random.between(1, 6)));
        }
    }
}

void Aircraft::startEmergency(Emergency emergency) {
    _emergency = emergency;
    _emergencySeconds = emergencySeconds;
}

/// Sets the rates of the next second, so that speed, heading and altitude come closer to what is
/// wanted. The limits are those of ordinary flight: 1.5 or 3 knots and 1.5, 3 or 10 degrees a
/// second.
void Aircraft::steer() {
    const double acceleration = _phase == FlightPhase::Taxiing ? 1.5 : 3.0;
    _motion.accelerationKtS =
        std::clamp(_speedWantedKt - _motion.speedKt, -acceleration, acceleration);

    const double turnRate = onGround() ? 10.0 : (_motion.speedKt > 250 ? 1.5 : 3.0);
    _motion.turnDegS = _motion.speedKt > 0 ? std::clamp(_turnLeftDeg, -turnRate, turnRate) : 0.0;

    const double missingFt = _altitudeWantedFt - _motion.altitudeFt;
    // Steps of 64 ft/min, as the wire has them, so that the rate sent is the true one.
    const int steps = static_cast<int>(std::clamp(missingFt * 60.0 / 64.0, -1000.0, 1000.0));
    if (steps == 0) {
        _motion.altitudeFt = _altitudeWantedFt;
    }
    _motion.verticalRateFtMin = std::clamp(64 * steps, -_climbFtMin, _climbFtMin);
}

bool Aircraft::farFromHome() const {
    return _flight.rangeNm > 0 &&
           distanceNm(_motion.course.place(), _flight.home) > _flight.rangeNm;
}

} // namespace tolvarin::ondrel::simulator
