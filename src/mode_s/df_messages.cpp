// The ten downlink formats that the library decodes (ICAO Annex 10 Volume IV, 3.1.2.5 to 3.1.2.8).
// Each format is a row of fields. frame_decoding.cpp has how they are read.

#include <ondrel/df_messages.h>

#include "field_values.h"
#include "lasting.h"
#include "parity.h"
#include "text.h"

#include <array>
#include <cstddef>

namespace tolvarin::ondrel {

namespace {

/// "DF-0" to "DF-24", by format. DF-24 stands for all codes from 24 on.
std::array<std::string, DFMessage::DF24 + 1> makeFormatNames() {
    std::array<std::string, DFMessage::DF24 + 1> names;
    for (std::size_t format = 0; format < names.size(); ++format) {
        names[format] = "DF-" + std::to_string(format);
    }
    return names;
}

/// Name and value of each field: "FS: AIR; AC: 36000".
template <class First, class... Others>
std::string joined(const First& first, const Others&... others) {
    text::Line line;
    line << nameOf(first.designator()) << ": " << first;
    ((line << "; " << nameOf(others.designator()) << ": " << others), ...);
    return line;
}

} // namespace

DFMessage::DFMessage(DownlinkFormat format) : ModeSMessage(Downlink), _downlinkFormat(format) {}
DFMessage::DFMessage(const DFMessage&) = default;
DFMessage::DFMessage(DFMessage&&) noexcept = default;
DFMessage::~DFMessage() = default;

std::string DFMessage::description() const {
    return "Mode-S " + downlinkFormatName() + " Message";
}

const std::string& DFMessage::downlinkFormatName() const {
    const DownlinkFormat format = downlinkFormatByCode(static_cast<u8>(_downlinkFormat));
    static const auto& names = lasting(makeFormatNames());
    return names[static_cast<u32>(format)];
}

// The first two bits (11) tell a DF-24, so the five bits that are its code here can be 24 to 31.
DFMessage::DownlinkFormat DFMessage::downlinkFormatByCode(u8 code) {
    return code < DF24 ? static_cast<DownlinkFormat>(code) : DF24;
}

// DF-0

DF0Message::DF0Message() : DFMessage(DF0) {}

u8 DF0Message::bits() const {
    return parity::shortBits;
}

std::vector<const ModeSMessageField*> DF0Message::fields() const {
    return {&_fieldVS, &_fieldAC, &_fieldAP};
}

std::string DF0Message::description() const {
    return joined(_fieldVS, _fieldAC);
}

// DF-4

DF4Message::DF4Message() : DFMessage(DF4) {}

u8 DF4Message::bits() const {
    return parity::shortBits;
}

std::vector<const ModeSMessageField*> DF4Message::fields() const {
    return {&_fieldFS, &_fieldAC, &_fieldAP};
}

std::string DF4Message::description() const {
    return joined(_fieldFS, _fieldAC);
}

// DF-5

DF5Message::DF5Message() : DFMessage(DF5) {}

u8 DF5Message::bits() const {
    return parity::shortBits;
}

std::vector<const ModeSMessageField*> DF5Message::fields() const {
    return {&_fieldFS, &_fieldID, &_fieldAP};
}

std::string DF5Message::description() const {
    return joined(_fieldFS, _fieldID);
}

// DF-11

DF11Message::DF11Message() : DFMessage(DF11) {}

u8 DF11Message::bits() const {
    return parity::shortBits;
}

std::vector<const ModeSMessageField*> DF11Message::fields() const {
    return {&_fieldCA, &_fieldAA, &_fieldPI};
}

std::string DF11Message::description() const {
    return joined(_fieldCA, _fieldAA, _fieldPI);
}

// DF-16

DF16Message::DF16Message() : DFMessage(DF16) {}

u8 DF16Message::bits() const {
    return parity::longBits;
}

std::vector<const ModeSMessageField*> DF16Message::fields() const {
    return {&_fieldVS, &_fieldAC, &_fieldMV, &_fieldAP};
}

std::string DF16Message::description() const {
    return joined(_fieldVS, _fieldAC);
}

// DF-17

DF17Message::DF17Message() : DFMessage(DF17) {}

u8 DF17Message::bits() const {
    return parity::longBits;
}

std::vector<const ModeSMessageField*> DF17Message::fields() const {
    return {&_fieldCA, &_fieldAA, &_fieldME, &_fieldPI};
}

std::string DF17Message::description() const {
    return joined(_fieldCA, _fieldAA, _fieldME);
}

// DF-18

DF18Message::DF18Message() : DFMessage(DF18) {}

u8 DF18Message::bits() const {
    return parity::longBits;
}

std::vector<const ModeSMessageField*> DF18Message::fields() const {
    return {&_fieldCF, &_fieldAA, &_fieldME, &_fieldPI};
}

std::string DF18Message::description() const {
    return joined(_fieldCF, _fieldAA, _fieldME);
}

// DF-19

DF19Message::DF19Message() : DFMessage(DF19) {}

u8 DF19Message::bits() const {
    return parity::longBits;
}

// Only AF 0 has a published layout, that of DF-17. With any other AF the message has no other
// field.
std::vector<const ModeSMessageField*> DF19Message::fields() const {
    if (!_fieldAF.valid() || _fieldAF.code() != 0) {
        return {&_fieldAF};
    }
    return {&_fieldAF, &_fieldAA, &_fieldME, &_fieldPI};
}

std::string DF19Message::description() const {
    return joined(_fieldAF, _fieldAA, _fieldME);
}

// DF-20

DF20Message::DF20Message() : DFMessage(DF20) {}

u8 DF20Message::bits() const {
    return parity::longBits;
}

std::vector<const ModeSMessageField*> DF20Message::fields() const {
    return {&_fieldFS, &_fieldAC, &_fieldMB, &_fieldAP};
}

std::string DF20Message::description() const {
    return joined(_fieldFS, _fieldAC);
}

// DF-21

DF21Message::DF21Message() : DFMessage(DF21) {}

u8 DF21Message::bits() const {
    return parity::longBits;
}

std::vector<const ModeSMessageField*> DF21Message::fields() const {
    return {&_fieldFS, &_fieldID, &_fieldMB, &_fieldAP};
}

std::string DF21Message::description() const {
    return joined(_fieldFS, _fieldID);
}

} // namespace tolvarin::ondrel
