/// @file
/// How values are written as text, always as in the C locale.
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

/// Six digits behind the point: 357.1875 gives "357.187500".
std::string fixed(double value);

/// At most six significant digits, without trailing zeros, as a text stream writes by default.
std::string general(double value);

/// The bytes that a caller passed as pointer and size; a null pointer counts as none.
std::string bytes(const void* data, u64 size);

} // namespace tolvarin::ondrel::text
