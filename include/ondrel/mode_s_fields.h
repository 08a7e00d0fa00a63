/// @file
/// The named fields of Mode S messages (ICAO Annex 10 Volume IV, 3.1.2.3).
#pragma once

#include <ondrel/export.h>
#include <ondrel/types.h>

#include <string>

namespace tolvarin::ondrel {

/// One field of a Mode S message: its designator, its place in the frame and whether it decoded.
/// Fields live by value inside their message, which decodes them; they may also be used alone.
///
/// The value of a field means something only while valid() is true. Only exhausted memory throws;
/// the field is then as it was.
class ONDREL_EXPORT ModeSMessageField {
public:
    /// The standard's abbreviations. DR and UM have names but no field class.
    enum Designator : i32 {
        AA = 0,  ///< address announced
        AC = 1,  ///< altitude code
        AF = 2,  ///< application field of DF-19
        AP = 3,  ///< address/parity
        CA = 4,  ///< capability
        CF = 5,  ///< control field of DF-18
        DR = 6,  ///< downlink request; its name here is "Data selector"
        FS = 7,  ///< flight status
        ID = 8,  ///< identity
        MB = 9,  ///< message, Comm-B
        ME = 10, ///< message, extended squitter
        MV = 11, ///< message, ACAS
        PI = 12, ///< parity/interrogator identifier
        UM = 13, ///< utility message
        VS = 14, ///< vertical status
    };

    /// How the library's messages read their fields. Only the library defines it.
    struct Steps;

    /// Copies and moves take all members, the designator included.
    ///@{
    ModeSMessageField(const ModeSMessageField&) = default;
    ModeSMessageField(ModeSMessageField&&) = default;
    ModeSMessageField& operator=(const ModeSMessageField&) = default;
    ModeSMessageField& operator=(ModeSMessageField&&) = default;
    ///@}

    /// Reads the field from a frame, `pos` bits after its first bit. False when the frame ends
    /// before the field does (nothing changes then) or when the field cannot stand at `pos`.
    bool decode(const std::string& data, u8 pos);

    /// The same for `size` bytes of any byte type; a null pointer counts as no bytes.
    bool decode(const void* data, u64 size, u8 pos);

    /// Width in bits.
    virtual u8 bits() const = 0;

    /// The value as text.
    virtual std::string description() const;

    /// The designator of the field's class; it never changes.
    Designator designator() const { return _designator; }

    /// Names of the own designator, such as "AC" and "Altitude code". They live as long as the
    /// library.
    ///@{
    const std::string& name() const { return designatorName(_designator); }
    const std::string& fullName() const { return designatorFullName(_designator); }
    ///@}

    /// Names of any designator; "--" and "Unknown field" for a value that is none.
    ///@{
    static const std::string& designatorName(Designator designator);
    static const std::string& designatorFullName(Designator designator);
    ///@}

    /// Number of frame bits ahead of the field; 0 until a decode was long enough.
    u8 pos() const { return _pos; }

    /// The result of the last decode that was long enough.
    bool valid() const { return _valid; }

protected:
    /// A field at position 0 that is not valid.
    explicit ModeSMessageField(Designator designator) : _designator(designator) {}
    /// Protected: nobody deletes a field through this class.
    ~ModeSMessageField() = default;

private:
    /// Reads the value; the frame reaches to the field's last bit at least. False for a wrong
    /// `pos`.
    virtual bool decodeImpl(const std::string& data, u8 pos) = 0;

    Designator _designator;
    u8 _pos = 0;
    bool _valid = false;
};

/// AA, address announced: the aircraft address in clear. 24 bits after the first 8.
class ONDREL_EXPORT ModeSMessageFieldAA final : public ModeSMessageField {
public:
    /// A field with no value yet.
    ModeSMessageFieldAA() : ModeSMessageField(AA) {}

    u8 bits() const override { return 24; }

    /// icaoAddressHexString().
    std::string description() const override;

    /// The 24-bit address; 0 before a decode.
    u32 icaoAddress() const { return _icaoAddress; }

    /// The address in upper-case hexadecimal, two digits at least.
    std::string icaoAddressHexString() const;

private:
    bool decodeImpl(const std::string& data, u8 pos) override;

    u32 _icaoAddress = 0;
};

/// AC, altitude code (ICAO Annex 10 Volume IV, 3.1.2.6.5.4). 13 bits after the first 19.
class ONDREL_EXPORT ModeSMessageFieldAC final : public ModeSMessageField {
public:
    /// A field with no value yet.
    ModeSMessageFieldAC() : ModeSMessageField(AC) {}

    u8 bits() const override { return 13; }

    /// The altitude in decimal.
    std::string description() const override;

    /// Feet, -1000 to 203700: the code's eleven data bits, taken as a plain count of the resolution
    /// in either case. A code with the M bit set is read as if in feet.
    i32 altitude() const { return _altitude; }

    /// The step that the Q bit announces.
    AltitudeResolution altitudeResolution() const { return _altitudeResolution; }

