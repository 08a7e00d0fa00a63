// Numbers and bytes as text. std::to_chars does not look at the locale: the decimal point stays a
// point, whatever the application sets. Streams and printf() would follow the locale.

#include "text.h"

#include <array>
#include <charconv>
#include <cstddef>
#include <string_view>

namespace tolvarin::ondrel::text {

namespace {

constexpr std::string_view digitCharacters = "0123456789ABCDEF";

} // namespace

std::string hexBytes(const std::string& bytes) {
    return Line().hexBytes(bytes);
}

std::string hex(u32 value) {
    return Line().hex(value);
}

std::string octal(u32 value) {
    return Line().octal(value);
}

std::string fixed(double value) {
    // The largest double has 309 digits before the point. Sign, point and six digits come on top.
    std::array<char, 320> buffer;
    const std::to_chars_result result = std::to_chars(buffer.data(), buffer.data() + buffer.size(),
                                                      value, std::chars_format::fixed, 6);
    return {buffer.data(), static_cast<std::size_t>(result.ptr - buffer.data())};
}

std::string bytes(const void* data, u64 size) {
    return data == nullptr ? std::string{} : std::string(static_cast<const char*>(data), size);
}

Line::operator std::string() const {
    const std::string_view text(_buffer.data(), _size);
    return _spilled.empty() ? std::string(text) : _spilled + std::string(text);
}

Line& Line::hex(u32 value) {
    return digits(value, 4, 2);
}

Line& Line::octal(u32 value) {
    return digits(value, 3, 4);
}

Line& Line::digits(u32 value, unsigned digitBits, unsigned width) {
    while (width * digitBits < 32 && value >> width * digitBits != 0) {
        ++width;
    }
    char* const begin = roomForNumber();
    const u32 mask = (1U << digitBits) - 1;
    for (char* digit = begin + width; digit != begin; value >>= digitBits) {
        *--digit = digitCharacters[value & mask];
    }
    _size += width;
    return *this;
}

Line& Line::hexBytes(std::string_view bytes) {
    for (const char c : bytes) {
        const auto byte = static_cast<u8>(c);
        char* const digits = roomForNumber();
        digits[0] = digitCharacters[byte >> 4];
        digits[1] = digitCharacters[byte & 0x0F];
        _size += 2;
    }
    return *this;
}

Line& Line::spill(std::string_view words) {
    _spilled.append(_buffer.data(), _size).append(words);
    _size = 0;
    return *this;
}

} // namespace tolvarin::ondrel::text
