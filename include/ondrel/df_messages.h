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
    /// The downlink format; the value is the code. DF24 stands for every code from 24 on.
    enum DownlinkFormat : i32 {
        DF0 = 0,
        DF1 = 1,
        DF2 = 2,
        DF3 = 3,
        DF4 = 4,
        DF5 = 5,
        DF6 = 6,
        DF7 = 7,
        DF8 = 8,
        DF9 = 9,
        DF10 = 10,
        DF11 = 11,
        DF12 = 12,
        DF13 = 13,
        DF14 = 14,
        DF15 = 15,
        DF16 = 16,
        DF17 = 17,
        DF18 = 18,
        DF19 = 19,
        DF20 = 20,
        DF21 = 21,
        DF22 = 22,
        DF23 = 23,
        DF24 = 24,
    };

    DFMessage(const DFMessage&);
    ~DFMessage() override;

    std::string description() const override;

    DownlinkFormat downlinkFormat() const { return _downlinkFormat; }

    /// "DF-0" to "DF-24". Lives as long as the library.
    const std::string& downlinkFormatName() const;

    /// DF0 to DF23 for codes 0 to 23, DF24 for any other.
    static DownlinkFormat downlinkFormatByCode(u8 code);

protected:
    explicit DFMessage(DownlinkFormat format);
    DFMessage(DFMessage&&) noexcept;

    /// The check of the format; every concrete class runs it first.
    bool decodeImpl() override;

    struct Steps; ///< what the library's formats share when they decode

private:
    DownlinkFormat _downlinkFormat;
};

/// DF-0, short air-air surveillance: VS, AC, AP; 56 bits. Its address is a candidate only: nothing
/// in the reply can be checked.
class ONDREL_EXPORT DF0Message : public DFMessage {
public:
    DF0Message();

    u8 bits() const override;
    std::vector<const ModeSMessageField*> fields() const override;
    std::string description() const override;

    ModeSMessageFieldVS& fieldVS() { return _fieldVS; }
    const ModeSMessageFieldVS& constFieldVS() const { return _fieldVS; }
    ModeSMessageFieldAC& fieldAC() { return _fieldAC; }
    const ModeSMessageFieldAC& constFieldAC() const { return _fieldAC; }
    ModeSMessageFieldAP& fieldAP() { return _fieldAP; }
    const ModeSMessageFieldAP& constFieldAP() const { return _fieldAP; }

private:
    bool decodeImpl() override;

    ModeSMessageFieldVS _fieldVS;
    ModeSMessageFieldAC _fieldAC;
    ModeSMessageFieldAP _fieldAP;
};

/// DF-4, surveillance, altitude reply: FS, AC, AP; 56 bits. Its address is a candidate only.
class ONDREL_EXPORT DF4Message : public DFMessage {
public:
    DF4Message();

    u8 bits() const override;
    std::vector<const ModeSMessageField*> fields() const override;
    std::string description() const override;

    ModeSMessageFieldFS& fieldFS() { return _fieldFS; }
    const ModeSMessageFieldFS& constFieldFS() const { return _fieldFS; }
    ModeSMessageFieldAC& fieldAC() { return _fieldAC; }
    const ModeSMessageFieldAC& constFieldAC() const { return _fieldAC; }
    ModeSMessageFieldAP& fieldAP() { return _fieldAP; }
    const ModeSMessageFieldAP& constFieldAP() const { return _fieldAP; }

private:
    bool decodeImpl() override;

    ModeSMessageFieldFS _fieldFS;
    ModeSMessageFieldAC _fieldAC;
    ModeSMessageFieldAP _fieldAP;
};

/// DF-5, surveillance, identity reply: FS, ID, AP; 56 bits. Its address is a candidate only.
class ONDREL_EXPORT DF5Message : public DFMessage {
public:
    DF5Message();

    u8 bits() const override;
    std::vector<const ModeSMessageField*> fields() const override;
    std::string description() const override;

    ModeSMessageFieldFS& fieldFS() { return _fieldFS; }
    const ModeSMessageFieldFS& constFieldFS() const { return _fieldFS; }
    ModeSMessageFieldID& fieldID() { return _fieldID; }
    const ModeSMessageFieldID& constFieldID() const { return _fieldID; }
    ModeSMessageFieldAP& fieldAP() { return _fieldAP; }
    const ModeSMessageFieldAP& constFieldAP() const { return _fieldAP; }

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
    DF11Message();

    u8 bits() const override;
    std::vector<const ModeSMessageField*> fields() const override;
    std::string description() const override;

    ModeSMessageFieldCA& fieldCA() { return _fieldCA; }
    const ModeSMessageFieldCA& constFieldCA() const { return _fieldCA; }
    ModeSMessageFieldAA& fieldAA() { return _fieldAA; }
    const ModeSMessageFieldAA& constFieldAA() const { return _fieldAA; }
    ModeSMessageFieldPI& fieldPI() { return _fieldPI; }
    const ModeSMessageFieldPI& constFieldPI() const { return _fieldPI; }

private:
    bool decodeImpl() override;

    ModeSMessageFieldCA _fieldCA;
    ModeSMessageFieldAA _fieldAA;
    ModeSMessageFieldPI _fieldPI;
};

/// DF-16, long air-air surveillance: VS, AC, MV, AP; 112 bits. Its address is a candidate only.
class ONDREL_EXPORT DF16Message : public DFMessage {
public:
    DF16Message();

