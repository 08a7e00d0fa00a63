#include "apps/input/reply_line.h"

#include "apps/common/text.h"

#include <algorithm>
#include <charconv>
#include <cstddef>
#include <optional>
#include <system_error>
#include <utility>

namespace tolvarin::ondrel::client {

namespace {

constexpr std::size_t counterDigits = 12;
constexpr std::size_t signalDigits = 2;
constexpr u64 longestSeconds = 1000000000000; // 13 digits: the year 33658

// The forms, for messages and for help texts.
constexpr std::string_view forms = "*HEX;, @COUNTERHEX;, <COUNTERSIGNALHEX;, HEX or "
                                   "SECONDS[.FRACTION],HEX[,AMPLITUDE[,SOURCE]]";
constexpr const char* help = R"(  *HEX;                    a reply
  @COUNTERHEX; %COUNTERHEX;
                           after 12 hexadecimal digits of the receiver's counter
  <COUNTERSIGNALHEX;       the same with two digits for the signal amplitude
  HEX                      a reply alone
  SECONDS[.FRACTION],HEX[,AMPLITUDE[,SOURCE]]
                           after seconds since 1970-01-01 UTC; behind it the signal
                           amplitude, 0 to 255, and which of 64 receivers heard it
)";

/// Why a line or a part of it cannot be read; nothing if it was read.
using Problem = std::optional<std::string>;

bool isBlank(char character) {
    return character == ' ' || (character >= '\t' && character <= '\r');
}

std::string_view trimmed(std::string_view text) {
    while (!text.empty() && isBlank(text.front())) {
        text.remove_prefix(1);
    }
    while (!text.empty() && isBlank(text.back())) {
        text.remove_suffix(1);
    }
    return text;
}

/// A character in a form that is safe on a terminal.
std::string shown(char character) {
    if (character > ' ' && character <= '~') {
        return std::string("'") + character + "'";
    }
    return character == ' ' ? "a blank" : "byte 0x" + hexBytes({&character, 1});
}

std::string wrongDigit(char character, std::string_view kind) {
    return shown(character) + " is not a " + std::string(kind) + " digit; expected " +
           std::string(forms);
}

/// Why the digits are no bytes.
std::string bytesError(std::string_view digits) {
    for (const char character : digits) {
        if (!hexDigit(character)) {
            return wrongDigit(character, "hexadecimal");
        }
    }
    if (digits.empty()) {
        return "the reply is empty; expected two hexadecimal digits for each byte";
    }
    return "the reply has an odd number of hexadecimal digits (" + std::to_string(digits.size()) +
           "); expected two for each byte";
}

Problem readBytes(std::string_view digits, Reply& reply) {
    if (digits.empty() || !readHexBytes(digits, reply.bytes)) {
        return bytesError(digits);
    }
    return std::nullopt;
}

/// Reads a number that all digits together give.
Problem readNumber(std::string_view digits, u64& number) {
    number = 0;
    for (const char character : digits) {
        const auto digit = hexDigit(character);
        if (!digit) {
            return wrongDigit(character, "hexadecimal");
        }
        number = number << 4U | *digit;
    }
    return std::nullopt;
}

/// What is wrong with a number that is too large for seconds. Other programs count from 1970 in
/// smaller units, which show by the number of digits.
std::string tooManySeconds(u64 number) {
    const auto tellsUnit = [](const std::string& unit, int digits) {
        return "the time stamp is in " + unit + "; expected seconds: put a point before its last " +
               std::to_string(digits) + " digits";
    };
    if (number < 1000 * longestSeconds) {
        return tellsUnit("milliseconds", 3);
    }
    return number < 1000000 * longestSeconds ? tellsUnit("microseconds", 6)
                                             : tellsUnit("nanoseconds", 9);
}

/// Milliseconds of the digits behind a decimal point.
u64 thousandths(std::string_view fraction) {
    u64 value = 0;
    for (std::size_t i = 0; i < 3; ++i) {
        const char digit = i < fraction.size() ? fraction[i] : '0';
        value = value * 10 + static_cast<u64>(digit - '0');
    }
    return value;
}

Problem readSeconds(std::string_view text, Reply& reply) {
    u64 seconds = 0;
    const auto whole = std::from_chars(text.data(), text.data() + text.size(), seconds);
    const std::string_view rest = text.substr(static_cast<std::size_t>(whole.ptr - text.data()));
    if (!rest.empty() && rest.front() != '.') {
        return wrongDigit(rest.front(), "decimal");
    }
    const std::string_view fraction = rest.empty() ? "0" : rest.substr(1);
    if (rest.size() == text.size() || fraction.empty()) {
        return "the time stamp is incomplete; expected SECONDS or SECONDS.FRACTION";
    }
    const std::size_t wrong = fraction.find_first_not_of("0123456789");
    if (wrong != std::string_view::npos) {
        return wrongDigit(fraction[wrong], "decimal");
    }
    if (whole.ec != std::errc()) {
        return "the time stamp is too large; expected seconds since 1970-01-01";
    }
    if (seconds >= longestSeconds) {
        return tooManySeconds(seconds);
    }
    reply.stampMs = seconds * 1000 + thousandths(fraction);
    return std::nullopt;
}

/// Reads a column that is a number, if it is there.
Problem readColumn(std::string_view text, unsigned highest, const char* name, unsigned& number) {
    const char* end = text.data() + text.size();
    const auto result = std::from_chars(text.data(), end, number);
    if (!text.empty() && (result.ec != std::errc() || result.ptr != end || number > highest)) {
        return "the " + std::string(name) + " is no whole number from 0 to " +
               std::to_string(highest) + "; expected " + std::string(forms);
    }
    return std::nullopt;
}

/// Takes a column off the start of a line, with its comma and without blanks.
std::string_view takeColumn(std::string_view& line) {
    const std::size_t comma = std::min(line.find(','), line.size());
    const std::string_view column = trimmed(line.substr(0, comma));
    line.remove_prefix(std::min(comma + 1, line.size()));
    return column;
}

/// A line with commas.
Problem readColumns(std::string_view line, Reply& reply) {
    if (auto problem = readSeconds(takeColumn(line), reply)) {
        return problem;
    }
    if (auto problem = readBytes(takeColumn(line), reply)) {
        return problem;
    }
    if (line.empty()) { // nearly always
        return std::nullopt;
    }
    unsigned amplitude = 0;
    if (auto problem = readColumn(takeColumn(line), 255, "signal amplitude", amplitude)) {
        return problem;
    }
    reply.signalAmplitude = static_cast<u8>(amplitude);
    return readColumn(trimmed(line), mostSources, "source", reply.source);
}

/// A line that begins with one of these signs.
constexpr std::string_view marks = "*@%<";

Problem readMarked(std::string_view line, ReceiverCounter& counter, Reply& reply) {
    if (line.back() != ';') {
        return "the line does not end with ';'; expected " + std::string(forms);
    }
    std::string_view digits = line.substr(1, line.size() - 2);
    if (line.front() == '*') {
        return readBytes(digits, reply);
    }
    const bool hasSignal = line.front() == '<';
    if (digits.size() < counterDigits + (hasSignal ? signalDigits : 0)) {
        return "the counter is too short; expected 12 hexadecimal digits" +
               std::string(hasSignal ? " and two of the signal" : "") + " behind " +
               shown(line.front());
    }
    u64 number = 0;
    if (auto problem = readNumber(digits.substr(0, counterDigits), number)) {
        return problem;
    }
    if (number != 0) { // 0 is no time
        reply.stampMs = counter.milliseconds(number);
    }
    reply.byCounter = reply.stampMs.has_value();
    digits.remove_prefix(counterDigits);
    if (hasSignal) {
        if (auto problem = readNumber(digits.substr(0, signalDigits), number)) {
            return problem;
        }
        reply.signalAmplitude = static_cast<u8>(number);
        digits.remove_prefix(signalDigits);
    }
    return readBytes(digits, reply);
}

/// A line that is neither blank nor a comment, without blanks at its ends.
Problem readReply(std::string_view line, ReceiverCounter& counter, Reply& reply) {
    if (marks.find(line.front()) != std::string_view::npos) {
        return readMarked(line, counter, reply);
    }
    return line.find(',') == std::string_view::npos ? readBytes(line, reply)
                                                    : readColumns(line, reply);
}

} // namespace

LineContent readReplyLine(std::string_view line, ReceiverCounter& counter, Reply& reply,
                          std::string& error) {
    line = trimmed(line);
    if (line.empty() || line.front() == '#') {
        return LineContent::Nothing;
    }
    reply.stampMs.reset();
    reply.byCounter = false;
    reply.signalAmplitude = 0;
    reply.source = 0;
    auto problem = readReply(line, counter, reply);
    if (problem) {
        error = *std::move(problem);
        return LineContent::Error;
    }
    return LineContent::Reply;
}

std::string replyLineHelp() {
    return help;
}

} // namespace tolvarin::ondrel::client
