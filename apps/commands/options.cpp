#include "apps/commands/options.h"

#include "apps/common/text.h"
#include "apps/network/feed_address.h"

#include <algorithm>
#include <charconv>
#include <cstddef>
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
    const auto result = std::from_chars(text.data(), end, value);
    if (result.ec != std::errc() || result.ptr != end) {
        return std::nullopt;
    }
    return value;
}

template <class Number>
CLI::Validator range(const std::string& kind, Number low, Number high) {
    std::ostringstream expected;
    expected.precision(std::numeric_limits<double>::digits10); // 9999999999, not 1e+10
    expected << kind << " from " << low << " to " << high;
    const auto check = [low, high, wanted = expected.str()](std::string& text) -> std::string {
        const auto value = parsed<Number>(text);
        if (!value || !(*value >= low && *value <= high)) { // not a number fails both comparisons
            return "expected " + wanted + ", not '" + text + "'";
        }
        if constexpr (std::is_integral_v<Number>) {
            text = std::to_string(*value); // CLI11 reads 010 as octal
        }
        return {};
    };
    return CLI::Validator(check, "");
}

} // namespace

CLI::Validator wholeNumber(u64 low, u64 high) {
    return range("a whole number", low, high);
}

CLI::Validator number(double low, double high) {
    return range("a number", low, high);
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
