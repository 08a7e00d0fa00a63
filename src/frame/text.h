/// @file
/// How values are written as text, always as in the C locale. Names, descriptions and reports use
/// these forms, and programs read them.
#pragma once

#include <ondrel/types.h>

#include <string>

namespace tolvarin::ondrel::text {

/// Two upper-case hexadecimal digits a byte, without separators.
std::string hexBytes(const std::string& bytes);

/// Upper-case hexadecimal, two digits at least: 0x00ABCD gives "ABCD", 5 gives "05".
std::string hex(u32 value);

/// Octal, four digits at least: 8 gives "0010".
std::string octal(u32 value);

/// Six digits after the point, as "%f": 357.1875 gives "357.187500".
std::string fixed(double value);

/// At most six significant digits, without zeros at the end, as "%g": 357.1875 gives "357.188".
std::string general(double value);

/// A copy of the bytes that a caller passed as pointer and size; a null pointer gives no bytes.
std::string bytes(const void* data, u64 size);

} // namespace tolvarin::ondrel::text
