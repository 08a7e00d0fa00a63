/// @file
/// The downlink formats of Mode S (ICAO Annex 10 Volume IV, 3.1.2.5 to 3.1.2.8).
#pragma once

#include <ondrel/export.h>
#include <ondrel/mode_s_fields.h>
#include <ondrel/mode_s_message.h>
#include <ondrel/types.h>

#include <string>
#include <vector>

namespace tolvarin::ondrel {

/// A downlink message: checks that the frame's first five bits are the class's format.
class ONDREL_EXPORT DFMessage : public ModeSMessage {
public:
    /// The downlink format; the value is the code. ModeSDecoder gives null for those that have no
    /// class below.
    enum DownlinkFormat : i32 {
        DF0 = 0,   ///< short air-air surveillance, ACAS reply
        DF1 = 1,   ///< reserved
        DF2 = 2,   ///< reserved
        DF3 = 3,   ///< reserved
        DF4 = 4,   ///< surveillance, altitude reply
        DF5 = 5,   ///< surveillance, identity reply
        DF6 = 6,   ///< reserved
        DF7 = 7,   ///< reserved
        DF8 = 8,   ///< reserved
        DF9 = 9,   ///< reserved
        DF10 = 10, ///< reserved
        DF11 = 11, ///< all-call reply
        DF12 = 12, ///< reserved
        DF13 = 13, ///< reserved
        DF14 = 14, ///< reserved
        DF15 = 15, ///< reserved
        DF16 = 16, ///< long air-air surveillance, ACAS reply
        DF17 = 17, ///< extended squitter
        DF18 = 18, ///< extended squitter of a device that is no transponder
        DF19 = 19, ///< military extended squitter
        DF20 = 20, ///< Comm-B, altitude reply
        DF21 = 21, ///< Comm-B, identity reply
        DF22 = 22, ///< reserved
        DF23 = 23, ///< reserved
        DF24 = 24, ///< Comm-D, extended length message: all codes from 24 to 31
    };

    /// A copy of all members.
    DFMessage(const DFMessage&);
    ~DFMessage() override;

    /// Such as "Mode-S DF-17 Message".
    std::string description() const override;

    /// The format of the class, whatever the last frame held.
    DownlinkFormat downlinkFormat() const { return _downlinkFormat; }

    /// "DF-0" to "DF-24". Lives as long as the library.
    const std::string& downlinkFormatName() const;

    /// DF0 to DF23 for codes 0 to 23, DF24 for any other.
    static DownlinkFormat downlinkFormatByCode(u8 code);

protected:
    /// A message of that format with no data yet.
    explicit DFMessage(DownlinkFormat format);
    /// Takes over the bytes and copies the rest. Decode the other message again before you use it.
    DFMessage(DFMessage&&) noexcept;

    /// Checks the format; every concrete class runs it first. False, with a line in the log, for a
    /// frame of another format.
    bool decodeImpl() override;

private:
    friend struct DFSteps; // what the library's formats share when they decode

    DownlinkFormat _downlinkFormat;
};

/// DF-0, short air-air surveillance: VS, AC, AP; 56 bits. Its address is a candidate only: nothing
/// in the reply can be checked.
class ONDREL_EXPORT DF0Message : public DFMessage {
public:
    /// A message with no data yet.
    DF0Message();

    u8 bits() const override;
    std::vector<const ModeSMessageField*> fields() const override;

    /// VS and AC, such as "VS: AIR; AC: 36000".
    std::string description() const override;

    /// A field of the message: vertical status (VS), altitude code (AC) or address/parity (AP). The
    /// reference lives as long as the message.
    ///@{
    ModeSMessageFieldVS& fieldVS() { return _fieldVS; }
    const ModeSMessageFieldVS& constFieldVS() const { return _fieldVS; }
    ModeSMessageFieldAC& fieldAC() { return _fieldAC; }
    const ModeSMessageFieldAC& constFieldAC() const { return _fieldAC; }
    ModeSMessageFieldAP& fieldAP() { return _fieldAP; }
    const ModeSMessageFieldAP& constFieldAP() const { return _fieldAP; }
    ///@}

private:
    bool decodeImpl() override;

    ModeSMessageFieldVS _fieldVS;
    ModeSMessageFieldAC _fieldAC;
    ModeSMessageFieldAP _fieldAP;
};

/// DF-4, surveillance, altitude reply: FS, AC, AP; 56 bits. Its address is a candidate only.
class ONDREL_EXPORT DF4Message : public DFMessage {
public:
    /// A message with no data yet.
    DF4Message();

