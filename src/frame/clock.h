/// @file
/// The one place where the system clock is read.
#pragma once

#include <ondrel/types.h>

#include <cstdint>

namespace tolvarin::ondrel::clock {

/// Whole seconds since 1970-01-01 UTC.
std::int64_t seconds();

/// The current second in milliseconds: what a message is stamped with when it is built.
u64 wholeSecondMilliseconds();

using Source = std::int64_t (*)();

/// Puts another source in place of the system clock; null brings the system clock back. For tests.
void setSource(Source source);

} // namespace tolvarin::ondrel::clock
