#include <ondrel/adsb_test_message.h>

#include <ondrel/log.h>

#include "text.h"
#include "wire_field.h"

namespace tolvarin::ondrel {

namespace {

const std::string moduleName = "ADSBTestMsg";

namespace layout {

constexpr WireField<5, 3> subtype{ADSBMessageField::SUB_TYPE_TEST};
constexpr WireField<8, 48> testData{ADSBMessageField::DATA};

} // namespace layout

} // namespace

ADSBTestMessage::ADSBTestMessage() : ADSBMessage(TEST) {}

bool ADSBTestMessage::decodeImpl() {
    _subtype = static_cast<u8>(addDecimal(layout::subtype));
    if (_subtype != 0) {
        Log::log(Log::Critical, moduleName, "Unknown Subtype=%u.", unsigned{_subtype});
    }
    _testData = layout::testData.bytes(data());
    addField(layout::testData.shown(text::hexBytes(_testData)));
    return true;
}

std::string ADSBTestMessage::description() const {
    return "TC=TEST, ST=" + std::to_string(_subtype);
}

} // namespace tolvarin::ondrel
