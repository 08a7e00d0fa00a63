// How each field of a Mode S message is read and written as text (ICAO Annex 10 Volume IV,
// 3.1.2.3). field_places.h has where fields stand; surveillance_codes.cpp has the altitude and
// identity codes.
//
// A field accepts only the positions at which the standard has it. Any other position is refused
// without a line in the log. The base class has already tested that the bytes reach far enough.

#include <ondrel/mode_s_fields.h>

#include "bits.h"
#include "field_places.h"
#include "keyed_rows.h"
#include "surveillance_codes.h"
#include "text.h"

#include <array>

namespace tolvarin::ondrel {

namespace {

struct DesignatorRow {
    ModeSMessageField::Designator key;
    const char* name;
    const char* fullName;
};

// The names of any value without a row, as programs may cast numbers to designators.
constexpr auto noDesignator = static_cast<ModeSMessageField::Designator>(15);

constexpr std::array<DesignatorRow, 16> designatorRows = {{
    {ModeSMessageField::AA, "AA", "Address announced"},
    {ModeSMessageField::AC, "AC", "Altitude code"},
    {ModeSMessageField::AF, "AF", "Application field"},
    {ModeSMessageField::AP, "AP", "Address/parity"},
    {ModeSMessageField::CA, "CA", "Capability"},
    {ModeSMessageField::CF, "CF", "Control field"},
    {ModeSMessageField::DR, "DR", "Data selector"},
    {ModeSMessageField::FS, "FS", "Flight status"},
    {ModeSMessageField::ID, "ID", "Identity"},
    {ModeSMessageField::MB, "MB", "Message, Comm-B"},
    {ModeSMessageField::ME, "ME", "Message, extended squitter"},
    {ModeSMessageField::MV, "MV", "Message, ACAS"},
    {ModeSMessageField::PI, "PI", "Parity/interrogator identifier"},
    {ModeSMessageField::UM, "UM", "Utility message"},
    {ModeSMessageField::VS, "VS", "Vertical status"},
    {noDesignator, "--", "Unknown field"},
}};
static_assert(keysCountFrom0(designatorRows));

const auto designatorNames = strings(designatorRows, &DesignatorRow::name);
const auto designatorFullNames = strings(designatorRows, &DesignatorRow::fullName);

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

bool ModeSMessageField::decode(const void* data, u64 size, u8 pos) {
    return decode(text::bytes(data, size), pos);
}

std::string ModeSMessageField::description() const {
    return name() + ":" + fullName();
}

const std::string& ModeSMessageField::designatorName(Designator designator) {
    return entryOrLast(designatorNames, designator);
}

const std::string& ModeSMessageField::designatorFullName(Designator designator) {
    return entryOrLast(designatorFullNames, designator);
}

// AA

bool ModeSMessageFieldAA::decodeImpl(const std::string& data, u8 pos) {
    if (pos != place::address) {
        return false;
    }
    _icaoAddress = bits::read<place::address, 24>(data);
    return true;
}

std::string ModeSMessageFieldAA::description() const {
    return icaoAddressHexString();
}

std::string ModeSMessageFieldAA::icaoAddressHexString() const {
    return text::hex(_icaoAddress);
}

// AC

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

std::string ModeSMessageFieldAC::description() const {
    return std::to_string(_altitude);
}

// AF

bool ModeSMessageFieldAF::decodeImpl(const std::string& data, u8 pos) {
    return readStatus(data, pos, _code);
}

std::string ModeSMessageFieldAF::description() const {
    return std::to_string(_code);
}

// AP

bool ModeSMessageFieldAP::decodeImpl(const std::string& data, u8 pos) {
    return readOverlay(data, pos, _addressParity);
}

std::string ModeSMessageFieldAP::description() const {
    return addressParityHexString();
}

std::string ModeSMessageFieldAP::addressParityHexString() const {
    return text::hex(_addressParity);
}

u32 ModeSMessageFieldAP::setParity(u32 parity) {
    _parity = parity;
    _icaoAddress = _addressParity ^ parity;
    return _icaoAddress;
}

// CA

bool ModeSMessageFieldCA::decodeImpl(const std::string& data, u8 pos) {
    return readStatus(data, pos, _capability);
}

std::string ModeSMessageFieldCA::description() const {
    return std::to_string(_capability);
}

// CF

bool ModeSMessageFieldCF::decodeImpl(const std::string& data, u8 pos) {
    return readStatus(data, pos, _code);
}

std::string ModeSMessageFieldCF::description() const {
    return std::to_string(_code);
}

// FS

bool ModeSMessageFieldFS::decodeImpl(const std::string& data, u8 pos) {
    u8 status = 0;
    if (!readStatus(data, pos, status)) {
        return false;
    }
    _flightStatus = static_cast<FlightStatus>(status);
    return true;
}

std::string ModeSMessageFieldFS::description() const {
    switch (_flightStatus) {
    case Airborne:
        return "AIR";
    case OnGround:
        return "GND";
    case AirborneAlert:
        return "AIR, ALERT";
    case OnGroundAlert:
        return "GND, ALERT";
    case AlertSpi:
        return "ALERT, SPI";
    case Spi:
        return "SPI";
    default: // 6 and 7, to which the standard gives no meaning
        return "UNKNOWN";
    }
}

// ID

bool ModeSMessageFieldID::decodeImpl(const std::string& data, u8 pos) {
    if (pos != place::code) {
        return false;
    }
    _identity = identityCode(bits::read<place::code, 13>(data));
    return true;
}

std::string ModeSMessageFieldID::description() const {
    return text::octal(_identity);
}

// MB

bool ModeSMessageFieldMB::decodeImpl(const std::string& data, u8 pos) {
    return readPayload(data, pos, _data);
}

std::string ModeSMessageFieldMB::description() const {
    return dataHexString();
}

std::string ModeSMessageFieldMB::dataHexString() const {
    return text::hexBytes(_data);
}

// ME

bool ModeSMessageFieldME::decodeImpl(const std::string& data, u8 pos) {
    return readPayload(data, pos, _data);
}

std::string ModeSMessageFieldME::description() const {
    return dataHexString();
}

std::string ModeSMessageFieldME::dataHexString() const {
    return text::hexBytes(_data);
}

// MV

bool ModeSMessageFieldMV::decodeImpl(const std::string& data, u8 pos) {
    return readPayload(data, pos, _data);
}

std::string ModeSMessageFieldMV::description() const {
    return dataHexString();
}

std::string ModeSMessageFieldMV::dataHexString() const {
    return text::hexBytes(_data);
}

// PI

bool ModeSMessageFieldPI::decodeImpl(const std::string& data, u8 pos) {
    return readOverlay(data, pos, _parityInterrogatorId);
}

std::string ModeSMessageFieldPI::description() const {
    return parityInterrogatorIdHexString();
}

std::string ModeSMessageFieldPI::parityInterrogatorIdHexString() const {
    return text::hex(_parityInterrogatorId);
}

// An identifier has seven bits: a code label of three bits, 0 to 4, and a code of four. Label 0
// goes with the II codes 0 to 15, the labels 1 to 4 go with the SI codes 1 to 63.
bool ModeSMessageFieldPI::interrogatorIdValid() const {
    constexpr u32 highestCodeLabel = 0x40;
    return _interrogatorId < 0x80 && (_interrogatorId & 0x70) <= highestCodeLabel;
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

// VS

// One bit. The two bits behind it are not decoded: CC and a spare bit in DF-0, spare bits in DF-16.
bool ModeSMessageFieldVS::decodeImpl(const std::string& data, u8 pos) {
    if (pos != place::status) {
        return false;
    }
    _verticalStatus = static_cast<VerticalStatus>(bits::read<place::status, 1>(data));
    return true;
}

std::string ModeSMessageFieldVS::description() const {
    return _verticalStatus == OnGround ? "GND" : "AIR";
}

} // namespace tolvarin::ondrel