    u8 bits() const override;
    std::vector<const ModeSMessageField*> fields() const override;

    /// FS and AC, such as "FS: AIR; AC: 36000".
    std::string description() const override;

    /// A field of the message: flight status (FS), altitude code (AC) or address/parity (AP). The
    /// reference lives as long as the message.
    ///@{
    ModeSMessageFieldFS& fieldFS() { return _fieldFS; }
    const ModeSMessageFieldFS& constFieldFS() const { return _fieldFS; }
    ModeSMessageFieldAC& fieldAC() { return _fieldAC; }
    const ModeSMessageFieldAC& constFieldAC() const { return _fieldAC; }
    ModeSMessageFieldAP& fieldAP() { return _fieldAP; }
    const ModeSMessageFieldAP& constFieldAP() const { return _fieldAP; }
    ///@}

private:
    bool decodeImpl() override;

    ModeSMessageFieldFS _fieldFS;
    ModeSMessageFieldAC _fieldAC;
    ModeSMessageFieldAP _fieldAP;
};

/// DF-5, surveillance, identity reply: FS, ID, AP; 56 bits. Its address is a candidate only.
class ONDREL_EXPORT DF5Message : public DFMessage {
public:
    /// A message with no data yet.
    DF5Message();

    u8 bits() const override;
    std::vector<const ModeSMessageField*> fields() const override;

    /// FS and ID, such as "FS: AIR; ID: 7000".
    std::string description() const override;

    /// A field of the message: flight status (FS), identity (ID) or address/parity (AP). The
    /// reference lives as long as the message.
    ///@{
    ModeSMessageFieldFS& fieldFS() { return _fieldFS; }
    const ModeSMessageFieldFS& constFieldFS() const { return _fieldFS; }
    ModeSMessageFieldID& fieldID() { return _fieldID; }
    const ModeSMessageFieldID& constFieldID() const { return _fieldID; }
    ModeSMessageFieldAP& fieldAP() { return _fieldAP; }
    const ModeSMessageFieldAP& constFieldAP() const { return _fieldAP; }
    ///@}

private:
    bool decodeImpl() override;

    ModeSMessageFieldFS _fieldFS;
    ModeSMessageFieldID _fieldID;
    ModeSMessageFieldAP _fieldAP;
};

/// DF-11, all-call reply: CA, AA, PI; 56 bits. Its address stands in clear. Damage shows only as an
/// interrogator identifier out of range.
class ONDREL_EXPORT DF11Message : public DFMessage {
public:
    /// A message with no data yet.
    DF11Message();

    u8 bits() const override;
    std::vector<const ModeSMessageField*> fields() const override;

    /// CA, AA and PI, such as "CA: 5; AA: 4840D6; PI: F8740F".
    std::string description() const override;

    /// A field of the message: capability (CA), address announced (AA) or parity/interrogator
    /// identifier (PI). The reference lives as long as the message.
    ///@{
    ModeSMessageFieldCA& fieldCA() { return _fieldCA; }
    const ModeSMessageFieldCA& constFieldCA() const { return _fieldCA; }
    ModeSMessageFieldAA& fieldAA() { return _fieldAA; }
    const ModeSMessageFieldAA& constFieldAA() const { return _fieldAA; }
    ModeSMessageFieldPI& fieldPI() { return _fieldPI; }
    const ModeSMessageFieldPI& constFieldPI() const { return _fieldPI; }
    ///@}

private:
    bool decodeImpl() override;

    ModeSMessageFieldCA _fieldCA;
    ModeSMessageFieldAA _fieldAA;
    ModeSMessageFieldPI _fieldPI;
};

/// DF-16, long air-air surveillance: VS, AC, MV, AP; 112 bits. Its address is a candidate only.
class ONDREL_EXPORT DF16Message : public DFMessage {
public:
    /// A message with no data yet.
    DF16Message();

    u8 bits() const override;
    std::vector<const ModeSMessageField*> fields() const override;

    /// VS and AC, such as "VS: AIR; AC: 36000".
    std::string description() const override;

