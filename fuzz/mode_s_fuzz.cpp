// A sequence of replies through one decoder. Its model judges messages and log lines, and every
// getter of the messages is called.

#include <ondrel/df_messages.h>
#include <ondrel/mode_s_decoder.h>

#include "clock.h"
#include "fuzzing.h"
#include "support/decoder_model.h"

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

/// A repair changes the frame if it finds bits, and only then.
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
    test::CapturedLog log;

    Input input(data, size);
    ModeSDecoder decoder;
    test::DecoderModel model;
    while (!input.empty()) {
        // A byte tells how much time passes, stamp or not, uplink or downlink, and the length.
        const u8 control = input.take<u8>();
        now += (control >> 6) * 200;
        const u64 stamp = control >> 5 & 1U;
        const auto type = (control & 0x1F) == 0x1F ? ModeSMessage::Uplink : ModeSMessage::Downlink;
        const std::size_t length = input.left((control & 0x10) != 0 ? 14 : control & 0x0F);
        const std::uint8_t* frame = input.bytes(length);

        log.take();
        const std::unique_ptr<ModeSMessage> message(decoder.decode(type, frame, length, stamp));
        const test::Verdict expected = model.decode(type, {frame, frame + length}, now);
        hold(log.take() == expected.lines && test::gradeOf(message.get()) == expected.grade);
        if (message != nullptr) {
            hold(message->icaoAddress() == expected.address && message->data() == expected.data);
            read(dynamic_cast<const DFMessage&>(*message), length, stamp);
            message->decode(message->data());
            message->decode(frame, length / 2);
        }
    }
    return 0;
}
