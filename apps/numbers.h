#pragma once

#include <ondrel/types.h>

#include <string>

/// Numbers as people read them.
namespace tolvarin::ondrel::client {

/// Seconds with three decimals: 1500 is "1.500".
std::string secondsText(u64 milliseconds);

/// Date and time in UTC: "2023-11-14T22:13:20.250Z". What a 12 MHz counter can count to is taken
/// for one, which began at 0, and shown in seconds.
std::string timeText(u64 milliseconds);

/// The number rounded to so many decimals; never "-0".
std::string decimalText(double number, int decimals);

} // namespace tolvarin::ondrel::client
