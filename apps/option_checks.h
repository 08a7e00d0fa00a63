#pragma once

#include <CLI/CLI.hpp>
#include <ondrel/types.h>

namespace tolvarin::ondrel::client {

/// Takes a whole number in decimal digits from `low` to `high`, both included. For
/// CLI::Option::transform: it also drops leading zeros.
CLI::Validator wholeNumber(u64 low, u64 high);

/// Takes a finite number in decimal digits from `low` to `high`, both included.
CLI::Validator number(double low, double high);

/// Takes an aircraft address, six hexadecimal digits of either case.
CLI::Validator icaoAddress();

} // namespace tolvarin::ondrel::client
