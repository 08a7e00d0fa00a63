/// @file
/// How values are written as text, always as in the C locale. Names, descriptions and reports use
/// these forms, and programs read them.
#pragma once

#include <ondrel/types.h>

#include <array>
#include <charconv>
#include <cstddef>
#include <string>
#include <string_view>

namespace tolvarin::ondrel::text {

/// Two upper-case hexadecimal digits a byte, without separators.
std::string hexBytes(const std::string& bytes);

/// Upper-case hexadecimal, two digits at least: 0x00ABCD gives "ABCD", 5 gives "05".
std::string hex(u32 value);

/// Octal, four digits at least: 8 gives "0010".
std::string octal(u32 value);

/// Six digits after the point, as "%f": 357.1875 gives "357.187500".
std::string fixed(double value);

/// A copy of the bytes that a caller passed as pointer and size; a null pointer gives no bytes.
std::string bytes(const void* data, u64 size);

/// Puts words and numbers together, and makes one string of them at the end:
///
///     return text::Line() << "ALT=" << altitude << ", SPD=" << speed;
///
/// The text may have any length. With sums of strings in its place, decodeRecordingToText of
/// bench/client_bench.cpp takes 24 % longer.
class Line {
public:
    Line& operator<<(std::string_view words) {
        if (words.size() > _buffer.size() - _size) {
            return spill(words);
        }
        words.copy(_buffer.data() + _size, words.size());
        _size += words.size();
        return *this;
    }

    /// In decimal.
    ///@{
    Line& operator<<(i32 value) { return number(value); }
    Line& operator<<(u32 value) { return number(value); }
    ///@}

    /// At most six significant digits, without zeros at the end, as "%g": 357.1875 gives "357.188".
    Line& operator<<(double value) { return number(value, std::chars_format::general, 6); }

    /// In the form of the functions above.
    ///@{
    Line& hex(u32 value);
    Line& octal(u32 value);
    Line& hexBytes(std::string_view bytes);
    ///@}

    /// Would be a number.
    Line& operator<<(char) = delete;

    operator std::string() const; // NOLINT(google-explicit-constructor): for return statements

private:
    static constexpr std::size_t longestNumber = 16; // "-1.23457e+308" has 13 characters

    template <class... Arguments>
    Line& number(Arguments... valueAndForm) {
        char* const begin = roomForNumber();
        const auto result = std::to_chars(begin, begin + longestNumber, valueAndForm...);
        _size += static_cast<std::size_t>(result.ptr - begin);
        return *this;
    }

    char* roomForNumber() {
        if (_buffer.size() - _size < longestNumber) {
            spill({});
        }
        return _buffer.data() + _size;
    }

    /// In base 2^`digitBits`, with zeros in front up to `width` digits.
    Line& digits(u32 value, unsigned digitBits, unsigned width);

    /// Takes words that the buffer has no room for.
    Line& spill(std::string_view words);

    std::array<char, 120> _buffer; // not initialised: only what was written is read
    std::size_t _size = 0;
    std::string _spilled; ///< the beginning of a text that is longer than the buffer
};

} // namespace tolvarin::ondrel::text
