// The system clock, which tests can replace. Decoder and messages read the time only here.

#include "clock.h"

#include <atomic>
#include <ctime>

namespace tolvarin::ondrel::clock {

namespace {

// Atomic, since several threads may decode. No other data goes with the pointer, so the relaxed
// order is enough.
std::atomic<Source> replacement{nullptr};

} // namespace

std::int64_t seconds() {
    const Source source = replacement.load(std::memory_order_relaxed);
    return source != nullptr ? source() : static_cast<std::int64_t>(std::time(nullptr));
}

u64 wholeSecondMilliseconds() {
    return static_cast<u64>(seconds()) * 1000;
}

void setSource(Source source) {
    replacement.store(source, std::memory_order_relaxed);
}

} // namespace tolvarin::ondrel::clock
