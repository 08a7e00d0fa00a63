/// @file
/// Replies as tests write them: bytes in hexadecimal, a bit reader, and frames whose parity comes
/// from polynomial division. None of it shares code with the library.
#pragma once

#include <ondrel/types.h>

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace tolvarin::ondrel::test {

/// "8D 48 40" as three bytes; blanks between digits are skipped.
inline std::string operator""_hex(const char* text, std::size_t size) {
    constexpr std::string_view digits = "0123456789ABCDEF";
    std::string bytes;
    bool high = true;
    for (const char c : std::string_view(text, size)) {
        const std::size_t digit = digits.find(c);
        if (digit == std::string_view::npos) {
            continue;
        }
        if (high) {
            bytes += static_cast<char>(digit << 4);
        } else {
            bytes.back() = static_cast<char>(static_cast<u8>(bytes.back()) | digit);
        }
        high = !high;
    }
    return bytes;
}

inline bool bitOf(const std::string& frame, unsigned position) {
    return (static_cast<u8>(frame.at(position / 8)) & 0x80U >> position % 8) != 0;
}

/// `width` bits from `position` on, which counts from 0; the first bit is the highest.
inline u64 bitsOf(const std::string& bytes, unsigned position, unsigned width) {
    u64 value = 0;
    for (unsigned i = position; i < position + width; ++i) {
        value = 2 * value + (bitOf(bytes, i) ? 1 : 0);
    }
    return value;
}

inline std::string inverted(std::string frame, const std::vector<unsigned>& positions) {
    for (const unsigned position : positions) {
        char& byte = frame.at(position / 8);
        byte = static_cast<char>(static_cast<u8>(byte) ^ 0x80U >> position % 8);
    }
    return frame;
}

/// The bytes with `value` in `width` bits from `position` on.
inline std::string with(std::string bytes, unsigned position, unsigned width, u32 value) {
    for (unsigned i = 0; i < width; ++i) {
        if (bitOf(bytes, position + i) != ((value >> (width - 1 - i) & 1U) != 0)) {
            bytes = inverted(bytes, {position + i});
        }
    }
    return bytes;
}

/// The parity of a frame: its polynomial, with the last 24 bits as 0, modulo 0x1FFF409.
inline u32 plainParity(const std::string& frame, unsigned frameBits) {
    u32 remainder = 0;
    for (unsigned i = 0; i < frameBits; ++i) {
        const bool data = i + 24 < frameBits && bitOf(frame, i);
        remainder = remainder << 1 | (data ? 1U : 0U);
        if ((remainder & 0x1000000) != 0) {
            remainder ^= 0x1FFF409;
        }
    }
    return remainder;
}

/// Four bytes, big-endian.
inline std::string word(u32 value) {
    std::string bytes;
    for (const unsigned shift : {24U, 16U, 8U, 0U}) {
        bytes += static_cast<char>(value >> shift & 0xFF);
    }
    return bytes;
}

/// The first four bytes of a frame: format, the next three bits, and 24 more bits.
inline std::string head(unsigned format, unsigned status, u32 next24) {
    return word(format << 27 | status << 24 | next24);
}

/// Adds the last 24 bits to a frame of 4 or 11 bytes: its parity with `overlay` on it.
inline std::string withOverlay(const std::string& frame, u32 overlay) {
    const auto frameBits = static_cast<unsigned>(frame.size() + 3) * 8;
    return frame + word(overlay ^ plainParity(frame + "   ", frameBits)).substr(1);
}

inline bool isLong(unsigned format) {
    return format >= 16;
}

/// A reply of format 0, 4, 5, 16, 20 or 21 with a 13-bit altitude or identity code.
inline std::string surveillance(unsigned format, u32 address, u32 code = 0x1718) {
    const std::string payload = isLong(format) ? "10 20 30 40 50 60 70"_hex : "";
    return withOverlay(head(format, 0, code) + payload, address);
}

inline std::string allCall(u32 address, u32 interrogator) {
    return withOverlay(head(11, 5, address), interrogator);
}

/// A reply of format 17, 18 or 19.
inline std::string squitter(u32 address, unsigned format = 17, unsigned status = 0) {
    return withOverlay(head(format, status, address) + "20 2C C3 71 C3 2C E0"_hex, 0);
}

} // namespace tolvarin::ondrel::test
