// The ten downlink formats that the library decodes (ICAO Annex 10 Volume IV, 3.1.2.5 to 3.1.2.8).
// Each format is a row of fields; mode_s_fields.cpp has how a field is read, field_places.h has
// where it stands.
//
// The last 24 bits tell whether a frame can be checked. DF-0, 4, 5, 16, 20 and 21 overlay the
// address on the parity, so damage shows as another address. DF-11 overlays the identifier of the
// interrogator. DF-17, 18 and 19 overlay nothing, so only these three can be checked.

#include <ondrel/df_messages.h>

#include <ondrel/log.h>

#include "bits.h"
#include "field_places.h"
#include "parity.h"

#include <array>
#include <cstddef>

namespace tolvarin::ondrel {

namespace {

const std::string dfModule = "DFMessage";
const std::string df17Module = "DF17Message";
const std::string df18Module = "DF18Message";
const std::string df19Module = "DF19Message";

/// "DF-0" to "DF-24", by format. DF-24 stands for all codes from 24 on.
const std::array<std::string, DFMessage::DF24 + 1> formatNames = [] {
    std::array<std::string, DFMessage::DF24 + 1> names;
    for (std::size_t format = 0; format < names.size(); ++format) {
        names[format] = "DF-" + std::to_string(format);
    }
    return names;
}();

/// Name and value of each field: "FS: AIR; AC: 36000".
std::string joined(std::initializer_list<const ModeSMessageField*> fields) {
    std::string text;
    for (const ModeSMessageField* field : fields) {
        if (!text.empty()) {
            text += "; ";
        }
        text += field->name();
        text += ": ";
        text += field->description();
    }
    return text;
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
    return formatNames[static_cast<u32>(format)];
}

// The first two bits (11) tell a DF-24, so the five bits that are its code here can be 24 to 31.
DFMessage::DownlinkFormat DFMessage::downlinkFormatByCode(u8 code) {
    return code < DF24 ? static_cast<DownlinkFormat>(code) : DF24;
}

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

/// Steps of decodeImpl() that several formats share.
struct DFSteps {
    /// Decodes every field at its place; true if all succeeded. A field that fails does not stop
    /// the others.
    template <class... Fields>
    static bool decodeFields(DFMessage& message, Fields&... fields) {
        const u8 frameBits = message.bits();
        bool decoded = true;
        ((decoded = fields.decode(message.data(), place::of<Fields>(frameBits)) && decoded), ...);
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
    static bool decodeSquitter(DFMessage& message, const std::string& module,
                               ModeSMessageFieldPI& pi, ModeSMessageFieldAA& aa,
                               Fields&... fields) {
        const bool decoded = decodeFields(message, aa, fields..., pi);
        if (pi.setInterrogatorId(0) != message.calculatedParity()) {
            Log::log(Log::Info, module, "Parity check failed.");
            return false;
        }
        message.setIcaoAddress(aa.icaoAddress());
        return decoded;
    }
};

// DF-0

DF0Message::DF0Message() : DFMessage(DF0) {}

u8 DF0Message::bits() const {
    return parity::shortBits;
}

std::vector<const ModeSMessageField*> DF0Message::fields() const {
    return {&_fieldVS, &_fieldAC, &_fieldAP};
}

std::string DF0Message::description() const {
    return joined({&_fieldVS, &_fieldAC});
}

bool DF0Message::decodeImpl() {
    return DFMessage::decodeImpl() && DFSteps::decodeOverlaid(*this, _fieldAP, _fieldVS, _fieldAC);
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
    return joined({&_fieldFS, &_fieldAC});
}

bool DF4Message::decodeImpl() {
    return DFMessage::decodeImpl() && DFSteps::decodeOverlaid(*this, _fieldAP, _fieldFS, _fieldAC);
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
    return joined({&_fieldFS, &_fieldID});
}

bool DF5Message::decodeImpl() {
    return DFMessage::decodeImpl() && DFSteps::decodeOverlaid(*this, _fieldAP, _fieldFS, _fieldID);
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
    return joined({&_fieldCA, &_fieldAA, &_fieldPI});
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

// DF-16

DF16Message::DF16Message() : DFMessage(DF16) {}

u8 DF16Message::bits() const {
    return parity::longBits;
}

std::vector<const ModeSMessageField*> DF16Message::fields() const {
    return {&_fieldVS, &_fieldAC, &_fieldMV, &_fieldAP};
}

std::string DF16Message::description() const {
    return joined({&_fieldVS, &_fieldAC});
}

bool DF16Message::decodeImpl() {
    return DFMessage::decodeImpl() &&
           DFSteps::decodeOverlaid(*this, _fieldAP, _fieldVS, _fieldAC, _fieldMV);
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
    return joined({&_fieldCA, &_fieldAA, &_fieldME});
}

bool DF17Message::decodeImpl() {
    return DFMessage::decodeImpl() &&
           DFSteps::decodeSquitter(*this, df17Module, _fieldPI, _fieldAA, _fieldCA, _fieldME);
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
    return joined({&_fieldCF, &_fieldAA, &_fieldME});
}

bool DF18Message::decodeImpl() {
    return DFMessage::decodeImpl() &&
           DFSteps::decodeSquitter(*this, df18Module, _fieldPI, _fieldAA, _fieldCF, _fieldME);
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
    return joined({&_fieldAF, &_fieldAA, &_fieldME});
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

// DF-20

DF20Message::DF20Message() : DFMessage(DF20) {}

u8 DF20Message::bits() const {
    return parity::longBits;
}

std::vector<const ModeSMessageField*> DF20Message::fields() const {
    return {&_fieldFS, &_fieldAC, &_fieldMB, &_fieldAP};
}

std::string DF20Message::description() const {
    return joined({&_fieldFS, &_fieldAC});
}

bool DF20Message::decodeImpl() {
    return DFMessage::decodeImpl() &&
           DFSteps::decodeOverlaid(*this, _fieldAP, _fieldFS, _fieldAC, _fieldMB);
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
    return joined({&_fieldFS, &_fieldID});
}

bool DF21Message::decodeImpl() {
    return DFMessage::decodeImpl() &&
           DFSteps::decodeOverlaid(*this, _fieldAP, _fieldFS, _fieldID, _fieldMB);
}

} // namespace tolvarin::ondrel
