/// @file
/// How values are written as text.
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

/// The bytes that a caller passed as pointer and size; a null pointer counts as none.
std::string bytes(const void* data, u64 size);

} // namespace tolvarin::ondrel::text
