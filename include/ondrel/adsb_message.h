/// @file
/// The frame that all ADS-B payloads share, and the fields by which they describe themselves.
#pragma once

#include <ondrel/export.h>
#include <ondrel/types.h>

#include <array>
#include <cstddef>
#include <string>
#include <vector>

namespace tolvarin::ondrel {

/// One bit field of an ADS-B payload with its value as text. A field may show a value that is
/// worked out from the bits, so that two fields can cover the same bits. Only exhausted memory
/// throws; the field is then as it was.
class ONDREL_EXPORT ADSBMessageField {
public:
    /// What a field holds. A meaning with "as sent" is the number in the bits.
    enum Designator : i32 {
        TYPE = 0,                ///< type of the message, as its short name
        TYPE_CODE = 1,           ///< type code, 0 to 31
        EMT_SET = 2,             ///< emitter category set; no message of the library adds it
        EMT_CAT = 3,             ///< emitter category, 0 to 7
        CHAR_1 = 4,              ///< character 1 of the callsign
        CHAR_2 = 5,              ///< character 2 of the callsign
        CHAR_3 = 6,              ///< character 3 of the callsign
        CHAR_4 = 7,              ///< character 4 of the callsign
        CHAR_5 = 8,              ///< character 5 of the callsign
        CHAR_6 = 9,              ///< character 6 of the callsign
        CHAR_7 = 10,             ///< character 7 of the callsign
        CHAR_8 = 11,             ///< character 8 of the callsign
        MOV_CODE = 12,           ///< movement code of a surface position, 0 to 127
        GND_SPD = 13,            ///< ground speed in knots, from the movement code
        HDG_STATE = 14,          ///< status bit of the heading: 1 if it is available
        HDG = 15,                ///< heading in degrees clockwise from north
        SAF = 16,                ///< single antenna flag
        NIC_SUPP_B = 17,         ///< NIC supplement B
        ALT_SRC = 18,            ///< altitude source, by the type code
        ALT_RES = 19,            ///< altitude step in feet, by the Q bit
        ALT = 20,                ///< altitude in feet
        T = 21,                  ///< time bit: 1 if the position is synchronised with UTC
        CPR_FMT = 22,            ///< even or odd zone grid of the position
        CPR_LAT = 23,            ///< CPR latitude, 17 bits as sent
        CPR_LON = 24,            ///< CPR longitude, 17 bits as sent
        SUB_TYPE_AIR_VEL = 25,   ///< subtype of a velocity
        NUC_R = 26,              ///< NUCr, 0 to 7
        DIR_EW = 27,             ///< direction of the east-west velocity
        DIR_NS = 28,             ///< direction of the north-south velocity
        VEL_EW = 29,             ///< east-west velocity, code as sent
        VEL_NS = 30,             ///< north-south velocity, code as sent
        VR_SRC = 31,             ///< source of the vertical rate
        VR_SIGN = 32,            ///< up or down
        VR = 33,                 ///< vertical rate, code as sent
        SUB_TYPE_TEST = 34,      ///< subtype of a test message
        DATA = 35,               ///< data of a test message
        SUB_TYPE_AC_STATUS = 36, ///< subtype of an aircraft status
        EMG_STATE = 37,          ///< emergency state
        MODE_A = 38,             ///< Mode A code, four octal digits
        SUB_TYPE_TG_STATUS = 39, ///< subtype of a target status
        NAC_P = 40,              ///< NACp, 0 to 15
        NIC_BARO = 41,           ///< NIC baro: 1 if the barometric altitude is cross-checked
        SIL = 42,                ///< SIL, 0 to 3
        SIL_SUPP = 43,           ///< SIL supplement: 0 for a risk per hour, 1 per sample
        SUB_TYPE_OP_STATUS = 44, ///< subtype of an operational status; no message adds it
        VER_NUM = 45,            ///< MOPS version number, 0 to 7
        NIC_SUPP_A = 46,         ///< NIC supplement A
        UNKNOWN_FIELD = 47,      ///< none; makes a field invalid
    };

    /// A field of `bits` bits at the ME position `pos`: 0 is the top bit of the first ME byte.
    /// Neither is checked against the 56 bits of the ME field.
    ADSBMessageField(Designator designator, u8 pos, u8 bits, std::string description);

    /// Copies and moves take all members.
    ///@{
    ADSBMessageField(const ADSBMessageField&) = default;
    ADSBMessageField(ADSBMessageField&&) noexcept = default;
    ADSBMessageField& operator=(const ADSBMessageField& other) {
        return *this = ADSBMessageField(other);
    }
    ADSBMessageField& operator=(ADSBMessageField&&) noexcept = default;
    ///@}

    /// What the field holds.
    Designator designator() const { return _designator; }
    /// ME position of the first bit, 0 to 55; DO-260B counts the same bits from 1.
    u8 pos() const { return _pos; }
    /// Width in bits.
    u8 bits() const { return _bits; }
    /// False for a width of 0 and for UNKNOWN_FIELD.
    bool valid() const { return _valid; }

    /// The value as text, or "NO_DESCRIPTION" when that is empty.
    const std::string& description() const;

    /// Name of this field's designator, such as "TYPE_CODE"; it lives as long as the library. The
    /// full name differs for TYPE only: "Type".
    ///@{
    const std::string& name() const { return designatorName(_designator); }
    const std::string& fullName() const { return designatorFullName(_designator); }
    ///@}