    u8 bits() const override;
    std::vector<const ModeSMessageField*> fields() const override;
    std::string description() const override;

    ModeSMessageFieldVS& fieldVS() { return _fieldVS; }
    const ModeSMessageFieldVS& constFieldVS() const { return _fieldVS; }
    ModeSMessageFieldAC& fieldAC() { return _fieldAC; }
    const ModeSMessageFieldAC& constFieldAC() const { return _fieldAC; }
    ModeSMessageFieldMV& fieldMV() { return _fieldMV; }
    const ModeSMessageFieldMV& constFieldMV() const { return _fieldMV; }
    ModeSMessageFieldAP& fieldAP() { return _fieldAP; }
    const ModeSMessageFieldAP& constFieldAP() const { return _fieldAP; }

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
    DF17Message();

    u8 bits() const override;
    std::vector<const ModeSMessageField*> fields() const override;
    std::string description() const override;

    ModeSMessageFieldCA& fieldCA() { return _fieldCA; }
    const ModeSMessageFieldCA& constFieldCA() const { return _fieldCA; }
    ModeSMessageFieldAA& fieldAA() { return _fieldAA; }
    const ModeSMessageFieldAA& constFieldAA() const { return _fieldAA; }
    ModeSMessageFieldME& fieldME() { return _fieldME; }
    const ModeSMessageFieldME& constFieldME() const { return _fieldME; }
    ModeSMessageFieldPI& fieldPI() { return _fieldPI; }
    const ModeSMessageFieldPI& constFieldPI() const { return _fieldPI; }

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
    DF18Message();

    u8 bits() const override;
    std::vector<const ModeSMessageField*> fields() const override;
    std::string description() const override;

    ModeSMessageFieldCF& fieldCF() { return _fieldCF; }
    const ModeSMessageFieldCF& constFieldCF() const { return _fieldCF; }
    ModeSMessageFieldAA& fieldAA() { return _fieldAA; }
    const ModeSMessageFieldAA& constFieldAA() const { return _fieldAA; }
    ModeSMessageFieldME& fieldME() { return _fieldME; }
    const ModeSMessageFieldME& constFieldME() const { return _fieldME; }
    ModeSMessageFieldPI& fieldPI() { return _fieldPI; }
    const ModeSMessageFieldPI& constFieldPI() const { return _fieldPI; }

private:
    bool decodeImpl() override;

    ModeSMessageFieldCF _fieldCF;
    ModeSMessageFieldAA _fieldAA;
    ModeSMessageFieldME _fieldME;
    ModeSMessageFieldPI _fieldPI;
};

/// DF-19, military extended squitter: AF, AA, ME, PI; 112 bits. Refused when its parity fails. With
/// an AF other than 0 the message holds AF alone: the other fields stay invalid and the address 0.
class ONDREL_EXPORT DF19Message : public DFMessage {
public:
    DF19Message();

    u8 bits() const override;
    std::vector<const ModeSMessageField*> fields() const override;
    std::string description() const override;

    ModeSMessageFieldAF& fieldAF() { return _fieldAF; }
    const ModeSMessageFieldAF& constFieldAF() const { return _fieldAF; }
    ModeSMessageFieldAA& fieldAA() { return _fieldAA; }
    const ModeSMessageFieldAA& constFieldAA() const { return _fieldAA; }
    ModeSMessageFieldME& fieldME() { return _fieldME; }
    const ModeSMessageFieldME& constFieldME() const { return _fieldME; }
    ModeSMessageFieldPI& fieldPI() { return _fieldPI; }
    const ModeSMessageFieldPI& constFieldPI() const { return _fieldPI; }

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
    DF20Message();

    u8 bits() const override;
    std::vector<const ModeSMessageField*> fields() const override;
    std::string description() const override;

    ModeSMessageFieldFS& fieldFS() { return _fieldFS; }
    const ModeSMessageFieldFS& constFieldFS() const { return _fieldFS; }
    ModeSMessageFieldAC& fieldAC() { return _fieldAC; }
    const ModeSMessageFieldAC& constFieldAC() const { return _fieldAC; }
    ModeSMessageFieldMB& fieldMB() { return _fieldMB; }
    const ModeSMessageFieldMB& constFieldMB() const { return _fieldMB; }
    ModeSMessageFieldAP& fieldAP() { return _fieldAP; }
    const ModeSMessageFieldAP& constFieldAP() const { return _fieldAP; }

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
    DF21Message();

    u8 bits() const override;
    std::vector<const ModeSMessageField*> fields() const override;
    std::string description() const override;

    ModeSMessageFieldFS& fieldFS() { return _fieldFS; }
    const ModeSMessageFieldFS& constFieldFS() const { return _fieldFS; }
    ModeSMessageFieldID& fieldID() { return _fieldID; }
    const ModeSMessageFieldID& constFieldID() const { return _fieldID; }
    ModeSMessageFieldMB& fieldMB() { return _fieldMB; }
    const ModeSMessageFieldMB& constFieldMB() const { return _fieldMB; }
    ModeSMessageFieldAP& fieldAP() { return _fieldAP; }
    const ModeSMessageFieldAP& constFieldAP() const { return _fieldAP; }

private:
    bool decodeImpl() override;

    ModeSMessageFieldFS _fieldFS;
    ModeSMessageFieldID _fieldID;
    ModeSMessageFieldMB _fieldMB;
    ModeSMessageFieldAP _fieldAP;
};

} // namespace tolvarin::ondrel
