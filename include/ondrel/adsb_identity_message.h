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
    /// A message with no data yet.
    ADSBIdentityMessage();

    /// Eight characters as sent, trailing blanks included (ICAO Annex 10 Volume IV, table 3-9); "?"
    /// for a code that the standard leaves undefined. Eight blanks before a decode.
    const std::string& callsign() const { return _callsign; }

    /// The kind of aircraft, 0 to 7, within the set that typeCode() tells: 4 is set A, 1 is set D.
    u8 emitterCategory() const { return _emitterCategory; }

    /// Such as "TC=ACID, EC=0, CS=KLM1023 ".
    std::string description() const override;

protected:
    bool decodeImpl() override;

private:
    u8 _emitterCategory = 0;
    std::string _callsign;
};

} // namespace tolvarin::ondrel
