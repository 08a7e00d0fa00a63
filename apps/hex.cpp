#include "apps/hex.h"

namespace tolvarin::ondrel::client {

std::optional<u8> hexDigit(char character) {
    if (character >= '0' && character <= '9') {
        return static_cast<u8>(character - '0');
    }
    if (character >= 'A' && character <= 'F') {
        return static_cast<u8>(character - 'A' + 10);
    }
    if (character >= 'a' && character <= 'f') {
        return static_cast<u8>(character - 'a' + 10);
    }
    return std::nullopt;
}

std::string hexBytes(std::string_view bytes) {
    constexpr std::string_view digits = "0123456789ABCDEF";
    std::string text;
    text.reserve(2 * bytes.size());
    for (const char character : bytes) {
        const auto byte = static_cast<u8>(character);
        text += digits[byte >> 4U];
        text += digits[byte & 0xFU];
    }
    return text;
}

std::string hex24(u32 value) {
    return hexBytes(std::string{static_cast<char>(value >> 16U & 0xFFU),
                                static_cast<char>(value >> 8U & 0xFFU),
                                static_cast<char>(value & 0xFFU)});
}

} // namespace tolvarin::ondrel::client
