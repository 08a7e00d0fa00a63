#pragma once

#include <ondrel/types.h>

#include <string>

/// Numbers as people read them.
namespace tolvarin::ondrel::client {

/// Seconds with three decimals: 1500 is "1.500".
std::string secondsText(u64 milliseconds);

/// The number rounded to so many decimals; never "-0".
std::string decimalText(double number, int decimals);

} // namespace tolvarin::ondrel::client
