/// @file
/// Aircraft operational status.
#pragma once

#include <ondrel/adsb_message.h>
#include <ondrel/export.h>
#include <ondrel/types.h>

#include <string>

namespace tolvarin::ondrel {

/// Aircraft operational status, type code 31 (RTCA DO-260B, 2.2.3.2.7.2): the one message that
/// tells which MOPS version an aircraft follows. Version 0, which sends none, is refused.
class ONDREL_EXPORT ADSBAircraftOperationalStatusMessage : public ADSBMessage {
public:
    /// A message with no data yet.
    ADSBAircraftOperationalStatusMessage();

    /// The raw number, 0 to 7. One above 2 decodes, with a line in the log.
    u8 versionNumber() const { return _versionNumber; }

    /// The version of the number; MOPSVersionUnknown above 2.
    MOPSVersion version() const;

    /// NIC supplement A. With the type code it gives the navigation integrity category.
    bool nicSupplementA() const { return _nicSupplementA; }

    /// Such as "TC=OP_STAT, VN=2, NICsa=1".
    std::string description() const override;

protected:
    bool decodeImpl() override;

private:
    u8 _versionNumber = 0;
    bool _nicSupplementA = false;
};

} // namespace tolvarin::ondrel
