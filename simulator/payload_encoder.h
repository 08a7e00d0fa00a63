/// @file
/// The ME field of every kind of ADS-B message, 7 bytes each (RTCA DO-260, DO-260A and DO-260B:
/// MOPS versions 0, 1 and 2), and the MB registers that carry the same data. Numbers are rounded to
/// the nearest step of their field and limited to its range.
#pragma once

#include "simulator/cpr_encoder.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace tolvarin::ondrel::simulator {

/// Type code 1 to 4 (emitter set D to A), category 0 to 7. The callsign is filled up with blanks or
/// cut to 8 characters; what the character set does not have is sent as code 0.
std::string identification(unsigned typeCode, unsigned category, std::string_view callsign);

/// Register 2,0, the same callsign in a Comm-B reply.
std::string identificationRegister(std::string_view callsign);

/// Movement code of a surface position message: 1 at rest, 2 to 124 moving, by the lower end of
/// the code's range of speeds.
unsigned movementCode(double groundSpeedKt);

struct SurfacePosition {
    unsigned typeCode = 7; ///< 5 to 8
    double groundSpeedKt = 0;
    bool trackValid = true;
    double trackDeg = 0;
    bool odd = false;
    CprFrame cpr; ///< of the surface grid
};
std::string surfacePosition(const SurfacePosition& position);

struct AirbornePosition {
    unsigned typeCode = 11;          ///< 9 to 18, or 20 to 22 with a GNSS height
    unsigned surveillanceStatus = 0; ///< 0 none, 1 emergency, 2 squawk change, 3 SPI
    bool supplement = false;         ///< single antenna (versions 0, 1), NIC supplement B (2)
    int altitudeFt = 0;
    bool odd = false;
    CprFrame cpr; ///< of the airborne grid
};
std::string airbornePosition(const AirbornePosition& position);

/// What all velocity subtypes have in common.
struct VelocityFields {
    bool intentChange = false;
    bool ifrCapability = false;
    unsigned accuracy = 0; ///< NUCr (version 0) or NACv, 0 to 4
    /// The source bit of the vertical rate as it goes on the wire.
    bool verticalRateSourceBit = false;
    int verticalRateFtMin = 0;               ///< steps of 64
    std::optional<int> geometricMinusBaroFt; ///< steps of 25; sent as unknown if absent
};

/// Subtype 1, or 2 with `supersonic`, whose step is 4 kt. East and north are positive.
std::string groundVelocity(const VelocityFields& fields, int eastKt, int northKt, bool supersonic);

/// Subtype 3, or 4 with `supersonic`: heading in degrees and true air speed.
std::string airVelocity(const VelocityFields& fields, double headingDeg, int airSpeedKt,
                        bool supersonic);

/// Type code 28 subtype 1: emergency state 0 to 7 and, at version 2, the squawk.
std::string emergencyStatus(unsigned emergencyState, std::optional<unsigned> squawk);

/// A resolution advisory, as type code 28 subtype 2 and the ACAS registers report it.
struct ResolutionAdvisory {
    unsigned advisories = 0;         ///< ARA, 14 bits
    unsigned complements = 0;        ///< RAC, 4 bits
    std::uint32_t threatAddress = 0; ///< 0 if not told
};
std::string advisoryStatus(const ResolutionAdvisory& value);

/// MV of a long air-air reply (register 3,0).
std::string advisoryRegister(const ResolutionAdvisory& value);

/// Accuracy and integrity of the position, as the status messages tell it.
struct Accuracy {
    unsigned nacp = 0; ///< 0 to 11
    unsigned sil = 0;  ///< 0 to 3
    bool nicBaro = false;
    bool silSupplement = false; ///< version 2
};

struct TargetState {
    Accuracy accuracy;
    int selectedAltitudeFt = 0;
    double selectedHeadingDeg = 0;
    double pressureHpa = 1013.25;    ///< version 2
    bool verticalNavigation = false; ///< version 2
    bool acasOperational = false;
    unsigned emergencyState = 0; ///< version 1
};

/// Type code 29: subtype 0 at version 1, subtype 1 at version 2.
std::string targetStateV1(const TargetState& state);
std::string targetStateV2(const TargetState& state);

/// Register 4,0, selected vertical intention.
std::string verticalIntentionRegister(int selectedAltitudeFt);

struct OperationalStatus {
    unsigned version = 2; ///< 1 or 2
    bool onGround = false;
    Accuracy accuracy;
    bool nicSupplementA = false;
    bool nicSupplementC = false; ///< version 2 on the ground
    unsigned nacv = 0;           ///< version 2 on the ground
    bool acasOperational = false;
    bool advisoryActive = false;
    bool identActive = false;
};

/// Type code 31: subtype 0 in the air, 1 on the ground.
std::string operationalStatus(const OperationalStatus& status);

/// Type code 23: subtype 0 to 7 and 48 bits of data.
std::string testMessage(unsigned subtype, std::uint64_t data);

} // namespace tolvarin::ondrel::simulator
