// Test message, type code 23 (RTCA DO-260B, 2.2.3.2.7.3): its 48 bits have no fixed meaning, so
// they stay bytes.

#include <ondrel/adsb_test_message.h>

#include <ondrel/log.h>

#include "text.h"
#include "wire_field.h"

namespace tolvarin::ondrel {

namespace {

constexpr const char* moduleName = "ADSBTestMsg";

constexpr std::size_t dataBytes = 6;

/// The 48 bits of the data as six bytes, in the order in which they were sent.
std::string bytesOf(u64 value) {
    std::string bytes(dataBytes, '\0');
    for (auto byte = bytes.rbegin(); byte != bytes.rend(); ++byte) {
        *byte = static_cast<char>(value);
        value >>= 8;
    }
    return bytes;
}

std::string dataText(u64 value) {
    return text::hexBytes(bytesOf(value));
}

namespace layout {

constexpr WireField<5, 3> subtype{ADSBMessageField::SUB_TYPE_TEST};
constexpr WireField<8, 48> testData{ADSBMessageField::DATA, dataText};
constexpr FieldGroup fields{subtype, testData};

} // namespace layout

} // namespace

ADSBTestMessage::ADSBTestMessage() : ADSBMessage(TEST) {}

bool ADSBTestMessage::decodeImpl() {
    PayloadAccess payload(*this);
    _subtype = static_cast<u8>(payload.read(layout::subtype));
    if (_subtype != 0) { // reserved or of another use; the bits are kept all the same
        Log::log(Log::Critical, moduleName, "Unknown Subtype=%u.", unsigned{_subtype});
    }
    _testData = bytesOf(payload.read(layout::testData));
    payload.list(layout::fields);
    return true;
}

std::string ADSBTestMessage::description() const {
    return text::Line() << "TC=TEST, ST=" << _subtype;
}

} // namespace tolvarin::ondrel
