/// @file
/// The aircraft and vehicles of a simulation.
#pragma once

#include "simulator/aircraft.h"

#include <vector>

namespace tolvarin::ondrel::simulator {

/// Which aircraft fly, and where. Shares are 0 to 1.
struct FleetOptions {
    unsigned aircraft = 30;        ///< emitters of all kinds; at most 2^20 are made
    GeoPoint centre = {50.0, 8.5}; ///< those on the ground are within 2 NM of it
    double radiusNm = 150;
    bool worldwide = false;   ///< anywhere on earth, also on the ground
    double groundShare = 0.2; ///< of the aircraft; half of these take off at some time
    double df18Share = 0.1;   ///< ground vehicles and aircraft that a ground station reports
    double df19Share = 0.05;  ///< military
};

/// Makes a mixed fleet: all MOPS versions, categories, accuracies and phases of flight. Addresses
/// are different from each other and never 0.
std::vector<Aircraft> makeFleet(const FleetOptions& options, Random& random);

} // namespace tolvarin::ondrel::simulator
