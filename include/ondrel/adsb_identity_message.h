/// @file
/// Aircraft identification.
#pragma once

#include <ondrel/adsb_message.h>
#include <ondrel/export.h>
#include <ondrel/types.h>

#include <string>

namespace tolvarin::ondrel {

/// Aircraft identification and category, type codes 1 to 4 (RTCA DO-260B, 2.2.3.2.5).
class ONDREL_EXPORT ADSBIdentityMessage : public ADSBMessage {
public:
    ADSBIdentityMessage();

    /// Eight characters as sent, trailing blanks included; "?" for a code that the standard leaves
    /// undefined. Eight blanks before a decode.
    const std::string& callsign() const { return _callsign; }

    /// 0 to 7, within the set that typeCode() tells.
    u8 emitterCategory() const { return _emitterCategory; }

    std::string description() const override;

protected:
    bool decodeImpl() override;

private:
    u8 _emitterCategory = 0;
    std::string _callsign;
};

} // namespace tolvarin::ondrel
