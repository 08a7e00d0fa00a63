#include "apps/common/text.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <ctime>

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

std::string squawkText(u32 squawk) {
    std::string digits(4, '0');
    for (auto digit = digits.rbegin(); digit != digits.rend(); ++digit, squawk /= 8) {
        *digit = static_cast<char>('0' + squawk % 8);
    }
    return digits;
}

std::string secondsText(u64 milliseconds) {
    const std::string fraction = std::to_string(milliseconds % 1000);
    return std::to_string(milliseconds / 1000) + "." + std::string(3 - fraction.size(), '0') +
           fraction;
}

std::string timeText(u64 milliseconds) {
    constexpr u64 longestCounter = (u64{1} << 48U) / 12000; // ms
    const auto seconds = static_cast<std::time_t>(milliseconds / 1000);
    std::tm fields = {};
    std::array<char, 40> text{};
    if (milliseconds <= longestCounter || gmtime_r(&seconds, &fields) == nullptr ||
        std::strftime(text.data(), text.size(), "%Y-%m-%dT%H:%M:%S", &fields) == 0) {
        return secondsText(milliseconds);
    }
    return text.data() + secondsText(milliseconds % 1000).substr(1) + "Z";
}

std::string decimalText(double number, int decimals) {
    std::array<char, 400> digits{}; // the largest double has 309 before the point
    const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), number,
                                   std::chars_format::fixed, decimals);
    std::string text(digits.data(), end.ptr);
    if (text.find_first_not_of("-0.") == std::string::npos && text.front() == '-') {
        text.erase(0, 1);
    }
    return text;
}

std::string toTheRight(std::string_view text, std::size_t width) {
    std::string padded(width - std::min(width, text.size()), ' ');
    padded += text;
    return padded;
}

std::string toTheLeft(std::string_view text, std::size_t width) {
    std::string padded(text);
    padded.resize(std::max(text.size(), width), ' ');
    return padded;
}

} // namespace tolvarin::ondrel::client
