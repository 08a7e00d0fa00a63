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
    /// 0 to 3.
    u8 subtype() const { return _subtype; }

    std::string description() const override;

protected:
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
    ADSBTargetStatusMessageV1();
};

/// Target state and status of MOPS version 2: subtype 1 only.
class ONDREL_EXPORT ADSBTargetStatusMessageV2 : public ADSBTargetStatusMessage {
public:
    ADSBTargetStatusMessageV2();

    std::string description() const override;

protected:
    bool decodeImpl() override;

private:
    bool _silSupplement = false;
};

} // namespace tolvarin::ondrel
