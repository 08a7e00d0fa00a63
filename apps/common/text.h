#pragma once

#include <ondrel/types.h>

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// Hexadecimal digits, numbers and columns as text.
namespace tolvarin::ondrel::client {

/// 0 to 15 for a hexadecimal digit of either case.
std::optional<u8> hexDigit(char character);

/// Reads two hexadecimal digits for each byte. Gives false for an odd number of digits and for
/// other characters; the bytes are then of no use.
bool readHexBytes(std::string_view digits, std::string& bytes);

/// Two upper-case digits for each byte.
std::string hexBytes(std::string_view bytes);
void appendHexBytes(std::string& text, std::string_view bytes);

/// The low 24 bits as six upper-case digits.
std::string hex24(u32 value);

/// Four octal digits: 83 is "0123".
std::string squawkText(u32 squawk);

/// Seconds with three decimals: 1500 is "1.500".
std::string secondsText(u64 milliseconds);

/// Date and time in UTC: "2023-11-14T22:13:20.250Z". A time before the year 2000 is no date but
/// counts from some start, as that of a counter does, and shows in seconds.
std::string timeText(u64 milliseconds);

/// The number rounded to so many decimals; never "-0".
std::string decimalText(double number, int decimals);

/// Stands between two columns.
constexpr std::string_view columnGap = "  ";

/// Appends a column with blanks in front up to the width; a longer one as it is.
void appendToTheRight(std::string& text, std::string_view column, std::size_t width);

/// The same with blanks behind.
void appendToTheLeft(std::string& text, std::string_view column, std::size_t width);

/// The text with blanks in front up to the width; longer text stays as it is.
std::string toTheRight(std::string_view text, std::size_t width);

/// The same with blanks behind.
std::string toTheLeft(std::string_view text, std::size_t width);

/// A list for people: "a, b or c" if `last` is "or".
std::string listText(const std::vector<std::string>& words, std::string_view last);

/// The text with a form that is safe on a terminal, such as `\x1B`, for each control character and
/// each byte that belongs to no character of UTF-8, but line ends as they are.
std::string safeText(std::string_view text);

/// The name of a file, or a message, as it is shown: safeText() in one line.
std::string shownName(std::string_view name);

/// The text in lines of at most `width` characters, one at least, broken at blanks; a word longer
/// than that is cut.
std::string wrapped(std::string_view text, std::size_t width);

} // namespace tolvarin::ondrel::client
