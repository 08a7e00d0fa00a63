// How frames are read: the fields, and the ten downlink formats made of them (ICAO Annex 10 Volume
// IV, 3.1.2.3 and 3.1.2.5 to 3.1.2.8). field_places.h has where fields stand;
// surveillance_codes.cpp has the altitude and identity codes. All is in one file, so that the
// compiler makes one piece of code for each format, without virtual calls. Decoding and tracking a
// reply takes 5 % less time that way (road of the benchmarks).
//
// The last 24 bits tell whether a frame can be checked. DF-0, 4, 5, 16, 20 and 21 overlay the
// address on the parity, so damage shows as another address. DF-11 overlays the identifier of the
// interrogator. DF-17, 18 and 19 overlay nothing, so only these three can be checked.

#include <ondrel/df_messages.h>

#include <ondrel/log.h>

#include "bits.h"
#include "field_places.h"
#include "parity.h"
#include "surveillance_codes.h"

#include <string>

namespace tolvarin::ondrel {

namespace {

constexpr const char* dfModule = "DFMessage";
constexpr const char* df17Module = "DF17Message";
constexpr const char* df18Module = "DF18Message";
constexpr const char* df19Module = "DF19Message";

/// Reads the three bits that CA, CF, AF and FS share.
bool readStatus(const std::string& data, u8 pos, u8& value) {
    if (pos != place::status) {
        return false;
    }
    value = static_cast<u8>(bits::read<place::status, 3>(data));
    return true;
}

/// Reads the 24 bits that AP and PI share. They are parity and overlay together; only the message
/// knows the parity, so it takes the two apart afterwards.
bool readOverlay(const std::string& data, u8 pos, u32& value) {
    switch (pos) {
    case place::shortOverlay:
        value = bits::read<place::shortOverlay, 24>(data);
        return true;
    case place::longOverlay:
        value = bits::read<place::longOverlay, 24>(data);
        return true;
    default:
        return false;
    }
}

/// Reads the seven bytes that MB, ME and MV share. They stay as received: the ADS-B layer reads ME,
/// and the library interprets neither Comm-B nor ACAS messages.
bool readPayload(const std::string& data, u8 pos, std::string& value) {
    if (pos != place::payload) {
        return false;
    }
    value = std::string(&data[place::payload / 8], 7);
    return true;
}

} // namespace

// Fields. Each accepts only the positions at which the standard has it. Any other position is
// refused without a line in the log. decodeField() has tested that the bytes reach far enough.

bool ModeSMessageFieldAA::decodeImpl(const std::string& data, u8 pos) {
    if (pos != place::address) {
        return false;
    }
    _icaoAddress = bits::read<place::address, 24>(data);
    return true;
}

bool ModeSMessageFieldAC::decodeImpl(const std::string& data, u8 pos) {
    if (pos != place::code) {
        return false;
    }
    const AltitudeCode code = altitudeCode(bits::read<place::code, 13>(data));
    _altitudeUnit = code.unit;
    _altitudeResolution = code.resolution;
    _altitude = code.feet;
    return true;
}

bool ModeSMessageFieldAF::decodeImpl(const std::string& data, u8 pos) {
    return readStatus(data, pos, _code);
}

bool ModeSMessageFieldAP::decodeImpl(const std::string& data, u8 pos) {
    return readOverlay(data, pos, _addressParity);
}

bool ModeSMessageFieldCA::decodeImpl(const std::string& data, u8 pos) {
    return readStatus(data, pos, _capability);
}

bool ModeSMessageFieldCF::decodeImpl(const std::string& data, u8 pos) {
    return readStatus(data, pos, _code);
}

bool ModeSMessageFieldFS::decodeImpl(const std::string& data, u8 pos) {
    u8 status = 0;
    if (!readStatus(data, pos, status)) {
        return false;
    }
    _flightStatus = static_cast<FlightStatus>(status);
    return true;
}

bool ModeSMessageFieldID::decodeImpl(const std::string& data, u8 pos) {
    if (pos != place::code) {
        return false;
    }
    _identity = identityCode(bits::read<place::code, 13>(data));
    return true;
}

bool ModeSMessageFieldMB::decodeImpl(const std::string& data, u8 pos) {
    return readPayload(data, pos, _data);
}

bool ModeSMessageFieldME::decodeImpl(const std::string& data, u8 pos) {
    return readPayload(data, pos, _data);
}

bool ModeSMessageFieldMV::decodeImpl(const std::string& data, u8 pos) {
    return readPayload(data, pos, _data);
}

bool ModeSMessageFieldPI::decodeImpl(const std::string& data, u8 pos) {
    return readOverlay(data, pos, _parityInterrogatorId);
}

// One bit. The two bits behind it are not decoded: CC and a spare bit in DF-0, spare bits in DF-16.
bool ModeSMessageFieldVS::decodeImpl(const std::string& data, u8 pos) {
    if (pos != place::status) {
        return false;
    }
    _verticalStatus = static_cast<VerticalStatus>(bits::read<place::status, 1>(data));
    return true;
}

u32 ModeSMessageFieldAP::setParity(u32 parity) {
    _parity = parity;
    _icaoAddress = _addressParity ^ parity;
    return _icaoAddress;
}

u32 ModeSMessageFieldPI::setParity(u32 parity) {
    _parity = parity;
    _interrogatorId = _parityInterrogatorId ^ parity;
    return _interrogatorId;
}

u32 ModeSMessageFieldPI::setInterrogatorId(u32 identifier) {
    _interrogatorId = identifier;
    _parity = _parityInterrogatorId ^ identifier;
    return _parity;
}

struct ModeSMessageField::Steps {
    /// Reads a field, `pos` bits after the first bit of the frame. False when the frame ends before
    /// the field does (nothing changes then) or when the field cannot stand at `pos`.
    ///
    /// A template, so that for a field of a known class no call is virtual.
    template <class Field>
    static bool decodeField(Field& field, const std::string& data, u8 pos) {
        if (data.size() * 8 < u64{pos} + field.bits()) {
            return false;
        }
        ModeSMessageField& base = field;
        base._pos = pos;
        base._valid = base.decodeImpl(data, pos);
        return base._valid;
    }
};

/// Steps of decodeImpl() that several formats share.
struct DFSteps {
    /// Decodes every field at its place; true if all succeeded. A field that fails does not stop
    /// the others.
    template <class... Fields>
    static bool decodeFields(DFMessage& message, Fields&... fields) {
        const u8 frameBits = message.bits();
        bool decoded = true;
        ((decoded = ModeSMessageField::Steps::decodeField(fields, message.data(),
                                                          place::of<Fields>(frameBits)) &&
                    decoded),
         ...);
        return decoded;
    }

