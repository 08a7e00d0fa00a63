/// @file
/// What an emitter transmits in a given state: payloads and whole frames.
#pragma once

#include "simulator/aircraft.h"

#include <cstdint>
#include <string>

namespace tolvarin::ondrel::simulator {

/// FS of surveillance replies, 0 to 5.
unsigned flightStatus(const AircraftState& state);

/// CA of all-call replies and squitters, 4 to 7.
unsigned capability(const AircraftState& state);

/// The payload of a surface or airborne position message, by `onGround` of the state.
std::string positionMessage(const AircraftState& state, bool odd);
std::string velocityMessage(const AircraftState& state);
std::string identificationMessage(const AircraftState& state);
std::string operationalStatusMessage(const AircraftState& state);
std::string targetStateMessage(const AircraftState& state);

/// The resolution advisory if there is one, else the emergency state.
std::string aircraftStatusMessage(const AircraftState& state);

/// DF17, 18 or 19 by the kind of emitter.
std::string extendedSquitter(const AircraftState& state, const std::string& message);

/// DF11; the identifier 0 makes it an acquisition squitter.
std::string allCallReply(const AircraftState& state, unsigned interrogatorId);

/// DF0, or DF16 when `coordination` asks for the long one.
std::string airAirReply(const AircraftState& state, bool coordination);

/// The reply of format 4, 5, 20 or 21. `registerNumber` picks the MB of the Comm-B replies: 0x10,
/// 0x20 or 0x40, and zeros for any other.
std::string surveillanceReply(const AircraftState& state, unsigned format, unsigned registerNumber);

} // namespace tolvarin::ondrel::simulator