    /// The unit that the M bit announces; altitude() does not follow it.
    ALtitudeUnit altitudeUnit() const { return _altitudeUnit; }

private:
    bool decodeImpl(const std::string& data, u8 pos) override;

    ALtitudeUnit _altitudeUnit = Feet;
    AltitudeResolution _altitudeResolution = Resolution25Ft;
    i32 _altitude = 0;
};

/// AF, application field of DF-19. 3 bits after the first 5.
class ONDREL_EXPORT ModeSMessageFieldAF final : public ModeSMessageField {
public:
    /// A field with no value yet.
    ModeSMessageFieldAF() : ModeSMessageField(AF) {}

    u8 bits() const override { return 3; }

    /// The code in decimal.
    std::string description() const override;

    /// 0 to 7; 0 announces a message in the form of an extended squitter.
    u8 code() const { return _code; }

private:
    bool decodeImpl(const std::string& data, u8 pos) override;

    u8 _code = 0;
};

/// AP, address/parity: the aircraft address overlaid on the parity (ICAO Annex 10 Volume IV,
/// 3.1.2.3.2.1.3). 24 bits after the first 32 or 88.
///
/// Always: addressParity() = parity() xor icaoAddress(), once setParity() has run.
class ONDREL_EXPORT ModeSMessageFieldAP final : public ModeSMessageField {
public:
    /// A field with no value yet.
    ModeSMessageFieldAP() : ModeSMessageField(AP) {}

    u8 bits() const override { return 24; }

    /// addressParityHexString().
    std::string description() const override;

    /// The 24 bits as received.
    u32 addressParity() const { return _addressParity; }

    /// addressParity() in upper-case hexadecimal, two digits at least.
    std::string addressParityHexString() const;

    /// The parity that the last setParity() was given; 0 before.
    u32 parity() const { return _parity; }

    /// The address that the last setParity() gave; 0 before. A damaged frame gives a wrong one.
    u32 icaoAddress() const { return _icaoAddress; }

    /// Takes `parity`, 24 bits worked out over the frame, out of the overlay. Gives the address
    /// that is left. A new decode() does not change parity() and icaoAddress().
    u32 setParity(u32 parity);

private:
    bool decodeImpl(const std::string& data, u8 pos) override;

    u32 _addressParity = 0;
    u32 _parity = 0;
    u32 _icaoAddress = 0;
};

/// CA, transponder capability (ICAO Annex 10 Volume IV, 3.1.2.5.2.2.1). 3 bits after the first 5.
class ONDREL_EXPORT ModeSMessageFieldCA final : public ModeSMessageField {
public:
    /// A field with no value yet.
    ModeSMessageFieldCA() : ModeSMessageField(CA) {}

    u8 bits() const override { return 3; }

    /// The capability in decimal.
    std::string description() const override;

    /// The raw code, 0 to 7.
    u8 capability() const { return _capability; }

private:
    bool decodeImpl(const std::string& data, u8 pos) override;

    u8 _capability = 0;
};

/// CF, control field of DF-18. 3 bits after the first 5.
class ONDREL_EXPORT ModeSMessageFieldCF final : public ModeSMessageField {
public:
    /// A field with no value yet.
    ModeSMessageFieldCF() : ModeSMessageField(CF) {}

    u8 bits() const override { return 3; }

    /// The code in decimal.
    std::string description() const override;

    /// The raw code, 0 to 7.
    u8 code() const { return _code; }

private:
    bool decodeImpl(const std::string& data, u8 pos) override;

    u8 _code = 0;
};

/// FS, flight status (ICAO Annex 10 Volume IV, 3.1.2.6.5.1). 3 bits after the first 5.
class ONDREL_EXPORT ModeSMessageFieldFS final : public ModeSMessageField {
public:
    /// The value on the wire. 6 is reserved: it decodes, and has no enumerator.
    enum FlightStatus : i32 {
        Airborne = 0,      ///< no alert, no special position identification
        OnGround = 1,      ///< no alert, no special position identification
        AirborneAlert = 2, ///< the squawk has changed or is one of an emergency
        OnGroundAlert = 3, ///< the same on the ground
        AlertSpi = 4,      ///< alert and special position identification, airborne or on ground
        Spi = 5,           ///< special position identification, airborne or on ground
        Unknown = 7,       ///< not assigned by the standard
    };

    /// A field with no value yet.
    ModeSMessageFieldFS() : ModeSMessageField(FS) {}

    u8 bits() const override { return 3; }

    /// "AIR", "GND", "AIR, ALERT", "GND, ALERT", "ALERT, SPI", "SPI"; "UNKNOWN" for 6 and 7.
    std::string description() const override;

    /// The value on the wire, 0 to 7; `Unknown` before a decode.
    FlightStatus flightStatus() const { return _flightStatus; }

private:
    bool decodeImpl(const std::string& data, u8 pos) override;

    FlightStatus _flightStatus = Unknown;
};

/// ID, identity: the Mode A code (ICAO Annex 10 Volume IV, 3.1.2.6.7.1). 13 bits after the
/// first 19.
class ONDREL_EXPORT ModeSMessageFieldID final : public ModeSMessageField {
public:
    /// A field with no value yet.
    ModeSMessageFieldID() : ModeSMessageField(ID) {}

