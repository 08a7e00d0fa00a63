/// @file
/// From an ME field to a typed ADS-B message.
#pragma once

#include <ondrel/adsb_message.h>
#include <ondrel/export.h>
#include <ondrel/types.h>

#include <string>

namespace tolvarin::ondrel {

/// Picks the message class for a type code and MOPS version, and decodes. It holds no state; any
/// number of threads may use one decoder. Only exhausted memory throws; there is no message then.
class ONDREL_EXPORT ADSBDecoder {
public:
    /// Writes "Initialized." into the log.
    ADSBDecoder();

    /// Decodes the first seven bytes of `data` as an aircraft of `version` means them. Gives a new
    /// message that the caller owns and deletes, or null for fewer bytes, a reserved type code, a
    /// type that has no class in that version, or a payload that its class refuses.
    /// ADSBMessage::type tells the kind; the versions of a kind share its base class.
    ADSBMessage* decode(MOPSVersion version, const std::string& data) const;
};

} // namespace tolvarin::ondrel