    /// A field of the message: vertical status (VS), altitude code (AC), ACAS message (MV) or
    /// address/parity (AP). The reference lives as long as the message.
    ///@{
    ModeSMessageFieldVS& fieldVS() { return _fieldVS; }
    const ModeSMessageFieldVS& constFieldVS() const { return _fieldVS; }
    ModeSMessageFieldAC& fieldAC() { return _fieldAC; }
    const ModeSMessageFieldAC& constFieldAC() const { return _fieldAC; }
    ModeSMessageFieldMV& fieldMV() { return _fieldMV; }
    const ModeSMessageFieldMV& constFieldMV() const { return _fieldMV; }
    ModeSMessageFieldAP& fieldAP() { return _fieldAP; }
    const ModeSMessageFieldAP& constFieldAP() const { return _fieldAP; }
    ///@}

private:
    bool decodeImpl() override;

    ModeSMessageFieldVS _fieldVS;
    ModeSMessageFieldAC _fieldAC;
    ModeSMessageFieldMV _fieldMV;
    ModeSMessageFieldAP _fieldAP;
};

/// DF-17, extended squitter: CA, AA, ME, PI; 112 bits. Refused when its parity fails.
class ONDREL_EXPORT DF17Message : public DFMessage {
public:
    /// A message with no data yet.
    DF17Message();

    u8 bits() const override;
    std::vector<const ModeSMessageField*> fields() const override;

    /// CA, AA and ME, such as "CA: 5; AA: 4840D6; ME: 202CC371C32CE0".
    std::string description() const override;

    /// A field of the message: capability (CA), address announced (AA), message (ME) or
    /// parity/interrogator identifier (PI). The reference lives as long as the message.
    ///@{
    ModeSMessageFieldCA& fieldCA() { return _fieldCA; }
    const ModeSMessageFieldCA& constFieldCA() const { return _fieldCA; }
    ModeSMessageFieldAA& fieldAA() { return _fieldAA; }
    const ModeSMessageFieldAA& constFieldAA() const { return _fieldAA; }
    ModeSMessageFieldME& fieldME() { return _fieldME; }
    const ModeSMessageFieldME& constFieldME() const { return _fieldME; }
    ModeSMessageFieldPI& fieldPI() { return _fieldPI; }
    const ModeSMessageFieldPI& constFieldPI() const { return _fieldPI; }
    ///@}

private:
    bool decodeImpl() override;

    ModeSMessageFieldCA _fieldCA;
    ModeSMessageFieldAA _fieldAA;
    ModeSMessageFieldME _fieldME;
    ModeSMessageFieldPI _fieldPI;
};

/// DF-18, extended squitter of a non-transponder device: CF, AA, ME, PI; 112 bits. Refused when its
/// parity fails; any CF is taken.
class ONDREL_EXPORT DF18Message : public DFMessage {
public:
    /// A message with no data yet.
    DF18Message();

    u8 bits() const override;
    std::vector<const ModeSMessageField*> fields() const override;

    /// CF, AA and ME, such as "CF: 0; AA: 4840D6; ME: 202CC371C32CE0".
    std::string description() const override;

    /// A field of the message: control field (CF), address announced (AA), message (ME) or
    /// parity/interrogator identifier (PI). The reference lives as long as the message.
    ///@{
    ModeSMessageFieldCF& fieldCF() { return _fieldCF; }
    const ModeSMessageFieldCF& constFieldCF() const { return _fieldCF; }
    ModeSMessageFieldAA& fieldAA() { return _fieldAA; }
    const ModeSMessageFieldAA& constFieldAA() const { return _fieldAA; }
    ModeSMessageFieldME& fieldME() { return _fieldME; }
    const ModeSMessageFieldME& constFieldME() const { return _fieldME; }
    ModeSMessageFieldPI& fieldPI() { return _fieldPI; }
    const ModeSMessageFieldPI& constFieldPI() const { return _fieldPI; }
    ///@}

private:
    bool decodeImpl() override;

    ModeSMessageFieldCF _fieldCF;
    ModeSMessageFieldAA _fieldAA;
    ModeSMessageFieldME _fieldME;
    ModeSMessageFieldPI _fieldPI;
};

/// DF-19, military extended squitter: AF, AA, ME, PI; 112 bits. Refused when its parity fails. With
/// an AF other than 0 the message holds only AF: the other fields stay invalid and the address 0.
class ONDREL_EXPORT DF19Message : public DFMessage {
public:
    /// A message with no data yet.
    DF19Message();

