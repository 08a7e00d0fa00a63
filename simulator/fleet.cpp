// Makes a fleet by chance: who flies, with which equipment, where and how. All draws come from one
// generator in a fixed order, so one seed gives one fleet.

#include "simulator/fleet.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <set>

namespace tolvarin::ondrel::simulator {
namespace {

constexpr unsigned mostAircraft = 1U << 20U;
constexpr double fieldRadiusNm = 2;
constexpr double fieldElevationFt = 375;

/// The first addresses of blocks that some states have. Each block has 2^15 addresses or more.
constexpr std::array<std::uint32_t, 6> addressBlocks = {0x380000, 0x3C0000, 0x400000,
                                                        0x440000, 0x480000, 0xA00000};

/// How common a type is, its type code and emitter category, and how it flies.
struct AircraftType {
    double weight;
    unsigned typeCode;
    unsigned category;
    Performance performance;
};
constexpr AircraftType aircraftTypes[] = {
    {0.42, 4, 3, {380, 480, 24000, 41000}},   // large
    {0.14, 4, 5, {420, 520, 28000, 43000}},   // heavy
    {0.10, 4, 2, {220, 330, 12000, 25000}},   // small
    {0.10, 4, 1, {90, 130, 1500, 9000}},      // light
    {0.05, 4, 7, {60, 140, 500, 3000}},       // rotorcraft
    {0.04, 3, 1, {40, 90, 2000, 7000}},       // glider
    {0.03, 3, 6, {60, 180, 3000, 20000}},     // unmanned
    {0.04, 1, 0, {150, 300, 5000, 20000}},    // no category told
    {0.03, 4, 6, {400, 600, 15000, 45000}},   // high performance
    {0.05, 4, 6, {1100, 1600, 42000, 50000}}, // supersonic
};

/// The type codes and supplements of one containment radius are in one row, with the accuracy that
/// belongs to it (RTCA DO-260B, table 2-14). The supplements are those of airborne messages.
struct QualityRow {
    double weight;
    PositionQuality quality;
};
constexpr QualityRow qualityRows[] = {
    {0.05, {9, 20, 5, false, false, false, {11, 3, true, false}, 3}},
    {0.15, {10, 21, 6, false, false, false, {10, 3, true, false}, 2}},
    {0.20, {11, 22, 7, true, true, false, {9, 3, true, false}, 2}},
    {0.30, {11, 22, 7, false, false, false, {8, 3, true, false}, 1}},
    {0.08, {12, 22, 8, false, false, true, {7, 2, true, true}, 1}},
    {0.04, {13, 22, 8, false, true, false, {7, 2, true, false}, 1}},
    {0.04, {13, 22, 8, false, false, true, {6, 2, false, false}, 1}},
    {0.03, {13, 22, 8, true, true, false, {6, 2, false, false}, 1}},
    {0.03, {14, 22, 8, false, false, false, {5, 1, false, false}, 1}},
    {0.02, {15, 22, 8, false, false, false, {4, 1, false, true}, 0}},
    {0.02, {16, 22, 8, true, true, false, {3, 1, false, false}, 0}},
    {0.01, {16, 22, 8, false, false, false, {2, 1, false, false}, 0}},
    {0.01, {17, 22, 8, false, false, false, {1, 1, false, false}, 0}},
    {0.02, {18, 22, 8, false, false, false, {0, 0, false, false}, 0}},
};

/// Control fields (CF) that ground stations use: TIS-B with an ICAO address, TIS-B with another
/// address, and rebroadcast ADS-B.
constexpr std::array<unsigned, 3> groundStationControls = {2, 5, 6};

/// Picks a row by its weight; the weights of a table add up to 1.
template <typename Row, std::size_t N>
const Row& pick(const Row (&rows)[N], Random& random) {
    double left = random.uniform();
    for (const Row& row : rows) {
        left -= row.weight;
        if (left < 0) {
            return row;
        }
    }
    return rows[N - 1];
}

/// An address that no other aircraft of the fleet has.
std::uint32_t makeAddress(std::set<std::uint32_t>& taken, Random& random) {
    const std::uint32_t block = random.oneOf(addressBlocks);
    std::uint32_t address = block + static_cast<std::uint32_t>(random.between(0, 0x7FFF));
    while (!taken.insert(address).second) {
        address = address % 0xFFFFFEU + 1;
    }
    return address;
}

std::string makeCallsign(Random& random) {
    std::string callsign;
    for (int i = 0; i < 3; ++i) {
        callsign += static_cast<char>(random.between('A', 'Z'));
    }
    callsign += std::to_string(random.between(1, 9999));
    callsign.resize(8, ' ');
    return callsign;
}

EmitterKind makeKind(const FleetOptions& options, Random& random) {
    const double draw = random.uniform();
    if (draw < options.df18Share) {
        return random.chance(0.5) ? EmitterKind::Vehicle : EmitterKind::GroundStation;
    }
    return draw < options.df18Share + options.df19Share ? EmitterKind::Military
                                                        : EmitterKind::Transponder;
}

/// Draws type, accuracy, MOPS version and what the aircraft can send.
void equip(Airframe& airframe, Random& random) {
    const AircraftType& type = pick(aircraftTypes, random);
    airframe.identificationTypeCode = type.typeCode;
    airframe.emitterCategory = type.category;
    airframe.performance = type.performance;
    airframe.quality = pick(qualityRows, random).quality;
    const double version = random.uniform();
    airframe.mopsVersion = version < 0.65 ? 2 : (version < 0.82 ? 0 : 1);
    airframe.acas = type.performance.highestAltitudeFt >= 20000;
    airframe.sendsTargetState = random.chance(0.8);
    airframe.sendsGnssHeight = random.chance(0.08);
    airframe.sendsAirSpeed = random.chance(0.06);
    airframe.verticalRateSourceBit = random.chance(0.3);
    airframe.geometricMinusBaroFt = 25 * random.between(-30, 30);
}

void specialise(Airframe& airframe, Random& random) {
    if (airframe.kind == EmitterKind::GroundStation) {
        airframe.controlField = random.oneOf(groundStationControls);
    }
    if (airframe.kind == EmitterKind::Vehicle) {
        airframe.identificationTypeCode = 2;
        airframe.emitterCategory = random.chance(0.3) ? 1 : 3; // emergency or service vehicle
        airframe.acas = false;
    }
}

Airframe makeAirframe(const FleetOptions& options, std::set<std::uint32_t>& taken, Random& random) {
    Airframe airframe;
    airframe.address = makeAddress(taken, random);
    airframe.kind = makeKind(options, random);
    airframe.callsign = makeCallsign(random);
    equip(airframe, random);
    specialise(airframe, random);
    return airframe;
}

/// A place in a circle. All parts of the area are equally likely, hence the square root.
GeoPoint placeWithin(GeoPoint centre, double radiusNm, Random& random) {
    Course course(centre, random.uniform(0, 360));
    course.move(radiusNm * std::sqrt(random.uniform()));
    return course.place();
}

/// A place on earth. All parts of the area are equally likely, hence the arc sine.
GeoPoint placeOnEarth(Random& random) {
    const double latitude = std::asin(random.uniform(-1, 1)) * 180.0 / 3.14159265358979323846;
    return {latitude, random.uniform(-180, 180)};
}

FlightPhase makePhase(const FleetOptions& options, const Airframe& airframe, Random& random) {
    if (airframe.kind == EmitterKind::Vehicle || random.chance(options.groundShare)) {
        return FlightPhase::Taxiing;
    }
    return random.chance(0.07) ? FlightPhase::Landing : FlightPhase::Flying;
}

void setMovement(Flight& flight, const Performance& able, Random& random) {
    flight.headingDeg = random.uniform(0, 360);
    switch (flight.phase) {
    case FlightPhase::Landing:
        flight.speedKt = random.uniform(125, 150);
        flight.altitudeFt = flight.fieldElevationFt + random.uniform(300, 2000);
        break;
    case FlightPhase::Flying:
        flight.speedKt = random.uniform(able.lowestSpeedKt, able.highestSpeedKt);
        flight.altitudeFt =
            100 * random.between(able.lowestAltitudeFt / 100, able.highestAltitudeFt / 100);
        break;
    default:
        flight.speedKt = random.chance(0.4) ? 0.0 : 12.0;
        flight.altitudeFt = flight.fieldElevationFt;
    }
}

Flight makeFlight(const FleetOptions& options, const Airframe& airframe, Random& random) {
    Flight flight;
    flight.phase = makePhase(options, airframe, random);
    flight.fieldElevationFt = fieldElevationFt;
    const bool local = flight.phase != FlightPhase::Flying;
    flight.home = options.worldwide ? placeOnEarth(random) : options.centre;
    flight.place = placeWithin(
        flight.home, local ? fieldRadiusNm : (options.worldwide ? 0 : options.radiusNm), random);
    flight.rangeNm = local ? 2 * fieldRadiusNm : (options.worldwide ? 0 : options.radiusNm);
    flight.departs = airframe.kind != EmitterKind::Vehicle && random.chance(0.5);
    if (random.chance(0.04)) {
        flight.emergency = static_cast<Emergency>(random.between(1, 6));
    }
    setMovement(flight, airframe.performance, random);
    return flight;
}

} // namespace

std::vector<Aircraft> makeFleet(const FleetOptions& options, Random& random) {
    const unsigned count = std::min(options.aircraft, mostAircraft);
    std::set<std::uint32_t> taken;
    std::vector<Aircraft> fleet;
    fleet.reserve(count);
    for (unsigned i = 0; i < count; ++i) {
        const Airframe airframe = makeAirframe(options, taken, random);
        const Flight flight = makeFlight(options, airframe, random);
        fleet.emplace_back(airframe, flight, random.bits());
    }
    return fleet;
}

} // namespace tolvarin::ondrel::simulator
