// A sequence of replies through one decoder, and everything that can be asked of the messages.

#include <ondrel/df_messages.h>
#include <ondrel/mode_s_decoder.h>

#include "clock.h"
#include "fuzzing.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>

using namespace tolvarin::ondrel;
using fuzzing::hold;
using fuzzing::Input;

namespace {

std::int64_t now = 0;

void readFields(const DFMessage& message) {
    hold(!message.fields().empty());
    for (const ModeSMessageField* field : message.fields()) {
        hold(field->valid() && field->pos() + field->bits() <= message.bits());
        hold(field->name().size() == 2 && !field->fullName().empty());
        hold(!field->description().empty());
    }
}

/// Both repairs find what they say and touch nothing but that.
void repair(const DFMessage& message, u32 wanted) {
    std::string frame = message.data();
    u8 first = 0;
    u8 second = 0;
    if (message.fixError1Bit(frame, first, wanted)) {
        hold(first < message.bits() && frame != message.data());
    } else {
        hold(frame == message.data());
    }
    frame = message.data();
    if (message.fixError2Bits(frame, first, second, wanted)) {
        hold(first < second && second < message.bits() && frame != message.data());
    } else {
        hold(frame == message.data());
    }
}

void read(const DFMessage& message, std::size_t receivedSize, u64 stamp) {
    hold(message.valid() && message.size() * 8 == message.bits());
    hold(message.data().size() == receivedSize && receivedSize >= message.size());
    hold(message.dataHexString().size() == 2 * receivedSize);
    hold(message.icaoAddress() <= 0xFFFFFF && message.calculatedParity() <= 0xFFFFFF);
    hold(message.icaoAddressHexString().size() >= 2);
    hold(message.calculatedParityHexString().size() >= 2);
    hold(message.modeSMsgType() == ModeSMessage::Downlink);
    hold(message.modeSMsgTypeName() == "Downlink" && message.downlinkFormatName().size() > 3);
    hold(!message.description().empty() && !message.DFMessage::description().empty());
    hold((message.timeSource() == ModeSMessage::External) == (stamp != 0));
    hold(message.timeStamp() == (stamp != 0 ? stamp : static_cast<u64>(now) * 1000));
    readFields(message);
    repair(message, message.calculatedParity());
    repair(message, message.icaoAddress());
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    now = 1'700'000'000;
    clock::setSource([] { return now; });
    fuzzing::checkLog();

    Input input(data, size);
    ModeSDecoder decoder;
    while (!input.empty()) {
        // One byte of control: how much time passes, a stamp or none, up or down, and the length.
        const u8 control = input.take<u8>();
        now += (control >> 6) * 200;
        const u64 stamp = control >> 5 & 1U;
        const auto type = (control & 0x1F) == 0x1F ? ModeSMessage::Uplink : ModeSMessage::Downlink;
        const std::size_t length = input.left((control & 0x10) != 0 ? 14 : control & 0x0F);
        const std::uint8_t* frame = input.bytes(length);

        const std::unique_ptr<ModeSMessage> message(decoder.decode(type, frame, length, stamp));
        if (message != nullptr) {
            hold(type == ModeSMessage::Downlink);
            read(dynamic_cast<const DFMessage&>(*message), length, stamp);
            message->decode(message->data());
            message->decode(frame, length / 2);
        }
    }
    return 0;
}
