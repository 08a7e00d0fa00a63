#include <ondrel/df_messages.h>

#include "support/bytes.h"
#include "support/captured_log.h"
#include "support/messages.h"

#include <gtest/gtest.h>

namespace tolvarin::ondrel {
namespace {

using test::CapturedLog;
using test::Lines;
using test::makeMessage;
using test::operator""_hex;

constexpr u32 address = 0x4840D6;

unsigned formatOf(const std::string& frame) {
    return static_cast<u8>(frame.front()) >> 3U;
}

/// Decodes a frame with the class of its format. Gives the result, address, description, each field
/// with its position, and the log lines.
Lines decoded(const std::string& frame) {
    CapturedLog log;
    const auto message = makeMessage(formatOf(frame));
    const bool good = message->decode(frame);
    EXPECT_EQ(message->valid(), good);
    std::string fields;
    for (const ModeSMessageField* field : message->fields()) {
        EXPECT_TRUE(field->valid()) << field->name();
        fields += (fields.empty() ? "" : " ") + field->name() + "@" + std::to_string(field->pos()) +
                  "=" + field->description();
    }
    Lines all = {good ? "good" : "bad", message->icaoAddressHexString(), message->description(),
                 fields};
    for (const std::string& line : log.take()) {
        all.push_back(line);
    }
    return all;
}

TEST(DFMessages, DecodeRepliesThatHaveTheAddressOnTheParity) {
    EXPECT_EQ(decoded("04 00 17 18 2D DD AE"_hex),
              (Lines{"good", "4840D6", "VS: GND; AC: 36000", "VS@5=GND AC@19=36000 AP@32=2DDDAE"}));
    EXPECT_EQ(decoded("20 00 17 18 02 4E BD"_hex),
              (Lines{"good", "4840D6", "FS: AIR; AC: 36000", "FS@5=AIR AC@19=36000 AP@32=24EBD"}));
    EXPECT_EQ(decoded("28 00 0A AA 02 E4 1F"_hex),
              (Lines{"good", "4840D6", "FS: AIR; ID: 7700", "FS@5=AIR ID@19=7700 AP@32=2E41F"}));
    EXPECT_EQ(decoded("84 00 17 18 00 00 00 00 00 00 00 8C C6 F4"_hex),
              (Lines{"good", "4840D6", "VS: GND; AC: 36000",
                     "VS@5=GND AC@19=36000 MV@32=00000000000000 AP@88=8CC6F4"}));
    EXPECT_EQ(decoded("A0 00 17 18 10 00 00 00 00 00 00 DB 53 40"_hex),
              (Lines{"good", "4840D6", "FS: AIR; AC: 36000",
                     "FS@5=AIR AC@19=36000 MB@32=10000000000000 AP@88=DB5340"}));
    EXPECT_EQ(decoded("A8 00 0A AA 10 00 00 00 00 00 00 B0 65 2A"_hex),
              (Lines{"good", "4840D6", "FS: AIR; ID: 7700",
                     "FS@5=AIR ID@19=7700 MB@32=10000000000000 AP@88=B0652A"}));
}

TEST(DFMessages, DecodeAllCallRepliesOfAnyParity) {
    EXPECT_EQ(decoded("5D 48 40 D6 F8 74 0F"_hex),
              (Lines{"good", "4840D6", "CA: 5; AA: 4840D6; PI: F8740F",
                     "CA@5=5 AA@8=4840D6 PI@32=F8740F"}));
    EXPECT_EQ(decoded("5D 48 40 D6 C0 FF EE"_hex),
              (Lines{"good", "4840D6", "CA: 5; AA: 4840D6; PI: C0FFEE",
                     "CA@5=5 AA@8=4840D6 PI@32=C0FFEE"}));
}

TEST(DFMessages, DecodeSquitters) {
    const std::string rest = " AA@8=4840D6 ME@32=202CC371C32CE0 PI@88=";
    EXPECT_EQ(decoded("8D 48 40 D6 20 2C C3 71 C3 2C E0 57 60 98"_hex),
              (Lines{"good", "4840D6", "CA: 5; AA: 4840D6; ME: 202CC371C32CE0",
                     "CA@5=5" + rest + "576098"}));
    EXPECT_EQ(decoded("90 48 40 D6 20 2C C3 71 C3 2C E0 2A 6C 6D"_hex),
              (Lines{"good", "4840D6", "CF: 0; AA: 4840D6; ME: 202CC371C32CE0",
                     "CF@5=0" + rest + "2A6C6D"}));
    EXPECT_EQ(decoded("95 48 40 D6 20 2C C3 71 C3 2C E0 EC 2C FC"_hex),
              (Lines{"good", "4840D6", "CF: 5; AA: 4840D6; ME: 202CC371C32CE0",
                     "CF@5=5" + rest + "EC2CFC"}));
    EXPECT_EQ(decoded("98 48 40 D6 20 2C C3 71 C3 2C E0 E9 FB B6"_hex),
              (Lines{"good", "4840D6", "AF: 0; AA: 4840D6; ME: 202CC371C32CE0",
                     "AF@5=0" + rest + "E9FBB6"}));
}

TEST(DFMessages, HaveFieldsButNoAddressIfTheParityIsWrong) {
    const std::string rest = " AA@8=4840D6 ME@32=202CC371C32CE0 PI@88=";
    EXPECT_EQ(decoded("8D 48 40 D6 20 AC C3 71 C3 2C E0 57 60 98"_hex),
              (Lines{"bad", "00", "CA: 5; AA: 4840D6; ME: 20ACC371C32CE0",
                     "CA@5=5 AA@8=4840D6 ME@32=20ACC371C32CE0 PI@88=576098",
                     "[INFO    ][DF17Message] Parity check failed."}));
    EXPECT_EQ(decoded("90 48 40 D6 20 2C C3 71 C3 2C E0 2A 6C 6C"_hex),
              (Lines{"bad", "00", "CF: 0; AA: 4840D6; ME: 202CC371C32CE0",
                     "CF@5=0" + rest + "2A6C6C", "[INFO    ][DF18Message] Parity check failed."}));
    EXPECT_EQ(decoded("98 48 40 D6 20 2C C3 71 C3 2C E0 E9 FB B7"_hex),
              (Lines{"bad", "00", "AF: 0; AA: 4840D6; ME: 202CC371C32CE0",
                     "AF@5=0" + rest + "E9FBB7", "[INFO    ][DF19Message] Parity check failed."}));
}

TEST(DFMessages, ReadOnlyTheApplicationNumberOfMilitaryApplications) {
    for (unsigned application = 1; application < 8; ++application) {
        const std::string number = std::to_string(application);
        const std::string line =
            "[INFO    ][DF19Message] AF = " + number + ", reserved for military applications.";
        EXPECT_EQ(
            decoded(test::inverted(test::squitter(address, 19, application), {100})),
            (Lines{"good", "00", "AF: " + number + "; AA: 00; ME: ", "AF@5=" + number, line}));
    }
    DF19Message message;
    EXPECT_EQ(message.fields().size(), 1U) << "before any decode";
    message.decode(test::squitter(address, 19, 1));
    EXPECT_FALSE(message.fieldAA().valid() || message.fieldME().valid() ||
                 message.fieldPI().valid());
}

} // namespace
} // namespace tolvarin::ondrel
