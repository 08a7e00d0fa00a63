#pragma once

#include <cstddef>
#include <string>
#include <string_view>

/// Text in columns.
namespace tolvarin::ondrel::client {

/// Between two columns.
constexpr std::string_view columnGap = "  ";

/// The text behind as many blanks as it takes to fill the width; longer text as it is.
std::string toTheRight(std::string_view text, std::size_t width);

/// The same with the blanks behind it.
std::string toTheLeft(std::string_view text, std::size_t width);

} // namespace tolvarin::ondrel::client
