#include <ondrel/mode_s_decoder.h>

#include "support/bytes.h"
#include "support/decoder_model.h"
#include "support/movable_clock.h"

#include <ondrel/df_messages.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <memory>
#include <sstream>
#include <vector>

namespace tolvarin::ondrel {
namespace {

using test::inverted;
using test::Lines;
using test::squitter;
using test::surveillance;
using test::operator""_hex;

constexpr u32 known = 0x4840D6;
const std::string goodFrame = "8D 48 40 D6 20 2C C3 71 C3 2C E0 57 60 98"_hex;

using Message = std::unique_ptr<ModeSMessage>;

/// A decoder with a clock and a log that the test controls.
class ModeSDecoderTest : public testing::Test {
protected:
    ModeSDecoderTest() { log.take(); }

    char grade(const std::string& frame) { return grade(decoder, frame); }

    static char grade(ModeSDecoder& decoder, const std::string& frame) {
        const Message message(decoder.decode(ModeSMessage::Downlink, frame));
        return test::gradeOf(message.get());
    }

    void play(ModeSDecoder& receiver, const std::string& script);
    void play(const std::string& script) { play(decoder, script); }

    test::MovableClock clock;
    test::CapturedLog log;
    ModeSDecoder decoder;
};

/// Decodes the replies of a script and expects the grade of each. `sq17=H` is a squitter of DF-17
/// with good parity, `df4=L` a surveillance reply, `df4m=N` one with the M bit, `ii3=M*8` eight
/// all-call replies to interrogator 3. `+60` lets 60 seconds pass. All replies come from one
/// aircraft, but each ' adds 1 to the address.
void ModeSDecoderTest::play(ModeSDecoder& receiver, const std::string& script) {
    std::istringstream steps(script);
    for (std::string step; steps >> step;) {
        if (step.front() == '+') {
            clock.advance(std::stol(step));
            continue;
        }
        const std::string kind = step.substr(0, 2);
        const auto number = static_cast<unsigned>(std::stoul(step.substr(2)));
        const auto primes = std::count(step.begin(), step.end(), '\'');
        const u32 sender = known + static_cast<u32>(primes);
        const u32 code = step.find('m') == std::string::npos ? 0x1718 : 0x1758;
        const std::string frame = kind == "sq"   ? squitter(sender, number)
                                  : kind == "df" ? surveillance(number, sender, code)
                                                 : test::allCall(sender, number);
        const std::size_t times = step.find('*');
        const char expected = step.at(step.find('=') + 1);
        for (int i = times == std::string::npos ? 1 : std::stoi(step.substr(times + 1)); i > 0;
             --i) {
            EXPECT_EQ(grade(receiver, frame), expected) << step << " in " << script;
        }
    }
}

const char* const scripts[] = {
    // A new decoder knows no address. Replies that are not believed add none.
    "df0=L df4=L df5=L df16=L df20=L df21=L df4=L df4m=N ii0=N*12 ii3=N*12 df4=L",
    // A squitter with good parity proves its address and no other.
    "sq17=H df0=H df4=H df5=H df16=H df20=H df21=H df4'=L",
    "sq18=H df4=H df4'=L",
    "sq19=H df4=H df4'=L",
    // An address is recent for 600 seconds after the last reply that was believed.
    "sq17=H +600 df0=H +600 df4=H +600 df5=H +600 df16=H +600 df20=H +600 df21=H",
    "sq17=H +600 ii3=L +600 df4=H",
    "sq17=H +601 df4=L df4=L df5=L ii3=N sq17=H df4=H",
    "sq17=H +599 df4=H +2 df4=H +601 df4=L +600 df4=L",
    // An altitude in metres is not believed but refreshes its address; identities have no M bit.
    "sq17=H +600 df0m=N +600 df4m=N +600 df16m=N +600 df20m=N +600 df5m=H +600 df21m=H",
    "sq17=H +601 df4m=N df4=L",
    // Hits count for each interrogator. The second hit of interrogator 0 is enough.
    "sq17=H ii3=L ii3=M*8 ii3=H*5 ii0=L ii0=H*5 ii79=L ii79=M sq17'=H ii79'=M*7 ii79=H",
    // Hits add up if at most 60 seconds lie between them.
    "sq17=H ii3=L ii3=M*4 +60 ii3=M*4 +60 ii3=H +61 ii3=L ii3=M*8 ii3=H",
    // After ten hits of an interrogator, its all-call replies prove unknown addresses.
    "sq17=H ii3=L ii3=M*8 ii3'=N*2 df4'=L ii3=H ii3'=H df4'=H ii3''=H",
    "sq17=H ii0=L ii0=H*8 ii0'=N ii0=H ii0'=H",
    "sq17=H ii3=L ii3=M*8 ii3=H +60 ii3'=H +60 ii3''=H +61 ii3'''=N",
    // A reply that is not believed is no hit.
    "sq17=H ii3=L ii3=M*8 +60 ii3'=N +1 ii3=L",
    // Identifiers above 79 do not count.
    "sq17=H +600 ii80=N*12 ii16777215=N +1 df4=L",
};

TEST_F(ModeSDecoderTest, GradesReplies) {
    for (const char* script : scripts) {
        decoder = ModeSDecoder();
        play(script);
    }
}

TEST_F(ModeSDecoderTest, WritesNoLineForNoBytesAndShortReplies) {
    EXPECT_EQ(grade(""), '-');
    EXPECT_EQ(decoder.decode(ModeSMessage::Uplink, ""), nullptr);
    EXPECT_EQ(decoder.decode(ModeSMessage::Downlink, nullptr, 0), nullptr);
    EXPECT_EQ(decoder.decode(ModeSMessage::Downlink, nullptr, 0, 5), nullptr);
    for (const unsigned format : {0U, 4U, 5U, 11U, 16U, 19U, 20U, 21U}) {
        EXPECT_EQ(grade(squitter(known, format).substr(0, test::isLong(format) ? 13 : 6)), '-');
    }
    EXPECT_EQ(log.take(), Lines{});
}

TEST_F(ModeSDecoderTest, RepairsEachBitBetweenFormatAndParity) {
    for (unsigned bit = 5; bit < 88; ++bit) {
        const Message message(decoder.decode(ModeSMessage::Downlink, inverted(goodFrame, {bit})));
        ASSERT_NE(message, nullptr);
        EXPECT_EQ(message->data(), goodFrame);
        EXPECT_EQ(log.take(),
                  (Lines{"[INFO    ][DF17Message] Parity check failed.",
                         "[INFO    ][ModeSDecoder] Fix 1 bit error in DF-17 message at " +
                             std::to_string(bit) + "."}));
    }
}

TEST_F(ModeSDecoderTest, ARepairedFrameKeepsTheBytesBehindIt) {
    const std::string sent = goodFrame + "12 34 56"_hex;
    for (const std::vector<unsigned>& wrong : {std::vector{40U}, {40U, 71U}}) {
        const Message message(decoder.decode(ModeSMessage::Downlink, inverted(sent, wrong)));
        ASSERT_NE(message, nullptr);
        EXPECT_EQ(message->data(), sent);
    }
}

TEST_F(ModeSDecoderTest, StampsRepliesWithTheCallersTime) {
    const u64 second = static_cast<u64>(clock.seconds()) * 1000;
    const char* bytes = goodFrame.data();
    const void* data = bytes;
    const auto check = [](const Message& message, ModeSMessage::TimeSource source, u64 stamp) {
        ASSERT_NE(message, nullptr);
        EXPECT_EQ(message->timeSource(), source);
        EXPECT_EQ(message->timeStamp(), stamp);
    };
    const auto type = ModeSMessage::Downlink;
    check(Message(decoder.decode(type, goodFrame)), ModeSMessage::Internal, second);
    check(Message(decoder.decode(type, goodFrame, 0)), ModeSMessage::Internal, second);
    check(Message(decoder.decode(type, goodFrame, 1)), ModeSMessage::External, 1);
    check(Message(decoder.decode(type, bytes, 14)), ModeSMessage::Internal, second);
    check(Message(decoder.decode(type, data, 14, 0)), ModeSMessage::Internal, second);
    check(Message(decoder.decode(type, bytes, 14, ~u64{0})), ModeSMessage::External, ~u64{0});
    EXPECT_EQ(decoder.decode(type, bytes, 13, 1), nullptr);
}

TEST_F(ModeSDecoderTest, GradesByTheSystemClockWhateverTheStamps) {
    const auto type = ModeSMessage::Downlink;
    const Message proof(decoder.decode(type, goodFrame, 1000));
    const Message reply(decoder.decode(type, surveillance(4, known), 10'000'000));
    EXPECT_EQ(reply->confidence(), ModeSMessage::High);
}

TEST_F(ModeSDecoderTest, ReadsTheClockOnceForAReply) {
    // Each reading is 600 seconds after the one before. With a second reading, whatever it is for,
    // the address would not be recent.
    static std::int64_t reading = 0;
    clock::setSource([] { return reading += 600; });
    const auto check = [this](const std::string& frame, char expectedGrade) {
        const std::int64_t expected = reading + 600;
        const Message message(decoder.decode(ModeSMessage::Downlink, frame));
        ASSERT_NE(message, nullptr);
        EXPECT_EQ(message->timeStamp(), static_cast<u64>(expected) * 1000);
        EXPECT_EQ(reading, expected);
        EXPECT_EQ(test::gradeOf(message.get()), expectedGrade);
    };
    for (const unsigned format : {17U, 18U, 19U}) {
        check(squitter(known, format), 'H');
    }
    check(inverted(squitter(known, 17), {40}), 'H');
    for (const unsigned format : {0U, 4U, 5U, 16U, 20U, 21U}) {
        check(surveillance(format, known, 0x1718), 'H');
    }
    check(test::allCall(known, 3), 'L');
    check(surveillance(4, known, 0x1718), 'H');
}

TEST_F(ModeSDecoderTest, GradesAlikeWhateverTheClockShows) {
    constexpr std::int64_t beyond32Bits = 5'000'000'000;
    for (const std::int64_t start : {-beyond32Bits, std::int64_t{-300}, beyond32Bits}) {
        clock.advance(start - clock.seconds());
        ModeSDecoder receiver;
        play(receiver, "sq17=H +600 df4=H +601 df4=L");
        clock.advance(-1);
        play(receiver, "df4=H"); // an old address counts again if the clock is set back
        clock.advance(-beyond32Bits);
        play(receiver, "df4=H +601 df4=L");
    }
}

TEST_F(ModeSDecoderTest, CopiesAreIndependent) {
    play("sq17=H ii3=L ii3=M*8 ii3=H");
    ModeSDecoder copy(decoder);
    ModeSDecoder assigned;
    assigned = decoder;
    play(copy, "sq17'=H");
    play(copy, "df4'=H df4=H ii3''=H");
    play(assigned, "df4'=L df4=H ii3''=H");
    play(decoder, "df4'=L df4=H ii3''=H");
}

TEST_F(ModeSDecoderTest, MovesLeaveTheOtherDecoderEmpty) {
    play("sq17=H ii3=L ii3=M*8 ii3=H");
    ModeSDecoder moved(std::move(decoder));
    ModeSDecoder assigned;
    assigned = std::move(moved);
    for (ModeSDecoder* source : {&decoder, &moved}) {
        play(*source, "df4=L ii3=N sq17=H df4=H ii3=L");
    }
    play(assigned, "df4=H ii3'=H");
    ModeSDecoder& itself = assigned;
    assigned = std::move(itself);
    play(assigned, "df4=H");
}

TEST_F(ModeSDecoderTest, WritesALineWhenMadeButNotWhenCopiedOrMoved) {
    ModeSDecoder made;
    EXPECT_EQ(log.take(), Lines{"[INFO    ][ModeSDecoder] Initialized."});
    ModeSDecoder copy(made);
    ModeSDecoder moved(std::move(copy));
    copy = moved;
    moved = std::move(made);
    EXPECT_EQ(log.take(), Lines{});
}

} // namespace
} // namespace tolvarin::ondrel