    u8 bits() const override { return 13; }

    /// The identity as four octal digits.
    std::string description() const override;

    /// The squawk, 0 to 4095; its octal form is the code as an operator reads it.
    u32 identity() const { return _identity; }

private:
    bool decodeImpl(const std::string& data, u8 pos) override;

    u32 _identity = 0;
};

/// MB, message, Comm-B. 56 bits after the first 32; the contents stay as received.
class ONDREL_EXPORT ModeSMessageFieldMB final : public ModeSMessageField {
public:
    /// A field with no value yet.
    ModeSMessageFieldMB() : ModeSMessageField(MB) {}

    u8 bits() const override { return 56; }

    /// dataHexString().
    std::string description() const override;

    /// Seven bytes; empty before a decode.
    const std::string& data() const { return _data; }

    /// data() as two upper-case hexadecimal digits a byte.
    std::string dataHexString() const;

private:
    bool decodeImpl(const std::string& data, u8 pos) override;

    std::string _data;
};

/// ME, message, extended squitter. 56 bits after the first 32; what ADSBDecoder::decode takes.
class ONDREL_EXPORT ModeSMessageFieldME final : public ModeSMessageField {
public:
    /// A field with no value yet.
    ModeSMessageFieldME() : ModeSMessageField(ME) {}

    u8 bits() const override { return 56; }

    /// dataHexString().
    std::string description() const override;

    /// Seven bytes; empty before a decode.
    const std::string& data() const { return _data; }

    /// data() as two upper-case hexadecimal digits a byte.
    std::string dataHexString() const;

private:
    bool decodeImpl(const std::string& data, u8 pos) override;

    std::string _data;
};

/// MV, message, ACAS. 56 bits after the first 32; the contents stay as received.
class ONDREL_EXPORT ModeSMessageFieldMV final : public ModeSMessageField {
public:
    /// A field with no value yet.
    ModeSMessageFieldMV() : ModeSMessageField(MV) {}

    u8 bits() const override { return 56; }

    /// dataHexString().
    std::string description() const override;

    /// Seven bytes; empty before a decode.
    const std::string& data() const { return _data; }

    /// data() as two upper-case hexadecimal digits a byte.
    std::string dataHexString() const;

private:
    bool decodeImpl(const std::string& data, u8 pos) override;

    std::string _data;
};

/// PI, parity/interrogator identifier: the interrogator overlaid on the parity (ICAO Annex 10
/// Volume IV, 3.1.2.3.2.1.4). 24 bits after the first 32 or 88.
///
/// Always: parityInterrogatorId() = parity() xor interrogatorId(), once one of the setters has run.
class ONDREL_EXPORT ModeSMessageFieldPI final : public ModeSMessageField {
public:
    /// A field with no value yet.
    ModeSMessageFieldPI() : ModeSMessageField(PI) {}

    u8 bits() const override { return 24; }

    /// parityInterrogatorIdHexString().
    std::string description() const override;

    /// The 24 bits as received.
    u32 parityInterrogatorId() const { return _parityInterrogatorId; }

    /// parityInterrogatorId() in upper-case hexadecimal, two digits at least.
    std::string parityInterrogatorIdHexString() const;

    /// The parity after the last setParity() or setInterrogatorId(); 0 before.
    u32 parity() const { return _parity; }

    /// The 24-bit identifier after the last setParity() or setInterrogatorId(); 0 before, and in
    /// every extended squitter.
    u32 interrogatorId() const { return _interrogatorId; }

    /// True for 0 to 79: a code label of 0 to 4 in front of a four-bit interrogator code.
    bool interrogatorIdValid() const;

    /// Takes `parity`, 24 bits worked out over the frame, out of the overlay. Gives the identifier
    /// that is left. A new decode() does not change parity() and interrogatorId().
    u32 setParity(u32 parity);

    /// Takes `identifier` out of the overlay. Gives the parity that is left.
    u32 setInterrogatorId(u32 identifier);

private:
    bool decodeImpl(const std::string& data, u8 pos) override;

    u32 _parityInterrogatorId = 0;
    u32 _parity = 0;
    u32 _interrogatorId = 0;
};

/// VS, vertical status (ICAO Annex 10 Volume IV, 3.1.2.8.2.1). 1 bit after the first 5.
class ONDREL_EXPORT ModeSMessageFieldVS final : public ModeSMessageField {
public:
    /// The value on the wire.
    enum VerticalStatus : i32 {
        Airborne = 0, ///< VS bit 0
        OnGround = 1, ///< VS bit 1
    };

    /// A field with no value yet.
    ModeSMessageFieldVS() : ModeSMessageField(VS) {}

    u8 bits() const override { return 1; }

    /// "AIR" or "GND".
    std::string description() const override;

    /// The value on the wire; `Airborne` before a decode.
    VerticalStatus verticalStatus() const { return _verticalStatus; }

private:
    bool decodeImpl(const std::string& data, u8 pos) override;

    VerticalStatus _verticalStatus = Airborne;
};

} // namespace tolvarin::ondrel
