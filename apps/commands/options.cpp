#include "apps/commands/options.h"

#include "apps/common/text.h"
#include "apps/network/feed_address.h"

#include <algorithm>
#include <charconv>
#include <cstddef>
#include <cstdlib>
#include <limits>
#include <optional>
#include <sstream>
#include <string>
#include <type_traits>

namespace tolvarin::ondrel::client {

namespace {

/// The number, if the text is a number from its first to its last character.
template <class Number>
std::optional<Number> parsed(const std::string& text) {
    Number value{};
    const char* end = text.data() + text.size();
    if constexpr (std::is_integral_v<Number>) {
        const auto result = std::from_chars(text.data(), end, value);
        return result.ec == std::errc() && result.ptr == end ? std::optional(value) : std::nullopt;
    } else {
        // Not every standard library has from_chars() for this. strtod() alone takes more: blanks,
        // a plus sign, hexadecimal digits and words.
        if (text.empty() || text[0] == '+' ||
            text.find_first_not_of("0123456789.eE+-") != std::string::npos) {
            return std::nullopt;
        }
        char* read = nullptr;
        value = std::strtod(text.c_str(), &read);
        return read == end ? std::optional(value) : std::nullopt;
    }
}

template <class Number>
CLI::Validator range(const std::string& kind, Number low, Number high) {
    std::ostringstream expected;
    expected.precision(std::numeric_limits<double>::digits10); // 9999999999, not 1e+10
    expected << kind << " from " << low << " to " << high;
    const auto check = [low, high, wanted = expected.str()](std::string& text) -> std::string {
        const auto value = parsed<Number>(text);
        if (!value || *value < low || *value > high) {
            return "expected " + wanted + ", not '" + text + "'";
        }
        if constexpr (std::is_integral_v<Number>) {
            text = std::to_string(*value); // CLI11 reads 010 as octal
        }
        return {};
    };
    return CLI::Validator(check, "");
}

/// Without blanks around it and the sign of a positive number.
std::string bareNumber(const std::string& text) {
    const std::size_t begin = text.find_first_not_of(" \t");
    if (begin == std::string::npos) {
        return "";
    }
    const std::string bare = text.substr(begin, text.find_last_not_of(" \t") + 1 - begin);
    const bool signedDigit = bare.size() > 1 && bare[0] == '+' && bare[1] >= '0' && bare[1] <= '9';
    return bare.substr(signedDigit ? 1 : 0);
}

} // namespace

CLI::Validator wholeNumber(u64 low, u64 high) {
    return range("a whole number", low, high);
}

CLI::Validator number(double low, double high) {
    return range("a number", low, high);
}

CLI::Validator place() {
    const auto check = [](const std::string& text) -> std::string {
        const std::size_t comma = text.find(',');
        if (comma == std::string::npos) {
            return "expected LAT,LON in degrees, not '" + text + "'";
        }
        std::string latitude = bareNumber(text.substr(0, comma));
        std::string longitude = bareNumber(text.substr(comma + 1));
        const std::string error = number(-90, 90)(latitude);
        return error.empty() ? number(-180, 180)(longitude) : error;
    };
    return CLI::Validator(check, "");
}

GeoPoint placeOf(const std::string& text) {
    // Blanks and a plus sign before a number are skipped.
    return {std::stod(text), std::stod(text.substr(text.find(',') + 1))};
}

CLI::Validator addressAndPort() {
    const auto check = [](const std::string& text) -> std::string {
        return hostAndPort(text) ? "" : "expected ADDRESS:PORT, not '" + text + "'";
    };
    return CLI::Validator(check, "");
}

CLI::Validator wordOrNumber(const std::string& word, double low, double high) {
    const auto check = [word, isNumber = range(word + " or a number", low, high)](
                           std::string& text) { return text == word ? "" : isNumber(text); };
    return CLI::Validator(check, "");
}

CLI::Validator icaoAddress() {
    const auto check = [](const std::string& text) -> std::string {
        constexpr std::size_t digits = 6;
        const bool isHex = std::all_of(text.begin(), text.end(),
                                       [](char digit) { return hexDigit(digit).has_value(); });
        return isHex && text.size() == digits
                   ? ""
                   : "expected six hexadecimal digits, not '" + text + "'";
    };
    return CLI::Validator(check, "");
}

} // namespace tolvarin::ondrel::client
