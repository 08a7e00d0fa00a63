// The names of fields, and their values as text (ICAO Annex 10 Volume IV, 3.1.2.3).
// frame_decoding.cpp has how they are read.

#include <ondrel/mode_s_fields.h>

#include "keyed_rows.h"
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

std::string ModeSMessageFieldAA::description() const {
    return icaoAddressHexString();
}

std::string ModeSMessageFieldAA::icaoAddressHexString() const {
    return text::hex(_icaoAddress);
}

// AC

std::string ModeSMessageFieldAC::description() const {
    return std::to_string(_altitude);
}

// AF

std::string ModeSMessageFieldAF::description() const {
    return std::to_string(_code);
}

// AP

std::string ModeSMessageFieldAP::description() const {
    return addressParityHexString();
}

std::string ModeSMessageFieldAP::addressParityHexString() const {
    return text::hex(_addressParity);
}

// CA

std::string ModeSMessageFieldCA::description() const {
    return std::to_string(_capability);
}

// CF

std::string ModeSMessageFieldCF::description() const {
    return std::to_string(_code);
}

// FS

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

std::string ModeSMessageFieldID::description() const {
    return text::octal(_identity);
}

// MB

std::string ModeSMessageFieldMB::description() const {
    return dataHexString();
}

std::string ModeSMessageFieldMB::dataHexString() const {
    return text::hexBytes(_data);
}

// ME

std::string ModeSMessageFieldME::description() const {
    return dataHexString();
}

std::string ModeSMessageFieldME::dataHexString() const {
    return text::hexBytes(_data);
}

// MV

std::string ModeSMessageFieldMV::description() const {
    return dataHexString();
}

std::string ModeSMessageFieldMV::dataHexString() const {
    return text::hexBytes(_data);
}

// PI

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

// VS

std::string ModeSMessageFieldVS::description() const {
    return _verticalStatus == OnGround ? "GND" : "AIR";
}

} // namespace tolvarin::ondrel
