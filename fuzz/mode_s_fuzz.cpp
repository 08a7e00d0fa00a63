// A sequence of replies through one decoder. A model judges messages and log lines; what the
// decoder promises is judged once more, by rules of a few lines. Every getter and setter of the
// messages is called, and the decoder is copied, moved and assigned to itself in between.

#include <ondrel/df_messages.h>
#include <ondrel/mode_s_decoder.h>

#include "clock.h"
#include "fuzzing.h"
#include "support/decoder_model.h"
#include "support/messages.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <utility>

using namespace tolvarin::ondrel;
using fuzzing::hold;
using fuzzing::Input;

namespace {

std::int64_t now = 0;

unsigned formatOf(const std::string& frame) {
    return static_cast<u8>(frame.at(0)) >> 3U;
}

/// Parity and overlay, taken apart: the address of a reply, the interrogator of an all-call reply,
/// and 0 in a good squitter.
u32 overlayOf(const std::string& frame) {
    const unsigned bits = test::isLong(formatOf(frame)) ? 112 : 56;
    return static_cast<u32>(test::bitsOf(frame, bits - 24, 24)) ^ test::plainParity(frame, bits);
}

unsigned differentBits(const std::string& one, const std::string& other) {
    hold(one.size() == other.size());
    unsigned count = 0;
    for (unsigned i = 0; i < one.size() * 8; ++i) {
        count += test::bitOf(one, i) != test::bitOf(other, i) ? 1 : 0;
    }
    return count;
}

/// Which addresses have proved themselves, and what that allows a message to be.
class Proofs {
public:
    void judge(const std::string& received, const ModeSMessage& message) {
        const unsigned format = formatOf(received);
        const bool isSquitter = format >= 17 && format <= 19;
        const bool isRepairable = format == 17 || format == 18;
        hold(differentBits(received, message.data()) <= (isRepairable ? 2 : 0));
        const u32 address = message.icaoAddress();
        const auto known = _proved.find(address);
        const bool isKnown = known != _proved.end() && now - known->second <= 600;
        if (message.confidence() == ModeSMessage::High) {
            const bool byInterrogator = format == 11 && _answers[overlayOf(received)] >= 10;
            hold(isSquitter ? overlayOf(message.data()) == 0 : isKnown || byInterrogator);
        }
        const bool counts = format == 11 && message.confidence() != ModeSMessage::None;
        _answers[counts ? overlayOf(received) : ~0U] += 1;
        if (isKnown || counts || message.confidence() == ModeSMessage::High) {
            _proved[address] = now;
        }
    }

private:
    std::map<u32, std::int64_t> _proved; ///< the second of the last proof, by address
    std::map<u32, unsigned> _answers;    ///< believed all-call replies, by interrogator
};

void readFields(const DFMessage& message) {
    hold(!message.fields().empty());
    unsigned end = 5; // of the format
    for (const ModeSMessageField* field : message.fields()) {
        hold(field->valid() && field->pos() >= end);
        end = field->pos() + field->bits();
        hold(field->name().size() == 2 && !field->fullName().empty());
        hold(!field->description().empty());
    }
    hold(end <= message.bits());
}

/// A repair changes the frame if it finds bits, and only then. It gives the parity that is wanted,
/// as far as that has 24 bits.
void repair(const DFMessage& message, u32 wanted) {
    const u8 bits = message.bits();
    std::string frame = message.data();
    u8 first = 0;
    u8 second = 0;
    if (message.fixError1Bit(frame, first, wanted)) {
        hold(first < bits && frame == test::inverted(message.data(), {first}));
        hold(test::plainParity(frame, bits) == wanted);
    } else {
        hold(frame == message.data());
    }
    frame = message.data();
    if (message.fixError2Bits(frame, first, second, wanted)) {
        hold(first < second && second < bits);
        hold(frame == test::inverted(message.data(), {first, second}));
        hold(test::plainParity(frame, bits) == wanted);
    } else {
        hold(frame == message.data());
    }
}

/// How two bits of a long frame, chosen by these bytes, change its parity. A short frame does not
/// have most of them.
u32 differenceOf(const std::string& bytes) {
    const unsigned first = static_cast<u8>(bytes.back()) % 112;
    const unsigned second = static_cast<u8>(bytes[1]) % 112;
    return test::plainParity(test::inverted(std::string(14, '\0'), {first, second}), 112);
}

void read(const DFMessage& message, std::size_t receivedSize, u64 stamp) {
    hold(message.valid() && message.size() * 8 == message.bits());
    hold(message.data().size() == receivedSize && receivedSize >= message.size());
    hold(message.calculatedParity() == test::plainParity(message.data(), message.bits()));
    hold(message.dataHexString().size() == 2 * receivedSize);
    hold(message.icaoAddress() <= 0xFFFFFF);
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
    repair(message, message.calculatedParity() ^ message.icaoAddress());
    repair(message, message.calculatedParity() ^ differenceOf(message.data()));
}

bool same(const DFMessage& one, const DFMessage& other) {
    return one.data() == other.data() && one.description() == other.description() &&
           one.valid() == other.valid() && one.icaoAddress() == other.icaoAddress() &&
           one.confidence() == other.confidence() && one.timeStamp() == other.timeStamp() &&
           one.timeSource() == other.timeSource() &&
           one.signalAmplitude() == other.signalAmplitude() &&
           one.calculatedParity() == other.calculatedParity();
}

/// Copies and moves the message if it is of the class.
template <class Message>
void copy(const DFMessage& message) {
    if (const auto* original = dynamic_cast<const Message*>(&message)) {
        Message copied(*original);
        hold(same(copied, *original));
        const Message moved(std::move(copied));
        hold(same(moved, *original));
        copied.decode(moved.data()); // NOLINT(bugprone-use-after-move): it may be used again
        hold(same(copied, *original));
        readFields(copied);
    }
}

template <class... Messages>
void copyAs(const DFMessage& message) {
    (copy<Messages>(message), ...);
}

/// What the decoder has attached takes any value.
void setAll(ModeSMessage& message, Input& input) {
    const auto confidence = input.take<ModeSMessage::Confidence>();
    message.setConfidence(confidence);
    const auto source = input.take<ModeSMessage::TimeSource>();
    message.setTimeSource(source);
    const u64 stamp = input.take<u64>();
    message.setTimeStamp(stamp);
    const u8 amplitude = input.take<u8>();
    message.setSignalAmplitude(amplitude);
    hold(message.confidence() == confidence && message.timeSource() == source);
    hold(message.timeStamp() == stamp && message.signalAmplitude() == amplitude);
}

/// A field alone, at any place of any bytes.
template <class Field>
void decodeField(const std::string& bytes, u8 pos) {
    Field field;
    const bool decoded = field.decode(bytes.data(), bytes.size(), pos);
    hold(field.valid() == decoded);
    hold(!decoded || pos + field.bits() <= bytes.size() * 8);
    hold(field.pos() == (pos + field.bits() <= bytes.size() * 8 ? pos : 0));
    const std::string description = field.description();
    Field other(field);
    other.decode(bytes, 255); // too far for most of them
    other = field;
    hold(other.valid() == decoded && other.description() == description);
}

/// The overlay, with any number as the parity or as what it overlays.
void setOverlay(const std::string& bytes, u8 pos, u32 number) {
    ModeSMessageFieldAP address;
    address.decode(bytes, pos);
    hold(address.setParity(number) == address.icaoAddress() && address.parity() == number);
    hold(address.addressParity() == (number ^ address.icaoAddress()));
    ModeSMessageFieldPI identifier;
    identifier.decode(bytes, pos);
    hold(identifier.setParity(number) == identifier.interrogatorId());
    hold(identifier.parity() == number);
    hold(identifier.parityInterrogatorId() == (number ^ identifier.interrogatorId()));
    hold(identifier.setInterrogatorId(number) == identifier.parity());
    hold(identifier.interrogatorId() == number);
    hold(identifier.parityInterrogatorId() == (number ^ identifier.parity()));
    hold(identifier.interrogatorIdValid() == (number <= 79));
}

void decodeFields(Input& input) {
    const u8 pos = input.take<u8>();
    const std::string bytes = input.text(input.take<u8>() & 31U);
    setOverlay(bytes, pos, input.take<u32>());
    decodeField<ModeSMessageFieldAA>(bytes, pos);
    decodeField<ModeSMessageFieldAC>(bytes, pos);
    decodeField<ModeSMessageFieldAF>(bytes, pos);
    decodeField<ModeSMessageFieldAP>(bytes, pos);
    decodeField<ModeSMessageFieldCA>(bytes, pos);
    decodeField<ModeSMessageFieldCF>(bytes, pos);
    decodeField<ModeSMessageFieldFS>(bytes, pos);
    decodeField<ModeSMessageFieldID>(bytes, pos);
    decodeField<ModeSMessageFieldMB>(bytes, pos);
    decodeField<ModeSMessageFieldME>(bytes, pos);
    decodeField<ModeSMessageFieldMV>(bytes, pos);
    decodeField<ModeSMessageFieldPI>(bytes, pos);
    decodeField<ModeSMessageFieldVS>(bytes, pos);
    const auto designator = input.take<ModeSMessageField::Designator>();
    hold(ModeSMessageField::designatorName(designator).size() == 2);
    hold(!ModeSMessageField::designatorFullName(designator).empty());
    const u8 code = input.take<u8>();
    hold(DFMessage::downlinkFormatByCode(code) == std::min<int>(code, DFMessage::DF24));
}

/// A frame of 7 or 14 bytes whose parity holds, of one of eight addresses or interrogators, with up
/// to three inverted bits.
std::string takeGoodFrame(Input& input) {
    std::string frame = input.text(14);
    frame.resize(14);
    const unsigned format = formatOf(frame);
    const unsigned damage = static_cast<u8>(frame.back()) & 3U;
    const u32 overlay = static_cast<u8>(frame.back()) >> 5U;
    const bool isClear = format == 11 || (format >= 17 && format <= 19);
    if (isClear) {
        frame[1] = frame[2] = '\0';
        frame[3] = static_cast<char>(frame[3] & 7);
    }
    frame.resize(test::isLong(format) ? 11 : 4);
    frame = test::withOverlay(frame, isClear && format != 11 ? 0 : overlay);
    for (unsigned i = 0; i < damage; ++i) {
        frame =
            test::inverted(frame, {input.take<u8>() % (static_cast<unsigned>(frame.size()) * 8)});
    }
    return frame;
}

class Receiver {
public:
    void act(Input& input) {
        // The upper bits tell how much time passes and whether there is a stamp. The others are the
        // length of a frame, or something else.
        const u8 control = input.take<u8>();
        constexpr std::array<int, 4> steps = {0, 30, 300, 601}; // seconds
        now += steps.at(control >> 6U);
        const u64 stamp = control >> 5U & 1U;
        const unsigned what = control & 0x1FU;
        switch (what) {
        case 23:
            return decodeFields(input);
        case 24:
            _decoder = ModeSDecoder(_decoder);
            return;
        case 25:
            return assignToItself();
        case 26:
            return moveAway();
        case 27:
            return setAllOfNext(input);
        case 28:
        case 29:
        case 30:
            return hear(ModeSMessage::Downlink, takeGoodFrame(input), stamp);
        case 31:
            return hear(input.take<ModeSMessage::ModeSMsgType>(), input.text(14), stamp);
        default:
            return hear(ModeSMessage::Downlink, input.text(what < 16 ? what : 14), stamp);
        }
    }

private:
    void hear(ModeSMessage::ModeSMsgType type, const std::string& frame, u64 stamp) {
        _log.take();
        const std::unique_ptr<ModeSMessage> message(
            _decoder.decode(type, frame.data(), frame.size(), stamp));
        const test::Verdict expected = _model.decode(type, frame, now);
        hold(_log.take() == expected.lines && test::gradeOf(message.get()) == expected.grade);
        if (message == nullptr) {
            return; // the other decoder does not get what this one refused
        }
        const std::unique_ptr<ModeSMessage> other(_spared.decode(type, frame, stamp));
        const auto& downlink = dynamic_cast<const DFMessage&>(*message);
        hold(other != nullptr && same(downlink, dynamic_cast<const DFMessage&>(*other)));
        _log.take();
        hold(message->icaoAddress() == expected.address && message->data() == expected.data);
        _proofs.judge(frame, *message);
        read(downlink, frame.size(), stamp);
        copyAs<DF0Message, DF4Message, DF5Message, DF11Message, DF16Message, DF17Message,
               DF18Message, DF19Message, DF20Message, DF21Message>(downlink);
        message->decode(message->data());
        message->decode(frame.data(), frame.size() / 2);
    }

    /// A copy or itself, it stays as it was.
    void assignToItself() {
        ModeSDecoder& itself = _decoder;
        _decoder = itself;
        ModeSDecoder kept(_decoder);
        _decoder = std::move(itself);
        _decoder = std::move(kept);
    }

    /// What was moved from is like new: it believes no reply with an overlay.
    void moveAway() {
        ModeSDecoder taken(std::move(_decoder));
        for (u32 address = 0; address < 8; ++address) {
            const std::unique_ptr<ModeSMessage> message(
                _decoder.decode(ModeSMessage::Downlink, test::surveillance(5, address)));
            hold(message->confidence() == ModeSMessage::Low);
        }
        _decoder = std::move(taken);
    }

    static void setAllOfNext(Input& input) {
        for (const unsigned format : test::formats) {
            setAll(*test::makeMessage(format), input);
        }
    }

    test::CapturedLog _log;
    ModeSDecoder _decoder;
    ModeSDecoder _spared;
    test::DecoderModel _model;
    Proofs _proofs;
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    now = 1'700'000'000;
    clock::setSource([] { return now; });
    Input input(data, size);
    Receiver receiver;
    while (!input.empty()) {
        receiver.act(input);
    }
    return 0;
}
