/// @file
/// The frame that all ADS-B payloads share, and the fields by which they describe themselves.
#pragma once

#include <ondrel/export.h>
#include <ondrel/types.h>

#include <cstdint>
#include <string>
#include <vector>

namespace tolvarin::ondrel {

/// One bit field of an ADS-B payload with its value as text. A field may show a value that is
/// worked out from the bits, so that two fields can cover the same bits.
class ONDREL_EXPORT ADSBMessageField {
public:
    enum Designator : i32 {
        TYPE = 0,
        TYPE_CODE = 1,
        EMT_SET = 2,
        EMT_CAT = 3,
        CHAR_1 = 4,
        CHAR_2 = 5,
        CHAR_3 = 6,
        CHAR_4 = 7,
        CHAR_5 = 8,
        CHAR_6 = 9,
        CHAR_7 = 10,
        CHAR_8 = 11,
        MOV_CODE = 12,
        GND_SPD = 13,
        HDG_STATE = 14,
        HDG = 15,
        SAF = 16,
        NIC_SUPP_B = 17,
        ALT_SRC = 18,
        ALT_RES = 19,
        ALT = 20,
        T = 21,
        CPR_FMT = 22,
        CPR_LAT = 23,
        CPR_LON = 24,
        SUB_TYPE_AIR_VEL = 25,
        NUC_R = 26,
        DIR_EW = 27,
        DIR_NS = 28,
        VEL_EW = 29,
        VEL_NS = 30,
        VR_SRC = 31,
        VR_SIGN = 32,
        VR = 33,
        SUB_TYPE_TEST = 34,
        DATA = 35,
        SUB_TYPE_AC_STATUS = 36,
        EMG_STATE = 37,
        MODE_A = 38,
        SUB_TYPE_TG_STATUS = 39,
        NAC_P = 40,
        NIC_BARO = 41,
        SIL = 42,
        SIL_SUPP = 43,
        SUB_TYPE_OP_STATUS = 44,
        VER_NUM = 45,
        NIC_SUPP_A = 46,
        UNKNOWN_FIELD = 47,
    };

    /// A field of `bits` bits at the ME position `pos`: 0 is the top bit of the first ME byte. It
    /// is valid when it has a width and a designator other than UNKNOWN_FIELD.
    ADSBMessageField(Designator designator, u8 pos, u8 bits, std::string description);

    Designator designator() const { return _designator; }
    u8 pos() const { return _pos; }
    u8 bits() const { return _bits; }
    bool valid() const { return _valid; }

    /// The value as text, or "NO_DESCRIPTION" when that is empty.
    const std::string& description() const;

    /// Names of the own designator; they live as long as the library.
    const std::string& name() const { return designatorName(_designator); }
    const std::string& fullName() const { return designatorFullName(_designator); }

    /// Names of any designator; "--" for a value that is none.
    static const std::string& designatorName(Designator designator);
    static const std::string& designatorFullName(Designator designator);

protected:
    void setPos(u8 pos) { _pos = pos; }
    void setBits(u8 bits) { _bits = bits; }
    void setValid(bool valid) { _valid = valid; }
    void setDescription(const std::string& description) { _description = description; }

private:
    Designator _designator;
    u8 _pos;
    u8 _bits;
    bool _valid;
    std::string _description;
};

struct WireLayout;

/// The payload of an extended squitter's ME field (RTCA DO-260B, 2.2.3.2). A message decodes seven
/// bytes into its members and lists them bit field by bit field.
///
/// A message belongs to one thread at a time.
class ONDREL_EXPORT ADSBMessage {
public:
    /// The kinds of payload, by type code.
    enum ADSBMessageType : i32 {
        ACID = 0,      ///< aircraft identification, 1 to 4
        POS_GND = 1,   ///< surface position, 5 to 8
        POS_AIR = 2,   ///< airborne position, 9 to 18 and 20 to 22
        AIR_VEL = 3,   ///< airborne velocity, 19
        TEST = 4,      ///< test, 23
        AC_STATUS = 5, ///< aircraft status, 28
        TG_STATUS = 6, ///< target state and status, 29
        OP_STATUS = 7, ///< aircraft operational status, 31
        RESERVED = 8,  ///< every other code
    };

    ADSBMessage(const ADSBMessage&);
    ADSBMessage(ADSBMessage&&) noexcept;
    ADSBMessage& operator=(const ADSBMessage&);
    ADSBMessage& operator=(ADSBMessage&&) noexcept;
    virtual ~ADSBMessage();

    /// Decodes the first seven bytes of `data`. False for fewer (nothing changes then), for a type
    /// code of another kind of message (a line in the log), and for a payload that the message
    /// refuses. Decoding again replaces the values and adds to the field list.
    bool decode(const std::string& data);

    /// The same for `size` bytes of any byte type; a null pointer counts as no bytes.
    bool decode(const void* data, u64 size);

    /// The field list, in the order of positions; fields of one position stand in the order in
    /// which the message added them. Its texts are made by this call.
    virtual std::vector<ADSBMessageField> fields() const;

    /// One line of text on the message.
    virtual std::string description() const;

    /// The seven ME bytes; empty before a decode.
    const std::string& data() const { return _data; }

    /// data() as two upper-case hexadecimal digits a byte.
    std::string dataHexString() const;

    /// The result of the last decode that got as far as the payload.
    bool valid() const { return _valid; }

    ADSBMessageType type() const { return _type; }

    /// 0 to 31; 0 before a decode.
    u8 typeCode() const { return _typeCode; }

    /// Names of this message's type; they live as long as the library.
    const std::string& typeName() const { return typeName(_type); }
    const std::string& typeFullName() const { return typeFullName(_type); }

    /// Names of any type; those of RESERVED for a value that is none.
    static const std::string& typeName(ADSBMessageType type);
    static const std::string& typeFullName(ADSBMessageType type);

    /// The type of a type code; RESERVED for one that has none.
    static ADSBMessageType typeByCode(u8 typeCode);

    /// Milliseconds since 1970-01-01 UTC. At first the whole second in which the message was built.
    u64 timeStamp() const { return _timeStamp; }
    void setTimeStamp(u64 stamp) { _timeStamp = stamp; }

    /// The receiver's amplitude, in the receiver's own unit; 0 if never set.
    u8 signalAmplitude() const { return _signalAmplitude; }
    void setSignalAmplitude(const u8& amplitude) { _signalAmplitude = amplitude; }

protected:
    explicit ADSBMessage(ADSBMessageType type);

    /// The message's own step. Runs with seven bytes in data() and typeCode() set; gives whether
    /// the payload was understood.
    virtual bool decodeImpl() = 0;

    /// Appends to the field list; decode() puts it in order.
    void addField(const ADSBMessageField& field);

private:
    friend class FieldWriter; // how the library's own messages add their fields

    /// The field list before its texts are made.
    struct FieldList {
        /// A value and the layout that makes its text. Without a layout, `value` is an index into
        /// `given`.
        struct Entry {
            const WireLayout* layout;
            std::int64_t value;
        };

        FieldList() = default;
        FieldList(const FieldList&) = default;
        FieldList(FieldList&&) noexcept = default;
        FieldList& operator=(FieldList other) noexcept; // so that both vectors are assigned or none
        ~FieldList() = default;

        std::vector<Entry> entries;
        std::vector<ADSBMessageField> given; ///< to addField()
    };

    std::string _data;
    bool _valid = false;
    u8 _typeCode = 0;
    ADSBMessageType _type;
    u64 _timeStamp;
    u8 _signalAmplitude = 0;
    FieldList _fields;
};

} // namespace tolvarin::ondrel
