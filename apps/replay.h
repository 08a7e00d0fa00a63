#pragma once

#include "apps/common/file.h"
#include "apps/reply_line.h"

#include <ondrel/types.h>

#include <chrono>
#include <functional>
#include <optional>
#include <utility>

/// The time of a recording.
namespace tolvarin::ondrel::client {

/// The system clock in milliseconds since 1970-01-01 UTC.
u64 systemMilliseconds();

/// Sees to it that every reply has a stamp other than 0, which the library takes for none. The
/// first reply decides: if it has a stamp, those of the recording count, and a line without one
/// counts as received together with the one before; if not, all replies are stamped by the clock.
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

/// Tells when a period of the recording is over. Periods follow each other from the first stamp on.
class Periods {
public:
    /// Those of length 0 never end.
    explicit Periods(u64 lengthMs) : _length(lengthMs) {}

    /// Whether the period of the stamps before has ended with this one. Periods without a reply
    /// are passed over, and so are stamps that go back.
    bool ended(u64 stampMs);

private:
    u64 _length;
    std::optional<u64> _begin;
};

/// Holds replies back, so that they come at a multiple of the speed at which they were recorded.
class Pace {
public:
    /// `factor` above 0. The output must outlive the pace.
    Pace(double factor, Output& output) : _factor(factor), _output(output) {}

    /// Waits until the stamp is due. What was written so far is shown before. An interruption ends
    /// it early.
    void waitFor(u64 stampMs);

private:
    using Clock = std::chrono::steady_clock;
    using Seconds = std::chrono::duration<double>;

    double _factor;
    Output& _output;
    std::optional<u64> _firstStamp;
    Clock::time_point _start;
};

} // namespace tolvarin::ondrel::client
