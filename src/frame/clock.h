/// @file
/// The one place where the library reads the system clock. So a test can set the time, and no test
/// has to wait.
#pragma once

#include <ondrel/types.h>

#include <cstdint>

namespace tolvarin::ondrel::clock {

/// Whole seconds since 1970-01-01 UTC.
std::int64_t seconds();

/// The current second in milliseconds since 1970-01-01 UTC: the stamp of a new message. The last
/// three digits are 0, so messages of the same second have the same stamp.
u64 wholeSecondMilliseconds();

using Source = std::int64_t (*)();

/// Replaces the system clock by another source; null brings the system clock back. For tests.
void setSource(Source source);

} // namespace tolvarin::ondrel::clock