    /// Name of any designator; "--" for a value that is none. It lives as long as the library.
    ///@{
    static const std::string& designatorName(Designator designator);
    static const std::string& designatorFullName(Designator designator);
    ///@}

protected:
    /// Stores the value unchecked and changes nothing else: a new width leaves valid() as it was.
    ///@{
    void setPos(u8 pos) { _pos = pos; }
    void setBits(u8 bits) { _bits = bits; }
    void setValid(bool valid) { _valid = valid; }
    void setDescription(const std::string& description) { _description = description; }
    ///@}

private:
    Designator _designator;
    u8 _pos;
    u8 _bits;
    bool _valid;
    std::string _description;
};

struct FieldGroup;

/// The payload of an extended squitter's ME field (RTCA DO-260B, 2.2.3.2). A message decodes seven
/// bytes into its members and lists them bit field by bit field.
///
/// A message belongs to one thread at a time. Only exhausted memory throws. A decode() that it ends
/// leaves the message as it was, or not valid with each value as it was or as decoded, and can have
/// added fields to the list; after a payload of another type it is as after any refusal of one. Any
/// other operation that it ends changes nothing.
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

    /// Copies or takes over all of a message, its field list and its stamp included. Assign within
    /// one class: between two classes only the members of this base would change. A message that
    /// was moved from can be decoded again.
    ///@{
    ADSBMessage(const ADSBMessage&);
    ADSBMessage(ADSBMessage&&) noexcept;
    ADSBMessage& operator=(const ADSBMessage&);
    ADSBMessage& operator=(ADSBMessage&&) noexcept;
    ///@}

    /// Virtual: a caller deletes what ADSBDecoder::decode gave it through this class.
    virtual ~ADSBMessage();

    /// Decodes the first seven bytes of `data`. False for fewer (nothing changes then), for a type
    /// code of another kind of message (data() and typeCode() change, and the log has a line), and
    /// for a payload that the message refuses. Decoding again replaces the values and adds to the
    /// field list.
    bool decode(const std::string& data);

    /// The same for `size` bytes of any byte type; a null pointer counts as no bytes.
    bool decode(const void* data, u64 size);

    /// A new field list, in the order of positions; fields of one position stand in the order in
    /// which the message added them. Empty before a decode. Each call makes the texts again.
    virtual std::vector<ADSBMessageField> fields() const;

    /// The message as one line of text, in a form of its class.
    virtual std::string description() const;

    /// The seven ME bytes; empty before a decode.
    const std::string& data() const { return _data; }

    /// data() as two upper-case hexadecimal digits a byte.
    std::string dataHexString() const;

    /// Whether the last payload of the right type code was understood; false before a decode.
    bool valid() const { return _valid; }

    /// The kind of payload, fixed by the class.
    ADSBMessageType type() const { return _type; }

    /// The type code, 0 to 31: the first five bits of the payload; 0 before a decode.
    u8 typeCode() const { return _typeCode; }

    /// Name of this message's type, such as "POS_AIR", in full "Airborne Position"; it lives as
    /// long as the library.
    ///@{
    const std::string& typeName() const { return typeName(_type); }
    const std::string& typeFullName() const { return typeFullName(_type); }
    ///@}

    /// Name of any type; that of RESERVED for a value that is none. It lives as long as the
    /// library.
    ///@{
    static const std::string& typeName(ADSBMessageType type);
    static const std::string& typeFullName(ADSBMessageType type);
    ///@}

    /// The type of a type code (RTCA DO-260B, table 2-15); RESERVED for one that has none, and
    /// above 31.
    static ADSBMessageType typeByCode(u8 typeCode);

    /// When the payload was received, in milliseconds since 1970-01-01 UTC. At first the whole
    /// second of the system clock in which the message was built; decode() leaves it alone.
    ///@{
    u64 timeStamp() const { return _timeStamp; }
    void setTimeStamp(u64 stamp) { _timeStamp = stamp; }
    ///@}

    /// The receiver's amplitude, in the receiver's own unit; 0 if never set.
    ///@{
    u8 signalAmplitude() const { return _signalAmplitude; }
    void setSignalAmplitude(const u8& amplitude) { _signalAmplitude = amplitude; }
    ///@}

protected:
    /// A message of the type with no data yet, stamped with the current second.
    explicit ADSBMessage(ADSBMessageType type);

    /// The class's own step of decode(). Runs with seven bytes in data() and typeCode() set; gives
    /// whether the payload was understood. A class below another one calls that one's step first.
    virtual bool decodeImpl() = 0;

    /// Appends a copy to the field list, for decodeImpl() to call; decode() puts the list in order.
    void addField(const ADSBMessageField& field);

private:
    friend class PayloadAccess; // how the library's own messages read and list their fields

    // Fields with the payload that holds their values, or one field that addField() got.
    struct FieldEntry {
        const FieldGroup* group; // null: `payload` is the index of the one field
        u64 payload;
    };

    // The field list before its texts are made. The longest list of the library's messages needs no
    // memory from the heap; entries of further decodes, or of a client's class, may.
    struct FieldList {
        FieldList() = default;
        FieldList(const FieldList&) = default;
        // Leaves the other list empty.
        ONDREL_HIDDEN FieldList(FieldList&& other) noexcept;
        // By value, so that all is assigned or nothing.
        ONDREL_HIDDEN FieldList& operator=(FieldList other) noexcept;
        ~FieldList() = default;

        std::array<FieldEntry, 4> first{};
        std::vector<FieldEntry> more;        // behind the first
        std::size_t count = 0;               // in both
        std::size_t ordered = 0;             // of these, added by the end of the last decode()
        std::vector<ADSBMessageField> given; // to addField()
    };

    std::string _data;
    u64 _payload = 0; // the seven bytes of _data as one number, the first byte highest
    bool _valid = false;
    u8 _typeCode = 0;
    ADSBMessageType _type;
    u64 _timeStamp;
    u8 _signalAmplitude = 0;
    FieldList _fields;
};

} // namespace tolvarin::ondrel
