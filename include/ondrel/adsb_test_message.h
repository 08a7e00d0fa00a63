/// @file
/// Test message.
#pragma once

#include <ondrel/adsb_message.h>
#include <ondrel/export.h>
#include <ondrel/types.h>

#include <string>

namespace tolvarin::ondrel {

/// Test message, type code 23 (RTCA DO-260B, 2.2.3.2.7.3).
class ONDREL_EXPORT ADSBTestMessage : public ADSBMessage {
public:
    /// A message with no data yet.
    ADSBTestMessage();

    /// The subtype on the wire, 0 to 7; one other than 0 is noted in the log.
    u8 subtype() const { return _subtype; }

    /// The six bytes after the first; empty before a decode.
    const std::string& testData() const { return _testData; }

    /// Such as "TC=TEST, ST=0".
    std::string description() const override;

protected:
    bool decodeImpl() override;

private:
    u8 _subtype = 0;
    std::string _testData;
};

} // namespace tolvarin::ondrel
