#include "apps/numbers.h"

#include <array>
#include <charconv>
#include <ctime>

namespace tolvarin::ondrel::client {

std::string secondsText(u64 milliseconds) {
    const std::string fraction = std::to_string(milliseconds % 1000);
    return std::to_string(milliseconds / 1000) + "." + std::string(3 - fraction.size(), '0') +
           fraction;
}

std::string timeText(u64 milliseconds) {
    constexpr u64 longestCounter = (u64{1} << 48U) / 12000; // ms; nobody recorded in 1970
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
    std::array<char, 400> digits{}; // the largest double has 309 in front of the point
    const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), number,
                                   std::chars_format::fixed, decimals);
    std::string text(digits.data(), end.ptr);
    if (text.find_first_not_of("-0.") == std::string::npos && text.front() == '-') {
        text.erase(0, 1);
    }
    return text;
}

} // namespace tolvarin::ondrel::client
