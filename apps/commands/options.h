#pragma once

#include <CLI/CLI.hpp>
#include <ondrel/types.h>

#include <cstddef>
#include <string>
#include <vector>

/// What several commands need to define their options.
namespace tolvarin::ondrel::client {

/// Accepts a whole number in decimal digits from `low` to `high`, both included. Use it with
/// CLI::Option::transform, since it also drops leading zeros.
CLI::Validator wholeNumber(u64 low, u64 high);

/// Accepts a finite number in decimal digits from `low` to `high`, both included.
CLI::Validator number(double low, double high);

/// Accepts an aircraft address, six hexadecimal digits of either case.
CLI::Validator icaoAddress();

/// A list for a help text: "a, b or c" after `start`, in lines of at most `width` characters.
std::string wrappedList(std::string start, const std::vector<std::string>& words,
                        std::size_t width);

} // namespace tolvarin::ondrel::client
