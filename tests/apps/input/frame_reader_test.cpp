#include "apps/input/frame_reader.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <string>
#include <vector>

namespace tolvarin::ondrel::client {

namespace {

using namespace std::string_literals;

struct FramesRead {
    std::vector<Reply> replies;
    std::vector<std::string> unreadable; ///< place and reason
    u64 modeAC = 0;
};

/// Reads bytes that come in pieces of that size.
FramesRead framesOf(const std::string& content, std::size_t piece = 1000) {
    FrameReader reader(ReceiverCounter::Kind::TwelveMHz);
    ByteBuffer bytes;
    FramesRead result;
    std::size_t taken = 0;
    bool atEnd = false;
    while (true) {
        Reply reply;
        const auto found = reader.next(bytes, atEnd, reply);
        if (found == ReplyReader::Found::Reply) {
            result.replies.push_back(reply);
        } else if (found == ReplyReader::Found::Unreadable) {
            result.unreadable.push_back(reader.unreadable().place + ": " +
                                        reader.unreadable().reason);
        } else if (atEnd) {
            break;
        } else {
            const ByteBuffer::Room room = bytes.room();
            const std::size_t count = content.copy(room.begin, std::min(room.size, piece), taken);
            bytes.add(count);
            taken += count;
            atEnd = count == 0;
        }
    }
    result.modeAC = reader.modeAC();
    return result;
}

const std::string squitter = "\x8D\x40\x62\x1D\x58\xC3\x82\xD6\x90\xC8\xAC\x28\x63\xA7"s;
const std::string allCall = "\x5D\xA0\x14\x88\x14\x07\x3A"s;
const std::string longFrame = "\x1A"s + "3" + "\x00\x00\x00\x00\x2E\xE0\x64"s + squitter;
const std::string shortFrame = "\x1A"s + "2" + "\x00\x00\x00\x00\x5D\xC0\x65"s + allCall;

TEST(FrameReader, GivesBytesCounterAndSignal) {
    const std::string modeAC = "\x1A"s + "1" + "\x00\x00\x00\x00\x00\x01\x50\x12\x34"s;
    const std::string status = "\x1A"s + "4" + std::string(30, '\x07');
    for (const std::size_t piece : {std::size_t{1}, std::size_t{2}, std::size_t{1000}}) {
        const FramesRead read =
            framesOf(longFrame + modeAC + shortFrame + status + longFrame, piece);
        ASSERT_EQ(read.replies.size(), 3U);
        EXPECT_EQ(read.replies[0].bytes, squitter);
        EXPECT_EQ(read.replies[0].stampMs, 1U);
        EXPECT_TRUE(read.replies[0].byCounter);
        EXPECT_EQ(read.replies[0].signalAmplitude, 0x64);
        EXPECT_EQ(read.replies[1].bytes, allCall);
        EXPECT_EQ(read.replies[1].stampMs, 2U);
        EXPECT_EQ(read.replies[1].signalAmplitude, 0x65);
        EXPECT_EQ(read.modeAC, 1U);
        EXPECT_TRUE(read.unreadable.empty());
    }
}

TEST(FrameReader, ReadsTheEscapeWhereverItStands) {
    const std::string bytes = "\xA8\x1A\x1A\x1A\x31\x1A\x34\x00\x1A\x1A\x1A\x1A\x32\x1A"s;
    std::string body = "\x1A\x1A\x00\x1A\x32\x1A\x1A"s + bytes;
    std::string frame = "\x1A"s + "3";
    for (const char byte : body) {
        frame.append(byte == '\x1A' ? 2 : 1, byte);
    }
    for (std::size_t piece = 1; piece < frame.size(); ++piece) {
        const FramesRead read = framesOf(frame + frame, piece);
        ASSERT_EQ(read.replies.size(), 2U) << piece;
        EXPECT_EQ(read.replies[1].bytes, bytes);
        EXPECT_EQ(read.replies[1].stampMs, 0x1A1A001A321A / 12000);
        EXPECT_EQ(read.replies[1].signalAmplitude, 0x1A);
    }
}

TEST(FrameReader, HasNoTimeWithoutACounter) {
    for (const std::string& counter : {"\0\0\0\0\0\0"s, "\xFF\0MLAT"s}) {
        const FramesRead read = framesOf("\x1A"s + "2" + counter + "\x01" + allCall);
        ASSERT_EQ(read.replies.size(), 1U);
        EXPECT_FALSE(read.replies[0].stampMs);
        EXPECT_FALSE(read.replies[0].byCounter);
    }
}

TEST(FrameReader, GoesOnAtTheNextFrame) {
    struct Row {
        std::string broken;
        std::string reason; ///< how it begins
    };
    for (const Row& row : std::vector<Row>{
             {"no frame", "these bytes are no frame"},
             {"\x1A\x1A"s + "33", "these bytes are no frame"},
             {"\x1A"s + "5" + std::string(20, '\x07'), "these bytes are no frame"},
             {std::string(100000, '\x1A') + "x", "these bytes are no frame"},
             {longFrame.substr(0, 12), "the frame is too short"},
             {longFrame.substr(0, 13) + "\x1A" + std::string(10, 'x'), "the frame is too short"},
             {"\x1A"s + "2" + "\x00\x00\x00\x00\x2E\xE0\x64"s + squitter.substr(0, 7),
              "the length of the reply does not fit"},
         }) {
        const std::string content = shortFrame + row.broken + longFrame + shortFrame;
        for (const std::size_t piece : {std::size_t{1}, std::size_t{1000}}) {
            const FramesRead read = framesOf(content + longFrame.substr(0, 20), piece);
            ASSERT_EQ(read.unreadable.size(), 2U) << row.reason;
            EXPECT_EQ(read.unreadable[0].find(", byte 16: " + row.reason), 0U)
                << read.unreadable[0];
            EXPECT_NE(read.unreadable[1].find(": the last frame is cut off"), std::string::npos);
            ASSERT_EQ(read.replies.size(), 3U) << row.reason;
            EXPECT_EQ(read.replies[1].bytes, squitter);
            EXPECT_EQ(read.replies[2].bytes, allCall);
        }
    }
}

TEST(FrameReader, SkipsStatusFramesOfAnyLength) {
    for (std::size_t length = 0; length < 40; ++length) {
        const std::string status = "\x1A"s + "4" + std::string(length, '\x07');
        const FramesRead read = framesOf(shortFrame + status + longFrame + status);
        EXPECT_EQ(read.replies.size(), 2U) << length;
        EXPECT_EQ(read.unreadable.size(), length < 21 ? 1U : 0U) << "the last one is cut off";
    }
}

// A byte that is lost or added anywhere costs the frame that it hits, and at most the next one.
TEST(FrameReader, LosesNoMoreThanTheFramesAtADamage) {
    const std::string damaged = longFrame + shortFrame + longFrame;
    for (std::size_t i = 0; i <= damaged.size(); ++i) {
        for (const std::string& added : {""s, "x"s, "\x1A"s, "\x1A"s + "3"}) {
            std::string content = damaged;
            content.replace(i, added.empty() ? 1 : 0, added);
            const FramesRead read = framesOf(content + shortFrame + longFrame, 7);
            EXPECT_GE(read.replies.size(), 3U) << i;
            EXPECT_EQ(read.replies.back().bytes, squitter) << i;
        }
    }
}

} // namespace

} // namespace tolvarin::ondrel::client
