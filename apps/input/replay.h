#pragma once

#include "apps/common/reply.h"

#include <ondrel/types.h>

#include <chrono>
#include <functional>
#include <optional>
#include <utility>

/// The time of a recording: a stamp for every reply, and replies at the pace of their stamps.
namespace tolvarin::ondrel::client {

/// The system clock in milliseconds since 1970-01-01 UTC.
u64 systemMilliseconds();

/// Gives every reply a stamp. The first reply decides how:
///  - If it has a stamp, the stamps of the recording count. A reply without one gets the stamp of
///    the reply before it.
///  - If it has none, the clock stamps all replies.
/// A stamp of 0 becomes 1, since the library takes 0 for "no stamp".
class Stamping {
public:
    explicit Stamping(std::function<u64()> clock = systemMilliseconds) : _clock(std::move(clock)) {}

    void stamp(Reply& reply);

    /// Whether there was a reply.
    bool begun() const { return _last != 0; }

    /// Whether the clock stamps; false before the first reply.
    bool byClock() const { return _byClock; }

private:
    std::function<u64()> _clock;
    bool _byClock = false;
    u64 _last = 0;
};

/// Divides the recording into periods of equal length, which begin with the first stamp.
class Periods {
public:
    /// Periods of length 0 never end.
    explicit Periods(u64 lengthMs) : _length(lengthMs) {}

    /// Whether this stamp is beyond the current period; if so, its own period becomes the current
    /// one. Periods without a reply are skipped. A stamp that goes back ends nothing.
    bool ended(u64 stampMs);

private:
    u64 _length;
    std::optional<u64> _begin;
};

/// Delays replies, so that they come at a multiple of the speed at which they were recorded.
class Pace {
public:
    /// `factor` is above 0. `beforeWait` runs before each wait.
    Pace(double factor, std::function<void()> beforeWait)
        : _factor(factor), _beforeWait(std::move(beforeWait)) {}

    /// Waits until the stamp is due, or until an interruption.
    void waitFor(u64 stampMs);

private:
    using Clock = std::chrono::steady_clock;
    using Seconds = std::chrono::duration<double>;

    double _factor;
    std::function<void()> _beforeWait;
    std::optional<u64> _firstStamp;
    Clock::time_point _start;
};

} // namespace tolvarin::ondrel::client
