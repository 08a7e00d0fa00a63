#include "apps/common/text.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <ctime>

namespace tolvarin::ondrel::client {

namespace {

constexpr std::string_view upperCaseDigits = "0123456789ABCDEF";
constexpr std::string_view lowerCaseDigits = "0123456789abcdef";
constexpr u8 noDigit = 0xFF;

/// The value of each hexadecimal digit, by character; noDigit for all others. With comparisons in
/// place of this table, trackRecording of bench/client_bench.cpp takes 30 % longer.
constexpr std::array<u8, 256> digitValues = [] {
    std::array<u8, 256> values{};
    for (u8& value : values) {
        value = noDigit;
    }
    for (u8 value = 0; value < 16; ++value) {
        values[static_cast<u8>(upperCaseDigits[value])] = value;
        values[static_cast<u8>(lowerCaseDigits[value])] = value;
    }
    return values;
}();

/// How many bytes the first character of UTF-8 has; 0 if the text, which is not empty, begins with
/// none.
std::size_t sizeOfCharacter(std::string_view text) {
    const auto byteAt = [text](std::size_t place) { return static_cast<u8>(text[place]); };
    const u8 first = byteAt(0);
    if (first < 0x80) {
        return 1;
    }
    const std::size_t size = first < 0xC2 ? 0 : first < 0xE0 ? 2 : first < 0xF0 ? 3 : 4;
    if (size == 0 || first > 0xF4 || text.size() < size) {
        return 0;
    }
    for (std::size_t i = 1; i < size; ++i) {
        if ((byteAt(i) & 0xC0) != 0x80) {
            return 0;
        }
    }
    // More bytes than the character needs are another way to write it, which is not allowed.
    const bool isTooLong =
        (first == 0xE0 && byteAt(1) < 0xA0) || (first == 0xF0 && byteAt(1) < 0x90);
    return isTooLong ? 0 : size;
}

/// Whether a character of UTF-8 is a control character; those from 0x80 to 0x9F follow the byte
/// 0xC2.
bool isControl(std::string_view character) {
    const auto last = static_cast<u8>(character.back());
    return character.size() == 1 ? last < ' ' || last == 0x7F
                                 : character.size() == 2 && character[0] == '\xC2' && last < 0xA0;
}

} // namespace

std::optional<u8> hexDigit(char character) {
    const u8 value = digitValues[static_cast<u8>(character)];
    return value != noDigit ? std::optional<u8>(value) : std::nullopt;
}

bool readHexBytes(std::string_view digits, std::string& bytes) {
    bytes.resize(digits.size() / 2);
    unsigned all = digits.size() % 2 == 0 ? 0 : noDigit;
    const char* digit = digits.data();
    for (char& byte : bytes) {
        const unsigned high = digitValues[static_cast<u8>(*digit++)];
        const unsigned low = digitValues[static_cast<u8>(*digit++)];
        byte = static_cast<char>(high << 4U | low);
        all |= high | low;
    }
    return all < 16;
}

std::string hexBytes(std::string_view bytes) {
    std::string text;
    appendHexBytes(text, bytes);
    return text;
}

void appendHexBytes(std::string& text, std::string_view bytes) {
    std::size_t end = text.size();
    text.resize(end + 2 * bytes.size());
    for (const char character : bytes) {
        const auto byte = static_cast<u8>(character);
        text[end++] = upperCaseDigits[byte >> 4U];
        text[end++] = upperCaseDigits[byte & 0xFU];
    }
}

std::string hex24(u32 value) {
    std::array<char, 6> digits;
    for (auto digit = digits.rbegin(); digit != digits.rend(); ++digit, value >>= 4U) {
        *digit = upperCaseDigits[value & 0xFU];
    }
    return {digits.data(), digits.size()};
}

std::string squawkText(u32 squawk) {
    std::string digits(4, '0');
    for (auto digit = digits.rbegin(); digit != digits.rend(); ++digit, squawk /= 8) {
        *digit = static_cast<char>('0' + squawk % 8);
    }
    return digits;
}

std::string secondsText(u64 milliseconds) {
    std::array<char, 24> text; // at most 17 digits, the point and three decimals
    char* end = std::to_chars(text.data(), text.data() + text.size(), milliseconds / 1000).ptr;
    const auto decimals = static_cast<unsigned>(milliseconds % 1000);
    *end++ = '.';
    *end++ = static_cast<char>('0' + decimals / 100);
    *end++ = static_cast<char>('0' + decimals / 10 % 10);
    *end++ = static_cast<char>('0' + decimals % 10);
    return {text.data(), end};
}

std::string timeText(u64 milliseconds) {
    constexpr u64 firstDate = 946684800000; // ms; a 48-bit counter of 12 MHz does not reach it
    const auto seconds = static_cast<std::time_t>(milliseconds / 1000);
    std::tm fields = {};
    std::array<char, 40> text{};
    if (milliseconds < firstDate || gmtime_r(&seconds, &fields) == nullptr ||
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

void appendToTheRight(std::string& text, std::string_view column, std::size_t width) {
    text.append(width - std::min(width, column.size()), ' ');
    text += column;
}

void appendToTheLeft(std::string& text, std::string_view column, std::size_t width) {
    text += column;
    text.append(width - std::min(width, column.size()), ' ');
}

std::string toTheRight(std::string_view text, std::size_t width) {
    std::string padded;
    appendToTheRight(padded, text, width);
    return padded;
}

std::string toTheLeft(std::string_view text, std::size_t width) {
    std::string padded;
    appendToTheLeft(padded, text, width);
    return padded;
}

std::string listText(const std::vector<std::string>& words, std::string_view last) {
    std::string list;
    for (std::size_t i = 0; i < words.size(); ++i) {
        const bool isLast = i + 1 == words.size();
        list += i == 0 ? "" : isLast ? " " + std::string(last) + " " : ", ";
        list += words[i];
    }
    return list;
}

std::string safeText(std::string_view text) {
    std::string safe;
    while (!text.empty()) {
        const std::size_t size = sizeOfCharacter(text);
        const std::string_view character = text.substr(0, std::max(size, std::size_t{1}));
        if (character == "\n" || (size > 0 && !isControl(character))) {
            safe += character;
        } else {
            safe += "\\x" + hexBytes(character.substr(character.size() - 1));
        }
        text.remove_prefix(character.size());
    }
    return safe;
}

std::string shownName(std::string_view name) {
    std::string shown = safeText(name);
    for (std::size_t end = shown.find('\n'); end != std::string::npos;
         end = shown.find('\n', end)) {
        shown.replace(end, 1, "\\x0A");
    }
    return shown;
}

std::string wrapped(std::string_view text, std::size_t width) {
    width = std::max(width, std::size_t{1});
    std::string lines;
    while (text.size() > width) {
        const std::size_t blank = text.rfind(' ', width);
        const bool found = blank != std::string_view::npos;
        lines += text.substr(0, found ? blank : width);
        lines += '\n';
        text.remove_prefix(found ? blank + 1 : width);
    }
    return lines.append(text);
}

} // namespace tolvarin::ondrel::client