    u8 bits() const override;
    std::vector<const ModeSMessageField*> fields() const override;

    /// AF, AA and ME, such as "AF: 0; AA: 4840D6; ME: 202CC371C32CE0".
    std::string description() const override;

    /// A field of the message: application field (AF), address announced (AA), message (ME) or
    /// parity/interrogator identifier (PI). The reference lives as long as the message.
    ///@{
    ModeSMessageFieldAF& fieldAF() { return _fieldAF; }
    const ModeSMessageFieldAF& constFieldAF() const { return _fieldAF; }
    ModeSMessageFieldAA& fieldAA() { return _fieldAA; }
    const ModeSMessageFieldAA& constFieldAA() const { return _fieldAA; }
    ModeSMessageFieldME& fieldME() { return _fieldME; }
    const ModeSMessageFieldME& constFieldME() const { return _fieldME; }
    ModeSMessageFieldPI& fieldPI() { return _fieldPI; }
    const ModeSMessageFieldPI& constFieldPI() const { return _fieldPI; }
    ///@}

private:
    bool decodeImpl() override;

    ModeSMessageFieldAF _fieldAF;
    ModeSMessageFieldAA _fieldAA;
    ModeSMessageFieldME _fieldME;
    ModeSMessageFieldPI _fieldPI;
};

/// DF-20, Comm-B, altitude reply: FS, AC, MB, AP; 112 bits. Its address is a candidate only.
class ONDREL_EXPORT DF20Message : public DFMessage {
public:
    /// A message with no data yet.
    DF20Message();

    u8 bits() const override;
    std::vector<const ModeSMessageField*> fields() const override;

    /// FS and AC, such as "FS: AIR; AC: 36000".
    std::string description() const override;

    /// A field of the message: flight status (FS), altitude code (AC), Comm-B message (MB) or
    /// address/parity (AP). The reference lives as long as the message.
    ///@{
    ModeSMessageFieldFS& fieldFS() { return _fieldFS; }
    const ModeSMessageFieldFS& constFieldFS() const { return _fieldFS; }
    ModeSMessageFieldAC& fieldAC() { return _fieldAC; }
    const ModeSMessageFieldAC& constFieldAC() const { return _fieldAC; }
    ModeSMessageFieldMB& fieldMB() { return _fieldMB; }
    const ModeSMessageFieldMB& constFieldMB() const { return _fieldMB; }
    ModeSMessageFieldAP& fieldAP() { return _fieldAP; }
    const ModeSMessageFieldAP& constFieldAP() const { return _fieldAP; }
    ///@}

private:
    bool decodeImpl() override;

    ModeSMessageFieldFS _fieldFS;
    ModeSMessageFieldAC _fieldAC;
    ModeSMessageFieldMB _fieldMB;
    ModeSMessageFieldAP _fieldAP;
};

/// DF-21, Comm-B, identity reply: FS, ID, MB, AP; 112 bits. Its address is a candidate only.
class ONDREL_EXPORT DF21Message : public DFMessage {
public:
    /// A message with no data yet.
    DF21Message();

    u8 bits() const override;
    std::vector<const ModeSMessageField*> fields() const override;

    /// FS and ID, such as "FS: AIR; ID: 7000".
    std::string description() const override;

    /// A field of the message: flight status (FS), identity (ID), Comm-B message (MB) or
    /// address/parity (AP). The reference lives as long as the message.
    ///@{
    ModeSMessageFieldFS& fieldFS() { return _fieldFS; }
    const ModeSMessageFieldFS& constFieldFS() const { return _fieldFS; }
    ModeSMessageFieldID& fieldID() { return _fieldID; }
    const ModeSMessageFieldID& constFieldID() const { return _fieldID; }
    ModeSMessageFieldMB& fieldMB() { return _fieldMB; }
    const ModeSMessageFieldMB& constFieldMB() const { return _fieldMB; }
    ModeSMessageFieldAP& fieldAP() { return _fieldAP; }
    const ModeSMessageFieldAP& constFieldAP() const { return _fieldAP; }
    ///@}

private:
    bool decodeImpl() override;

    ModeSMessageFieldFS _fieldFS;
    ModeSMessageFieldID _fieldID;
    ModeSMessageFieldMB _fieldMB;
    ModeSMessageFieldAP _fieldAP;
};

} // namespace tolvarin::ondrel
