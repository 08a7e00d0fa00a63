/// @file
/// Target state and status, by MOPS version.
#pragma once

#include <ondrel/adsb_message.h>
#include <ondrel/export.h>
#include <ondrel/types.h>

#include <string>

namespace tolvarin::ondrel {

/// Target state and status, type code 29 (RTCA DO-260B, 2.2.3.2.7.1): accuracy and integrity, which
/// fields() and description() show. Subtypes 2 and 3 are refused with a line in the log.
class ONDREL_EXPORT ADSBTargetStatusMessage : public ADSBMessage {
public:
    /// The subtype on the wire, 0 to 3.
    u8 subtype() const { return _subtype; }

    /// Such as "TC=TG_STATUS, ST=0, NACp=9, NICbaro=1, SIL=3".
    std::string description() const override;

protected:
    /// A message with no data yet.
    ADSBTargetStatusMessage();

    bool decodeImpl() override;

private:
    u8 _subtype = 0;
    u8 _nacp = 0;
    u8 _nicBaro = 0;
    u8 _sil = 0;
};

/// Target state and status of MOPS version 1.
class ONDREL_EXPORT ADSBTargetStatusMessageV1 : public ADSBTargetStatusMessage {
public:
    /// A message with no data yet.
    ADSBTargetStatusMessageV1();
};

/// Target state and status of MOPS version 2: subtype 1 only.
class ONDREL_EXPORT ADSBTargetStatusMessageV2 : public ADSBTargetStatusMessage {
public:
    /// A message with no data yet.
    ADSBTargetStatusMessageV2();

    /// The text of the base class with the SIL supplement at its end, such as
    /// "..., SIL=3, SILsupp=0".
    std::string description() const override;

protected:
    bool decodeImpl() override;

private:
    bool _silSupplement = false;
};

} // namespace tolvarin::ondrel
