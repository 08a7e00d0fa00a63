// The client's readers of replies: bytes of any kind, which come in pieces of any size, and lines
// and frames that are written here in all their forms, so that what must be read is known.

#include "apps/input/frame_reader.h"
#include "apps/input/reply_reader.h"
#include "apps/input/text_reader.h"

#include "fuzzing.h"
#include "support/bytes.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <memory>
#include <optional>
#include <string>
#include <vector>

using namespace tolvarin::ondrel;
using namespace tolvarin::ondrel::client;
using fuzzing::hold;
using fuzzing::Input;

namespace {

using Found = ReplyReader::Found;
using Kind = ReceiverCounter::Kind;

constexpr std::size_t whole = ByteBuffer::size;
constexpr u64 multilateration = 0xFF004D4C4154; // stands for no time

/// What a reader made of an input.
struct Transcript {
    std::vector<Reply> replies;
    std::vector<std::string> unreadable; ///< place and reason
    u64 modeAC = 0;
};

bool same(const Reply& one, const Reply& other) {
    return one.bytes == other.bytes && one.stampMs == other.stampMs &&
           one.byCounter == other.byCounter && one.source == other.source &&
           one.signalAmplitude == other.signalAmplitude;
}

bool same(const std::vector<Reply>& one, const std::vector<Reply>& other) {
    return std::equal(one.begin(), one.end(), other.begin(), other.end(),
                      [](const Reply& a, const Reply& b) { return same(a, b); });
}

void judge(const Reply& reply) {
    hold(reply.bytes.size() == (test::bitOf(reply.bytes, 0) ? 14 : 7));
    hold(reply.source <= mostSources && reply.sites == 0 && !reply.grade);
    hold(!reply.byCounter || reply.stampMs.has_value());
}

/// What is told of an unreadable piece goes to a terminal.
void judge(const UnreadablePiece& piece) {
    hold(!piece.place.empty() && !piece.reason.empty());
    hold(std::none_of(piece.reason.begin(), piece.reason.end(), [](char character) {
        return static_cast<u8>(character) < ' ' || character == '\x7F';
    }));
}

/// Reads bytes that come in pieces. Without a reader, one is found by the first bytes.
Transcript read(std::unique_ptr<ReplyReader> reader, const std::string& content, Kind counter,
                std::size_t piece) {
    Transcript transcript;
    ByteBuffer bytes;
    std::size_t taken = 0;
    bool atEnd = false;
    Reply reply;
    for (std::size_t steps = 0;; ++steps) {
        hold(steps <= 3 * content.size() + 10);
        if (!reader) {
            reader = ReplyReader::forBytes(bytes, atEnd, counter);
            hold(reader || !atEnd);
        }
        const Found found = reader ? reader->next(bytes, atEnd, reply) : Found::Nothing;
        if (found == Found::Reply) {
            judge(reply);
            transcript.replies.push_back(reply);
        } else if (found == Found::Unreadable || found == Found::Skipped) {
            judge(reader->unreadable());
            transcript.unreadable.push_back(reader->unreadable().place + ": " +
                                            reader->unreadable().reason);
        } else if (found == Found::Foreign) {
            judge({":1", reader->unreadable().reason});
            return transcript;
        } else if (atEnd) {
            break;
        } else {
            // What the input is by its first 512 bytes may be told as soon as there is one line.
            const std::size_t size = taken == 0 ? std::max<std::size_t>(piece, 512) : piece;
            const ByteBuffer::Room room = bytes.room();
            const std::size_t count = content.copy(room.begin, std::min(size, room.size), taken);
            bytes.add(count);
            taken += count;
            atEnd = count == 0;
        }
    }
    hold(bytes.rest().empty() && bytes.dropped() == content.size());
    transcript.modeAC = reader->modeAC();
    return transcript;
}

template <class Reader>
Transcript readBy(const std::string& content, Kind counter, std::size_t piece) {
    return read(std::make_unique<Reader>(counter), content, counter, piece);
}

/// The size of the pieces makes no difference.
template <class Reader>
void readInPieces(const std::string& content, Kind counter, std::size_t piece) {
    const Transcript atOnce = readBy<Reader>(content, counter, whole);
    const Transcript inPieces = readBy<Reader>(content, counter, piece);
    hold(same(atOnce.replies, inPieces.replies) && atOnce.unreadable == inPieces.unreadable &&
         atOnce.modeAC == inPieces.modeAC);
}

std::string hex(const std::string& bytes, bool small) {
    std::string text;
    for (const char byte : bytes) {
        std::array<char, 3> digits;
        std::snprintf(digits.data(), digits.size(), small ? "%02x" : "%02X",
                      unsigned{static_cast<u8>(byte)});
        text += digits.data();
    }
    return text;
}

/// The last `size` bytes of a number, the highest first.
std::string numberBytes(u64 number, unsigned size) {
    std::string bytes;
    for (unsigned i = size; i-- > 0;) {
        bytes += static_cast<char>(number >> 8 * i & 0xFF);
    }
    return bytes;
}

std::string takeReplyBytes(Input& input) {
    std::string bytes = input.text(14);
    bytes.resize(14);
    bytes.resize(test::bitOf(bytes, 0) ? 14 : 7);
    return bytes;
}

void setCounter(Reply& reply, u64 counter, Kind kind) {
    reply.byCounter = counter != 0 && counter != multilateration;
    if (reply.byCounter) {
        reply.stampMs = kind == Kind::Gps ? (counter >> 30U) * 1000 + counter % (1 << 30) / 1000000
                                          : counter / 12000;
    }
}

/// A counter of GPS stays in the first half of a day, so that none is of another day.
u64 takeCounter(Input& input, unsigned control, Kind kind) {
    constexpr u64 halfDay = 43200; // s
    u64 counter = input.take<u64>() & 0xFFFFFFFFFFFF;
    if (kind == Kind::Gps) {
        counter = (counter >> 30U) % halfDay << 30U | counter % (1 << 30);
    }
    return (control & 0x80U) == 0 ? counter : counter % 2 == 0 ? 0 : multilateration;
}

std::string secondsText(Input& input, Reply& reply) {
    const u64 seconds = input.take<u64>() % 1000000000000;
    const unsigned thousandths = input.take<std::uint16_t>() % 1000;
    reply.stampMs = seconds * 1000 + thousandths;
    std::array<char, 8> fraction;
    std::snprintf(fraction.data(), fraction.size(), ".%03u", thousandths);
    return std::to_string(seconds) + (thousandths == 0 ? "" : fraction.data());
}

/// A line, and the reply that it holds.
std::string takeLine(Input& input, Reply& reply, Kind kind) {
    const u8 control = input.take<u8>();
    const bool small = (control & 0x08U) != 0;
    reply.bytes = takeReplyBytes(input);
    const std::string digits = hex(reply.bytes, small);
    const std::string blank = (control & 0x10U) != 0 ? " \t" : "";
    const std::string end = (control & 0x20U) != 0 ? " \r\n" : "\n";
    switch (control & 7U) {
    case 0:
        return blank + "*" + digits + ";" + end;
    case 1:
    case 2:
    case 3: {
        const u64 counter = takeCounter(input, control, kind);
        const char mark = "@%<"[(control & 7U) - 1];
        setCounter(reply, counter, kind);
        std::string signal;
        if (mark == '<') {
            reply.signalAmplitude = input.take<u8>();
            signal = hex(numberBytes(reply.signalAmplitude, 1), small);
        }
        return blank + mark + hex(numberBytes(counter, 6), small) + signal + digits + ";" + end;
    }
    case 4:
        return blank + digits + end;
    default: {
        std::string line = blank + secondsText(input, reply) + blank + "," + blank + digits;
        if ((control & 7U) > 5) {
            reply.signalAmplitude = input.take<u8>();
            line += "," + blank + std::to_string(unsigned{reply.signalAmplitude}) + blank;
        }
        if ((control & 7U) > 6) {
            reply.source = input.take<u8>() % (mostSources + 1);
            line += "," + std::to_string(reply.source);
        }
        return line + end;
    }
    }
}

void readWrittenLines(Input& input, Kind kind, std::size_t piece) {
    std::string content;
    std::vector<Reply> expected;
    while (!input.empty()) {
        Reply reply;
        content += takeLine(input, reply, kind);
        expected.push_back(reply);
        content += (reply.bytes[0] & 1) != 0 ? "# a comment\n\n" : "";
    }
    const Transcript transcript = readBy<TextReader>(content, kind, piece);
    hold(transcript.unreadable.empty() && same(transcript.replies, expected));
}

/// Bytes that are no frame and begin none: an escape with another byte, or one that stands twice,
/// and behind it what would be a frame.
std::string takeRubbish(Input& input) {
    std::string rubbish = input.take<bool>() ? "\x1A\x1A" : "\x1A";
    rubbish += rubbish.size() == 2 ? "2" : "x";
    for (const char byte : input.text(16)) {
        rubbish += byte == '\x1A' ? 'x' : byte;
    }
    return rubbish;
}

/// Mode A/C, short, long or status, which may have any length. Some frames are cut short, and
/// rubbish follows on some; this costs no other frame.
void readWrittenFrames(Input& input, Kind kind, std::size_t piece) {
    constexpr char escape = '\x1A';
    std::string content;
    std::vector<Reply> expected;
    u64 modeAC = 0;
    bool isDamaged = false;
    while (!input.empty()) {
        const u8 control = input.take<u8>();
        const u64 counter = takeCounter(input, control, kind);
        Reply reply;
        reply.signalAmplitude = (control & 0x10U) != 0 ? u8{escape} : input.take<u8>();
        setCounter(reply, counter, kind);
        reply.bytes = takeReplyBytes(input);
        std::string body = numberBytes(counter, 6) + static_cast<char>(reply.signalAmplitude);
        char type = reply.bytes.size() == 7 ? '2' : '3';
        const bool isCut = (control & 0x1FU) == 0x1E;
        if ((control & 3U) == 0) {
            type = '1';
            body += reply.bytes.substr(0, 2);
            ++modeAC;
        } else if ((control & 3U) == 1 && !expected.empty()) {
            type = '4';
            body += reply.bytes.substr(control >> 2U & 7U);
            body.resize(std::max<std::size_t>(body.size(), 21));
        } else if (isCut) {
            body += reply.bytes.substr(1);
        } else {
            body += reply.bytes;
            expected.push_back(reply);
        }
        content += escape;
        content += type;
        for (const char byte : body) {
            content.append(byte == escape ? 2 : 1, byte);
        }
        if (isCut || (control & 0x60U) == 0x60U) {
            isDamaged = true;
            content += isCut ? "\x1Ax" : takeRubbish(input);
        }
    }
    const Transcript transcript = readBy<FrameReader>(content, kind, piece);
    hold((isDamaged || transcript.unreadable.empty()) && same(transcript.replies, expected));
    hold(transcript.modeAC == modeAC);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    Input input(data, size);
    const u8 control = input.take<u8>();
    const std::size_t piece = std::size_t{1} << (control >> 4U);
    const Kind counter = (control & 8U) != 0 ? Kind::Gps : Kind::TwelveMHz;
    switch (control & 7U) {
    case 0:
        readWrittenLines(input, counter, piece);
        break;
    case 1:
        readWrittenFrames(input, counter, piece);
        break;
    case 2:
    case 3:
        readInPieces<TextReader>(input.text(size), counter, piece);
        break;
    case 4:
    case 5:
        readInPieces<FrameReader>(input.text(size), counter, piece);
        break;
    default:
        read(nullptr, input.text(size), counter, piece);
    }
    return 0;
}
