/// @file
/// One simulated aircraft: what it is, how it flies, and its true state at any time.
#pragma once

#include "simulator/geodesy.h"
#include "simulator/payload_encoder.h"
#include "simulator/random.h"

#include <cstdint>
#include <string>

namespace tolvarin::ondrel::simulator {

/// How an emitter sends its extended squitters.
enum class EmitterKind {
    Transponder,   ///< DF17
    Vehicle,       ///< DF18 of its own, no transponder
    GroundStation, ///< DF18 that a ground station sends about an aircraft (TIS-B, ADS-R)
    Military,      ///< DF19
};

/// Emergency states; the values are those of the aircraft status message.
enum class Emergency : unsigned {
    None,
    General,
    Medical,
    MinimumFuel,
    NoCommunications,
    UnlawfulInterference,
    Downed,
};

/// Position accuracy and the type codes and supplements that announce it.
struct PositionQuality {
    unsigned baroTypeCode = 11;   ///< 9 to 18
    unsigned gnssTypeCode = 22;   ///< 20 to 22
    unsigned surfaceTypeCode = 7; ///< 5 to 8
    bool nicSupplementA = false;
    bool nicSupplementB = false;
    bool nicSupplementC = false;
    Accuracy accuracy;
    unsigned velocityAccuracy = 1; ///< NUCr or NACv
};

/// What an aircraft can do.
struct Performance {
    int lowestSpeedKt = 380;
    int highestSpeedKt = 480;
    int lowestAltitudeFt = 24000;
    int highestAltitudeFt = 41000;
};

/// What never changes about an emitter.
struct Airframe {
    std::uint32_t address = 0;
    EmitterKind kind = EmitterKind::Transponder;
    unsigned controlField = 0;         ///< CF of its DF18 messages
    unsigned mopsVersion = 2;          ///< 0 to 2
    std::string callsign = "        "; ///< 8 characters
    unsigned identificationTypeCode = 4;
    unsigned emitterCategory = 3;
    PositionQuality quality;
    Performance performance;
    bool acas = true;
    bool sendsTargetState = true;
    bool sendsGnssHeight = false;       ///< airborne positions have type code 20 to 22
    bool sendsAirSpeed = false;         ///< velocities have subtype 3 or 4
    bool verticalRateSourceBit = false; ///< as sent
    int geometricMinusBaroFt = 0;       ///< steps of 25
};

/// The truth about an emitter at one moment. Some values are exact, others are rounded to the steps
/// that a message can carry; tests compare both with what the library decodes.
struct AircraftState : Airframe {
    double latitude = 0;
    double longitude = 0;
    double groundSpeedKt = 0;
    double headingDeg = 0;     ///< track over ground, 0 up to 360
    int eastKt = 0;            ///< as sent: steps of 1 kt, of 4 kt if supersonic
    int northKt = 0;           ///< as sent, like eastKt
    bool supersonic = false;   ///< a component beyond 1022 kt: velocities have subtype 2 or 4
    int airSpeedKt = 0;        ///< steps as eastKt
    int altitudeFt = 0;        ///< barometric, steps of 25
    int gnssHeightFt = 0;      ///< steps of 25
    int verticalRateFtMin = 0; ///< steps of 64
    bool onGround = false;
    unsigned squawk = 0; ///< four octal digits as 12 bits
    bool alert = false;
    bool spi = false;
    bool resolutionAdvisory = false;
    Emergency emergency = Emergency::None;
    int selectedAltitudeFt = 0;
    double selectedHeadingDeg = 0;
};

enum class FlightPhase { Taxiing, TakingOff, Flying, Landing };

/// How a flight begins, and the area in which it stays.
struct Flight {
    GeoPoint place;
    double headingDeg = 0;
    double speedKt = 0;
    double altitudeFt = 0;
    FlightPhase phase = FlightPhase::Flying;
    double fieldElevationFt = 0;
    bool departs = false; ///< a taxiing aircraft takes off at some time
    GeoPoint home;
    double rangeNm = 0; ///< turns back if farther from home than this; 0 sets no limit
    Emergency emergency = Emergency::None;
};

/// The movement of the current second.
struct Motion {
    Course course{{}, 0};
    double speedKt = 0;
    double altitudeFt = 0;
    double accelerationKtS = 0;
    double turnDegS = 0;
    int verticalRateFtMin = 0;

    void advance(double seconds);
};

/// One aircraft or vehicle that flies by chance. It decides at each full second of its life and
/// moves evenly between two of them. So its flight does not depend on the steps in which step() is
/// called.
class Aircraft {
public:
    /// The same airframe, flight and seed give the same flight to the last bit.
    Aircraft(Airframe airframe, const Flight& flight, std::uint64_t seed);

    void step(std::uint64_t milliseconds);
    AircraftState state() const;

    const Airframe& airframe() const { return _airframe; }
    bool onGround() const;
    bool isNear(const Aircraft& other, double nauticalMiles) const;

private:
    void advanceOneSecond();
    void decide();
    void fly();
    void taxi();
    void liftOff();
    void land();
    void changeStatus();
    void startEmergency(Emergency emergency);
    void steer();
    bool farFromHome() const;

    Airframe _airframe;
    Flight _flight;
    Random _random;
    Motion _motion;
    FlightPhase _phase;
    std::uint64_t _milliseconds = 0; ///< into the current second

    double _speedWantedKt;
    double _altitudeWantedFt;
    int _climbFtMin = 1536;
    double _turnLeftDeg = 0; ///< what is left of the current turn

    unsigned _squawk;
    Emergency _emergency = Emergency::None;
    int _emergencySeconds = 0;
    int _alertSeconds = 0;
    int _spiSeconds = 0;
    int _advisorySeconds = 0;
};

} // namespace tolvarin::ondrel::simulator
