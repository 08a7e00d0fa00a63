#include "apps/input/reply_line.h"

#include "apps/common/text.h"

#include <cstddef>
#include <limits>
#include <utility>

namespace tolvarin::ondrel::client {

namespace {

constexpr std::size_t tickDigits = 12;
constexpr u64 ticksPerMs = 12000;

// The forms, for messages and for help texts.
constexpr std::string_view forms = "*HEX;, @TICKSHEX;, HEX or SECONDS[.FRACTION],HEX";
constexpr const char* help = R"(  *HEX;                    a reply
  @TICKSHEX;               after 12 hexadecimal digits of a 12 MHz counter
  HEX                      a reply alone
  SECONDS[.FRACTION],HEX   after seconds since 1970-01-01 UTC
)";

/// A part of the line, or why it cannot be read.
template <class Value>
using Result = std::variant<Value, LineError>;

std::string_view trimmed(std::string_view text) {
    constexpr std::string_view blanks = " \t\r\n\v\f";
    const std::size_t begin = text.find_first_not_of(blanks);
    if (begin == std::string_view::npos) {
        return {};
    }
    return text.substr(begin, text.find_last_not_of(blanks) - begin + 1);
}

/// A character in a form that is safe on a terminal.
std::string shown(char character) {
    if (character > ' ' && character <= '~') {
        return std::string("'") + character + "'";
    }
    return character == ' ' ? "a blank" : "byte 0x" + hexBytes({&character, 1});
}

LineError wrongDigit(char character, std::string_view kind) {
    return {shown(character) + " is not a " + std::string(kind) + " digit; expected " +
            std::string(forms)};
}

Result<std::string> parseBytes(std::string_view digits) {
    for (const char character : digits) {
        if (!hexDigit(character)) {
            return wrongDigit(character, "hexadecimal");
        }
    }
    if (digits.empty()) {
        return LineError{"the reply is empty; expected two hexadecimal digits for each byte"};
    }
    if (digits.size() % 2 != 0) {
        return LineError{"the reply has an odd number of hexadecimal digits (" +
                         std::to_string(digits.size()) + "); expected two for each byte"};
    }
    std::string bytes;
    bytes.reserve(digits.size() / 2);
    for (std::size_t i = 0; i < digits.size(); i += 2) {
        const unsigned high = *hexDigit(digits[i]);
        const unsigned low = *hexDigit(digits[i + 1]);
        bytes += static_cast<char>(high << 4U | low);
    }
    return bytes;
}

Result<u64> parseTicks(std::string_view digits) {
    u64 ticks = 0;
    for (const char character : digits) {
        const auto digit = hexDigit(character);
        if (!digit) {
            return wrongDigit(character, "hexadecimal");
        }
        ticks = ticks << 4U | *digit;
    }
    return ticks / ticksPerMs;
}

/// Appends decimal digits to the number. Gives false if it would exceed the largest u64.
bool appendDigits(u64& value, std::string_view digits) {
    for (const char character : digits) {
        const auto digit = static_cast<u64>(character - '0');
        if (value > (std::numeric_limits<u64>::max() - digit) / 10) {
            return false;
        }
        value = value * 10 + digit;
    }
    return true;
}

Result<u64> parseSeconds(std::string_view text) {
    const std::size_t point = text.find('.');
    const std::string_view whole = text.substr(0, point);
    std::string fraction(point == std::string_view::npos ? "000" : text.substr(point + 1));
    for (const std::string_view digits : {whole, std::string_view(fraction)}) {
        const std::size_t wrong = digits.find_first_not_of("0123456789");
        if (wrong != std::string_view::npos) {
            return wrongDigit(digits[wrong], "decimal");
        }
        if (digits.empty()) {
            return LineError{"the time stamp is incomplete; expected SECONDS or SECONDS.FRACTION"};
        }
    }
    fraction.resize(3, '0');
    u64 milliseconds = 0;
    if (!appendDigits(milliseconds, whole) || !appendDigits(milliseconds, fraction)) {
        return LineError{"the time stamp is too large; expected seconds since 1970-01-01"};
    }
    return milliseconds;
}

ParsedLine replyOf(const std::optional<Result<u64>>& stamp, Result<std::string> bytes) {
    Reply reply;
    if (stamp) {
        if (const auto* error = std::get_if<LineError>(&*stamp)) {
            return *error;
        }
        reply.stampMs = std::get<u64>(*stamp);
    }
    if (const auto* error = std::get_if<LineError>(&bytes)) {
        return *error;
    }
    reply.bytes = std::get<std::string>(std::move(bytes));
    return reply;
}

/// A line that begins with `*` or `@`.
ParsedLine parseMarked(std::string_view line) {
    if (line.back() != ';') {
        return LineError{"the line does not end with ';'; expected " + std::string(forms)};
    }
    const std::string_view digits = line.substr(1, line.size() - 2);
    if (line.front() == '*') {
        return replyOf(std::nullopt, parseBytes(digits));
    }
    if (digits.size() < tickDigits) {
        return LineError{"the counter is too short; expected 12 hexadecimal digits behind '@'"};
    }
    return replyOf(parseTicks(digits.substr(0, tickDigits)), parseBytes(digits.substr(tickDigits)));
}

} // namespace

ParsedLine parseReplyLine(std::string_view line) {
    line = trimmed(line);
    if (line.empty() || line.front() == '#') {
        return SkippedLine{};
    }
    if (line.front() == '*' || line.front() == '@') {
        return parseMarked(line);
    }
    const std::size_t comma = line.find(',');
    if (comma == std::string_view::npos) {
        return replyOf(std::nullopt, parseBytes(line));
    }
    return replyOf(parseSeconds(trimmed(line.substr(0, comma))),
                   parseBytes(trimmed(line.substr(comma + 1))));
}

std::string replyLineHelp() {
    return help;
}

} // namespace tolvarin::ondrel::client
