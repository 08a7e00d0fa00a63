// Numbers and bytes as text. std::to_chars does not look at the locale: the decimal point stays a
// point, whatever the application sets. Streams and printf() would follow the locale.

#include "text.h"

#include <array>
#include <charconv>
#include <cstddef>
#include <string_view>

namespace tolvarin::ondrel::text {

namespace {

constexpr std::string_view digits = "0123456789ABCDEF";

/// Writes `value` in base 2^`digitBits`, with zeros in front up to `width` digits.
std::string number(u32 value, unsigned digitBits, std::size_t width) {
    std::array<char, 32> buffer{}; // one digit for each bit is the most
    const u32 mask = (1U << digitBits) - 1;
    std::size_t start = buffer.size();
    while (value != 0 || buffer.size() - start < width) {
        buffer[--start] = digits[value & mask];
        value >>= digitBits;
    }
    return {&buffer[start], buffer.size() - start};
}

// Six digits are what "%f" and "%g" print without a precision.
std::string number(double value, std::chars_format format) {
    // The largest double has 309 digits before the point. Sign, point and six digits come on top.
    std::array<char, 320> buffer;
    const std::to_chars_result result =
        std::to_chars(buffer.data(), buffer.data() + buffer.size(), value, format, 6);
    return {buffer.data(), static_cast<std::size_t>(result.ptr - buffer.data())};
}

} // namespace

std::string hexBytes(const std::string& bytes) {
    std::string result;
    result.reserve(2 * bytes.size());
    for (const char c : bytes) {
        const auto byte = static_cast<u8>(c);
        result += digits[byte >> 4];
        result += digits[byte & 0x0F];
    }
    return result;
}

std::string hex(u32 value) {
    return number(value, 4, 2);
}

std::string octal(u32 value) {
    return number(value, 3, 4);
}

std::string fixed(double value) {
    return number(value, std::chars_format::fixed);
}

std::string general(double value) {
    return number(value, std::chars_format::general);
}

std::string bytes(const void* data, u64 size) {
    return data == nullptr ? std::string{} : std::string(static_cast<const char*>(data), size);
}

} // namespace tolvarin::ondrel::text
