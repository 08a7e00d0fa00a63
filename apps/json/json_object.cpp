#include "apps/json/json_object.h"

#include "apps/common/text.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>

namespace tolvarin::ondrel::client {

namespace {

template <class Number>
void appendNumber(std::string& text, Number value) {
    std::array<char, 32> digits; // a double has 24 characters at most
    text.append(digits.data(),
                std::to_chars(digits.data(), digits.data() + digits.size(), value).ptr);
}

/// Whether the character stands in a string as it is.
bool isPlain(char character) {
    return character >= ' ' && character <= '~' && character != '"' && character != '\\';
}

void appendEscaped(std::string& text, char character) {
    const auto code = static_cast<u8>(character);
    if (isPlain(character)) {
        text += character;
    } else if (code >= 0x80) {
        text += "\\ufffd";
    } else {
        text += "\\u00";
        appendHexBytes(text, {&character, 1});
    }
}

} // namespace

void JsonObject::begin(std::string_view key) {
    if (!_first) {
        _text += ',';
    }
    _first = false;
    _text += '"';
    _text += key;
    _text += "\":";
}

void JsonObject::whole(std::string_view key, std::int64_t value) {
    begin(key);
    appendNumber(_text, value);
}

void JsonObject::decimal(std::string_view key, double value) {
    if (std::isfinite(value)) {
        begin(key);
        appendNumber(_text, value);
    }
}

void JsonObject::rounded(std::string_view key, double value, int decimals) {
    if (std::isfinite(value)) {
        begin(key);
        _text += decimalText(value, decimals);
    }
}

void JsonObject::flag(std::string_view key, bool value) {
    begin(key);
    _text += value ? "true" : "false";
}

void JsonObject::words(std::string_view key, std::string_view value) {
    begin(key);
    _text += '"';
    if (std::all_of(value.begin(), value.end(), isPlain)) {
        _text += value;
    } else {
        for (const char character : value) {
            appendEscaped(_text, character);
        }
    }
    _text += '"';
}

void JsonObject::hex(std::string_view key, std::string_view bytes) {
    begin(key);
    _text += '"';
    appendHexBytes(_text, bytes);
    _text += '"';
}

} // namespace tolvarin::ondrel::client
