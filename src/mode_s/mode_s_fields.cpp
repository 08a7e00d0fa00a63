// The names of fields, and their values as text (ICAO Annex 10 Volume IV, 3.1.2.3).
// frame_decoding.cpp has how they are read.

#include <ondrel/mode_s_fields.h>

#include "field_values.h"
#include "keyed_rows.h"
#include "lasting.h"
#include "text.h"

#include <array>

namespace tolvarin::ondrel {

namespace {

struct DesignatorRow {
    ModeSMessageField::Designator key;
    std::string_view name;
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

template <class Field>
std::string valueText(const Field& field) {
    text::Line line;
    line << field;
    return line;
}

} // namespace

std::string_view nameOf(ModeSMessageField::Designator designator) {
    return entryOrLast(designatorRows, designator).name;
}

bool ModeSMessageField::decode(const void* data, u64 size, u8 pos) {
    return decode(text::bytes(data, size), pos);
}

std::string ModeSMessageField::description() const {
    return name() + ":" + fullName();
}

const std::string& ModeSMessageField::designatorName(Designator designator) {
    static const auto& names = lasting(strings(designatorRows, &DesignatorRow::name));
    return entryOrLast(names, designator);
}

const std::string& ModeSMessageField::designatorFullName(Designator designator) {
    static const auto& names = lasting(strings(designatorRows, &DesignatorRow::fullName));
    return entryOrLast(names, designator);
}

// AA

text::Line& operator<<(text::Line& line, const ModeSMessageFieldAA& field) {
    return line.hex(field.icaoAddress());
}

std::string ModeSMessageFieldAA::description() const {
    return valueText(*this);
}

std::string ModeSMessageFieldAA::icaoAddressHexString() const {
    return text::hex(_icaoAddress);
}

// AC

text::Line& operator<<(text::Line& line, const ModeSMessageFieldAC& field) {
    return line << field.altitude();
}

std::string ModeSMessageFieldAC::description() const {
    return valueText(*this);
}

// AF

text::Line& operator<<(text::Line& line, const ModeSMessageFieldAF& field) {
    return line << field.code();
}

std::string ModeSMessageFieldAF::description() const {
    return valueText(*this);
}

// AP

std::string ModeSMessageFieldAP::description() const {
    return addressParityHexString();
}

std::string ModeSMessageFieldAP::addressParityHexString() const {
    return text::hex(_addressParity);
}

// CA

text::Line& operator<<(text::Line& line, const ModeSMessageFieldCA& field) {
    return line << field.capability();
}

std::string ModeSMessageFieldCA::description() const {
    return valueText(*this);
}

// CF

text::Line& operator<<(text::Line& line, const ModeSMessageFieldCF& field) {
    return line << field.code();
}

std::string ModeSMessageFieldCF::description() const {
    return valueText(*this);
}

// FS

text::Line& operator<<(text::Line& line, const ModeSMessageFieldFS& field) {
    switch (field.flightStatus()) {
    case ModeSMessageFieldFS::Airborne:
        return line << "AIR";
    case ModeSMessageFieldFS::OnGround:
        return line << "GND";
    case ModeSMessageFieldFS::AirborneAlert:
        return line << "AIR, ALERT";
    case ModeSMessageFieldFS::OnGroundAlert:
        return line << "GND, ALERT";
    case ModeSMessageFieldFS::AlertSpi:
        return line << "ALERT, SPI";
    case ModeSMessageFieldFS::Spi:
        return line << "SPI";
    default: // 6 and 7, to which the standard gives no meaning
        return line << "UNKNOWN";
    }
}

std::string ModeSMessageFieldFS::description() const {
    return valueText(*this);
}

// ID

text::Line& operator<<(text::Line& line, const ModeSMessageFieldID& field) {
    return line.octal(field.identity());
}

std::string ModeSMessageFieldID::description() const {
    return valueText(*this);
}

// MB

std::string ModeSMessageFieldMB::description() const {
    return dataHexString();
}

std::string ModeSMessageFieldMB::dataHexString() const {
    return text::hexBytes(_data);
}

// ME

text::Line& operator<<(text::Line& line, const ModeSMessageFieldME& field) {
    return line.hexBytes(field.data());
}

std::string ModeSMessageFieldME::description() const {
    return valueText(*this);
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

text::Line& operator<<(text::Line& line, const ModeSMessageFieldPI& field) {
    return line.hex(field.parityInterrogatorId());
}

std::string ModeSMessageFieldPI::description() const {
    return valueText(*this);
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

text::Line& operator<<(text::Line& line, const ModeSMessageFieldVS& field) {
    return line << (field.verticalStatus() == ModeSMessageFieldVS::OnGround ? "GND" : "AIR");
}

std::string ModeSMessageFieldVS::description() const {
    return valueText(*this);
}

} // namespace tolvarin::ondrel
