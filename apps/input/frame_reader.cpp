#include "apps/input/frame_reader.h"

#include "apps/input/reply_line.h"

#include <algorithm>
#include <array>
#include <string>
#include <utility>

namespace tolvarin::ondrel::client {

namespace {

constexpr char escape = '\x1A';
constexpr std::size_t counterSize = 6;
constexpr std::size_t headSize = counterSize + 1; // with the signal
constexpr std::size_t longestBody = headSize + 14;

bool isType(char character) {
    return character >= '1' && character <= '4';
}

std::string placeOf(std::size_t byte) {
    return ", byte " + std::to_string(byte);
}

/// Bytes behind the type, each 0x1A counted once. Receivers send status frames of several lengths.
std::size_t bodySize(char type) {
    constexpr std::array<std::size_t, 4> sizes = {headSize + 2, headSize + 7, longestBody,
                                                  longestBody};
    return sizes.at(static_cast<std::size_t>(type - '1'));
}

} // namespace

std::size_t findFrame(std::string_view bytes) {
    std::size_t i = bytes.find(escape);
    while (i < bytes.size() && i + 1 < bytes.size() && !isType(bytes[i + 1])) {
        i = bytes.find(escape, i + 2); // two escapes stand for one byte, and begin nothing
    }
    return std::min(i, bytes.size());
}

ReplyReader::Found FrameReader::next(ByteBuffer& bytes, bool atEnd, Reply& reply) {
    Found found = Found::Nothing;
    do {
        const std::size_t begin = findFrame(bytes.rest());
        found = begin > 0 ? skip(bytes, begin, "these bytes are no frame")
                          : takeFrame(bytes, atEnd, reply);
    } while (found == Found::Skipped);
    return found;
}

/// Drops bytes. They are reported if no other ones were dropped just before.
ReplyReader::Found FrameReader::skip(ByteBuffer& bytes, std::size_t count, const char* reason) {
    _unreadable = {placeOf(bytes.dropped()),
                   std::string(reason) + "; reading goes on at the next frame"};
    bytes.drop(count);
    return std::exchange(_betweenFrames, true) ? Found::Skipped : Found::Unreadable;
}

/// Takes a frame at the start of the bytes.
ReplyReader::Found FrameReader::takeFrame(ByteBuffer& bytes, bool atEnd, Reply& reply) {
    const std::string_view rest = bytes.rest();
    const char type = rest.size() < 2 ? '4' : rest[1];
    const std::size_t wanted = bodySize(type);
    std::array<char, longestBody> body;
    std::size_t size = 0;
    std::size_t i = 2;
    bool cut = false; // by the next frame
    while (size < wanted && i < rest.size() && !cut) {
        const bool isEscape = rest[i] == escape;
        if (isEscape && i + 1 == rest.size()) {
            break;
        }
        cut = isEscape && rest[i + 1] != escape;
        if (!cut) {
            i += isEscape ? 1 : 0;
            body[size++] = rest[i++];
        }
    }
    if (size < wanted && !cut) {
        return !atEnd || rest.empty() ? Found::Nothing
                                      : skip(bytes, rest.size(), "the last frame is cut off");
    }
    if (cut && type != '4') {
        _betweenFrames = false;
        return skip(bytes, i, "the frame is too short");
    }
    const std::size_t position = bytes.dropped();
    bytes.drop(i);
    _betweenFrames = type == '4'; // the status may have more bytes
    if (type == '1' || type == '4') {
        _modeAC += type == '1' ? 1U : 0U;
        return Found::Skipped;
    }
    readBody({body.data(), size}, reply);
    if (!lengthFits(reply.bytes)) {
        _unreadable = {placeOf(position), lengthError};
        return Found::Unreadable;
    }
    return Found::Reply;
}

void FrameReader::readBody(std::string_view body, Reply& reply) {
    u64 counter = 0;
    for (const char byte : body.substr(0, counterSize)) {
        counter = counter << 8U | static_cast<u8>(byte);
    }
    reply.stampMs = counter != 0 ? _counter.milliseconds(counter) : std::nullopt;
    reply.byCounter = reply.stampMs.has_value();
    reply.signalAmplitude = static_cast<u8>(body[counterSize]);
    reply.bytes.assign(body.substr(headSize));
}

} // namespace tolvarin::ondrel::client