    /// Decodes a reply whose address is overlaid on its parity. Such a reply cannot be checked: a
    /// damaged one gives another address. The decoder judges the address afterwards.
    template <class... Fields>
    static bool decodeOverlaid(DFMessage& message, ModeSMessageFieldAP& ap, Fields&... fields) {
        const bool decoded = decodeFields(message, fields..., ap);
        message.setIcaoAddress(ap.setParity(message.calculatedParity()));
        return decoded;
    }

    /// Decodes a squitter. Its parity has no overlay (the identifier is 0), so it can be checked.
    /// If the check fails, the log gets a line and the address is not set. The fields stay as
    /// decoded: the decoder needs the received parity for a repair.
    template <class... Fields>
    static bool decodeSquitter(DFMessage& message, const char* module, ModeSMessageFieldPI& pi,
                               ModeSMessageFieldAA& aa, Fields&... fields) {
        const bool decoded = decodeFields(message, aa, fields..., pi);
        if (pi.setInterrogatorId(0) != message.calculatedParity()) {
            Log::log(Log::Info, module, "Parity check failed.");
            return false;
        }
        message.setIcaoAddress(aa.icaoAddress());
        return decoded;
    }
};

bool ModeSMessageField::decode(const std::string& data, u8 pos) {
    return Steps::decodeField(*this, data, pos);
}

// Formats

bool DFMessage::decodeImpl() {
    // decode() tests the length too. But a subclass of a client can get here without decode(), and
    // its size() can be 0.
    if (data().empty() || data().size() < size()) {
        return false;
    }
    const auto code = static_cast<u8>(bits::read<0, 5>(data()));
    if (downlinkFormatByCode(code) != _downlinkFormat) {
        Log::log(Log::Info, dfModule, "DF format mismatch.");
        return false;
    }
    return true;
}

bool DF0Message::decodeImpl() {
    return DFMessage::decodeImpl() && DFSteps::decodeOverlaid(*this, _fieldAP, _fieldVS, _fieldAC);
}

bool DF4Message::decodeImpl() {
    return DFMessage::decodeImpl() && DFSteps::decodeOverlaid(*this, _fieldAP, _fieldFS, _fieldAC);
}

bool DF5Message::decodeImpl() {
    return DFMessage::decodeImpl() && DFSteps::decodeOverlaid(*this, _fieldAP, _fieldFS, _fieldID);
}

bool DF11Message::decodeImpl() {
    if (!DFMessage::decodeImpl()) {
        return false;
    }
    const bool decoded = DFSteps::decodeFields(*this, _fieldCA, _fieldAA, _fieldPI);
    // What the parity leaves of PI is the interrogator identifier. Damage makes a wrong identifier,
    // which the decoder judges. It is no reason to refuse the reply.
    _fieldPI.setParity(calculatedParity());
    setIcaoAddress(_fieldAA.icaoAddress());
    return decoded;
}

bool DF16Message::decodeImpl() {
    return DFMessage::decodeImpl() &&
           DFSteps::decodeOverlaid(*this, _fieldAP, _fieldVS, _fieldAC, _fieldMV);
}

bool DF17Message::decodeImpl() {
    return DFMessage::decodeImpl() &&
           DFSteps::decodeSquitter(*this, df17Module, _fieldPI, _fieldAA, _fieldCA, _fieldME);
}

bool DF18Message::decodeImpl() {
    return DFMessage::decodeImpl() &&
           DFSteps::decodeSquitter(*this, df18Module, _fieldPI, _fieldAA, _fieldCF, _fieldME);
}

bool DF19Message::decodeImpl() {
    if (!DFMessage::decodeImpl()) {
        return false;
    }
    DFSteps::decodeFields(*this, _fieldAF);
    if (_fieldAF.code() != 0) {
        Log::log(Log::Info, df19Module, "AF = %u, reserved for military applications.",
                 static_cast<unsigned>(_fieldAF.code()));
        return true;
    }
    return DFSteps::decodeSquitter(*this, df19Module, _fieldPI, _fieldAA, _fieldME);
}

bool DF20Message::decodeImpl() {
    return DFMessage::decodeImpl() &&
           DFSteps::decodeOverlaid(*this, _fieldAP, _fieldFS, _fieldAC, _fieldMB);
}

bool DF21Message::decodeImpl() {
    return DFMessage::decodeImpl() &&
           DFSteps::decodeOverlaid(*this, _fieldAP, _fieldFS, _fieldID, _fieldMB);
}

} // namespace tolvarin::ondrel
