#include <ondrel/df_messages.h>

#include "support/bytes.h"
#include "support/captured_log.h"
#include "support/messages.h"
#include "support/movable_clock.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <set>
#include <string>
#include <type_traits>

namespace tolvarin::ondrel {
namespace {

using test::CapturedLog;
using test::formats;
using test::Lines;
using test::makeMessage;
using test::operator""_hex;

const std::string altitudeReply = "20 00 17 18 02 4E BD"_hex; // DF-4 of 4840D6, 36000 feet

TEST(ModeSMessage, IsEmptyAndHasTheWholeSecondAsStampBeforeAnyDecode) {
    const test::MovableClock clock(1'234'567'890);
    for (const unsigned format : formats) {
        const auto message = makeMessage(format);
        EXPECT_EQ(message->bits(), test::isLong(format) ? 112 : 56) << format;
        EXPECT_EQ(message->size(), test::isLong(format) ? 14 : 7) << format;
        EXPECT_FALSE(message->valid());
        EXPECT_EQ(message->data(), "");
        EXPECT_EQ(message->dataHexString(), "");
        EXPECT_EQ(message->calculatedParityHexString(), "00");
        EXPECT_EQ(message->icaoAddressHexString(), "00");
        EXPECT_EQ(message->confidence(), ModeSMessage::None);
        EXPECT_EQ(message->timeSource(), ModeSMessage::Internal);
        EXPECT_EQ(message->timeStamp(), 1'234'567'890'000U);
        EXPECT_EQ(message->signalAmplitude(), 0);
        EXPECT_EQ(message->modeSMsgType(), ModeSMessage::Downlink);
        EXPECT_EQ(message->modeSMsgTypeName(), "Downlink");
        EXPECT_EQ(message->ModeSMessage::description(), "Mode-S Downlink Format Message");
        EXPECT_EQ(message->downlinkFormat(), static_cast<int>(format));
        EXPECT_EQ(message->downlinkFormatName(), "DF-" + std::to_string(format));
        EXPECT_EQ(message->DFMessage::description(),
                  "Mode-S DF-" + std::to_string(format) + " Message");
    }
}

TEST(ModeSMessage, RefusesShorterFramesButStoresTheirBytes) {
    CapturedLog log;
    for (const unsigned format : formats) {
        for (std::size_t size = 0; size < makeMessage(format)->size(); ++size) {
            const std::string frame =
                test::head(format, 0, 0xABCDEF).append(10, '\x55').substr(0, size);
            const auto message = makeMessage(format);
            EXPECT_FALSE(message->decode(frame));
            EXPECT_FALSE(message->valid());
            EXPECT_EQ(message->calculatedParity(), 0U);
            EXPECT_EQ(message->icaoAddress(), 0U);
            EXPECT_EQ(message->data(), frame);
        }
    }
    EXPECT_EQ(log.take(), Lines{});
}

TEST(ModeSMessage, AFailedDecodeLeavesParityAddressAndFields) {
    DF4Message message;
    message.decode(altitudeReply);
    EXPECT_FALSE(message.decode("20 00"_hex));
    EXPECT_FALSE(message.valid());
    EXPECT_EQ(message.dataHexString(), "2000");
    EXPECT_EQ(message.calculatedParity(), 0x4A0E6BU);
    EXPECT_EQ(message.icaoAddress(), 0x4840D6U);
    EXPECT_EQ(message.description(), "FS: AIR; AC: 36000");
}

TEST(ModeSMessage, DecodingAgainLeavesConfidenceStampAndAmplitude) {
    DF4Message message;
    message.setConfidence(ModeSMessage::Medium);
    message.setTimeSource(ModeSMessage::External);
    message.setTimeStamp(123456789012345);
    message.setSignalAmplitude(200);
    for (const u32 address : {0x4840D6U, 0xABCDU, 0xFFFFFFU}) {
        EXPECT_TRUE(message.decode(test::surveillance(4, address)));
        EXPECT_EQ(message.icaoAddress(), address);
    }
    EXPECT_EQ(message.icaoAddressHexString(), "FFFFFF");
    EXPECT_EQ(message.confidence(), ModeSMessage::Medium);
    EXPECT_EQ(message.timeSource(), ModeSMessage::External);
    EXPECT_EQ(message.timeStamp(), 123456789012345U);
    EXPECT_EQ(message.signalAmplitude(), 200);
}

TEST(ModeSMessage, CanDecodeItsOwnBytesAndThoseOfItsField) {
    DF20Message message;
    EXPECT_TRUE(message.decode(test::surveillance(20, 0x4840D6)));
    EXPECT_TRUE(message.decode(message.data()));
    EXPECT_EQ(message.icaoAddress(), 0x4840D6U);
    EXPECT_FALSE(message.decode(message.fieldMB().data()));
    EXPECT_EQ(message.dataHexString(), "10203040506070");
}

TEST(ModeSMessage, CopiesAndMovesHaveTheirOwnFields) {
    static_assert(!std::is_copy_assignable_v<DF17Message>);
    static_assert(std::is_nothrow_move_constructible_v<DF17Message>);
    DF17Message message;
    message.decode(test::squitter(0x4840D6));
    message.setConfidence(ModeSMessage::High);
    DF17Message copy(message);
    message.decode(test::squitter(0x123456));
    const DF17Message moved(std::move(copy));
    EXPECT_EQ(moved.icaoAddress(), 0x4840D6U);
    EXPECT_EQ(moved.confidence(), ModeSMessage::High);
    EXPECT_EQ(moved.description(), "CA: 0; AA: 4840D6; ME: 202CC371C32CE0");
    EXPECT_EQ(moved.fields().at(1), &moved.constFieldAA());
}

TEST(DFMessage, MapsCodesFrom24OnToTheLastFormat) {
    for (unsigned code = 0; code <= 0xFF; ++code) {
        EXPECT_EQ(DFMessage::downlinkFormatByCode(static_cast<u8>(code)),
                  static_cast<int>(std::min(code, 24U)));
    }
}

TEST(DFMessage, RefusesTheFramesOfAllOtherFormats) {
    CapturedLog log;
    for (const unsigned format : formats) {
        for (unsigned code = 0; code < 32; ++code) {
            if (code == format) {
                continue;
            }
            const auto message = makeMessage(format);
            EXPECT_FALSE(message->decode(test::head(code, 7, 0x1FFFFF).append(10, '\0')));
            EXPECT_EQ(log.take(), Lines{"[INFO    ][DFMessage] DF format mismatch."});
            EXPECT_FALSE(message->fields().front()->valid()) << "no field changes";
            EXPECT_NE(message->calculatedParity(), 0U) << "the parity does";
        }
    }
}

/// A format that an application defines.
class OddMessage final : public DFMessage {
public:
    explicit OddMessage(DownlinkFormat format, u8 bits) : DFMessage(format), _bits(bits) {}
    u8 bits() const override { return _bits; }
    std::vector<const ModeSMessageField*> fields() const override { return {}; }

private:
    u8 _bits;
};

class UplinkMessage final : public ModeSMessage {
public:
    UplinkMessage() : ModeSMessage(Uplink) {}
    u8 bits() const override { return 0; }
    std::vector<const ModeSMessageField*> fields() const override { return {}; }

private:
    bool decodeImpl() override { return true; }
};

TEST(DFMessage, DerivedFormatsMayHaveAnyLength) {
    const std::string frame(40, '\xFF');
    for (unsigned bits = 0; bits <= 0xFF; ++bits) {
        OddMessage message(DFMessage::DF24, static_cast<u8>(bits));
        EXPECT_FALSE(message.decode(""));
        EXPECT_TRUE(message.decode(frame));
    }
    EXPECT_FALSE(OddMessage(DFMessage::DF0, 0).decode("")) << "no bits are no format";
    EXPECT_EQ(OddMessage(DFMessage::DF24, 56).downlinkFormatName(), "DF-24");
    EXPECT_EQ(OddMessage(DFMessage::DF24, 56).description(), "Mode-S DF-24 Message");
}

/// Every difference of parities that one or two wrong bits make in a long frame.
std::set<u32> repairableDifferences() {
    std::set<u32> differences;
    for (unsigned i = 0; i < 112; ++i) {
        for (unsigned j = i; j < 112; ++j) {
            const std::set<unsigned> wrong{i, j};
            const auto frame = test::inverted(std::string(14, '\0'), {wrong.begin(), wrong.end()});
            differences.insert(test::plainParity(frame, 112));
        }
    }
    return differences;
}

// Most of these differences are those of bits that a shorter frame does not have. A frame of a
// length of its own has its bits where those of a short frame are, as far as there are such bits.
TEST(DFMessage, RepairsOfAnyLengthInvertBitsOfTheFrameAlone) {
    std::set<u32> differences = repairableDifferences();
    differences.insert(1U << 24); // of no bits
    for (unsigned bits = 0; bits <= 0xFF; ++bits) {
        const OddMessage message(DFMessage::DF24, static_cast<u8>(bits));
        const unsigned end = bits == 112 ? 112 : std::min(bits, 56U);
        const std::string frame((bits + 7) / 8, '\0'); // its parity is 0
        unsigned single = 0;
        unsigned pairs = 0;
        for (const u32 difference : differences) {
            u8 first = 0;
            u8 second = 0;
            std::string copy = frame;
            if (message.fixError1Bit(copy, first, difference)) {
                ASSERT_LT(first, end);
                ASSERT_EQ(copy, test::inverted(frame, {first}));
                ++single;
            }
            copy = frame;
            if (message.fixError2Bits(copy, first, second, difference)) {
                ASSERT_LT(first, second);
                ASSERT_LT(second, end);
                ASSERT_EQ(copy, test::inverted(frame, {first, second}));
                ++pairs;
            }
        }
        // One difference for each protected bit, for each two of them, and for each with a bit of
        // the parity field.
        const unsigned dataBits = std::min(end, bits == 112 ? 88U : 32U);
        const unsigned parityBits = end - dataBits;
        EXPECT_EQ(single, dataBits + (parityBits > 0 ? 1 : 0)) << bits;
        EXPECT_EQ(pairs, dataBits * (dataBits - 1) / 2 + (parityBits > 0 ? dataBits : 0) +
                             (parityBits > 1 ? 1 : 0))
            << bits;
    }
}

TEST(ModeSMessage, AMessageWithoutBitsHasParity0) {
    UplinkMessage message;
    EXPECT_TRUE(message.decode(altitudeReply));
    EXPECT_EQ(message.calculatedParity(), 0U);
    EXPECT_EQ(message.modeSMsgTypeName(), "Uplink");
    EXPECT_EQ(message.description(), "Mode-S Uplink Format Message");
}

} // namespace
} // namespace tolvarin::ondrel
