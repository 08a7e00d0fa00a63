#pragma once

#include <ondrel/types.h>

#include <chrono>

namespace tolvarin::ondrel::client {

/// The system clock in milliseconds since 1970-01-01 UTC.
inline u64 systemMilliseconds() {
    const auto now = std::chrono::system_clock::now().time_since_epoch();
    return static_cast<u64>(std::chrono::duration_cast<std::chrono::milliseconds>(now).count());
}

} // namespace tolvarin::ondrel::client
