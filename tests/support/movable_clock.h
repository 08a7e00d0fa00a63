/// @file
/// A system clock that a test sets.
#pragma once

#include "clock.h"

#include <atomic>
#include <cstdint>

namespace tolvarin::ondrel::test {

/// Replaces the system clock until it is destroyed. At most one may exist at a time.
class MovableClock {
public:
    explicit MovableClock(std::int64_t seconds = 1'700'000'000) {
        now = seconds;
        clock::setSource([] { return now.load(); });
    }
    MovableClock(const MovableClock&) = delete;
    MovableClock& operator=(const MovableClock&) = delete;
    ~MovableClock() { clock::setSource(nullptr); }

    void advance(std::int64_t seconds) { now += seconds; }
    std::int64_t seconds() const { return now; }

private:
    inline static std::atomic<std::int64_t> now{0};
};

} // namespace tolvarin::ondrel::test
