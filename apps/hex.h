#pragma once

#include <ondrel/types.h>

#include <optional>
#include <string>
#include <string_view>

namespace tolvarin::ondrel::client {

/// 0 to 15 for a hexadecimal digit of either case.
std::optional<u8> hexDigit(char character);

/// Two upper-case digits a byte.
std::string hexBytes(std::string_view bytes);

/// The low 24 bits as six upper-case digits.
std::string hex24(u32 value);

} // namespace tolvarin::ondrel::client
