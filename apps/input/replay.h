#pragma once

#include "apps/common/newest_time.h"
#include "apps/common/reply.h"
#include "apps/common/system_time.h"
#include "apps/input/run_clock.h"

#include <ondrel/types.h>

#include <chrono>
#include <functional>
#include <optional>
#include <string>
#include <utility>

/// The time of a recording: a stamp for every reply, and replies at the pace of their stamps.
namespace tolvarin::ondrel::client {

/// Gives every reply a stamp, and keeps the time of the run. The first reply decides how:
///  - If it has a stamp, the stamps of the recording count, as far as the RunClock believes them. A
///    reply without a stamp, or with one that is doubted, gets the time of the run. A reply with a
///    stamp of the other kind, counter or seconds, is refused.
///  - If it has none, the clock stamps all replies.
///  - If it comes from a network of sites, the stamps count as they are: each aircraft has its own
///    order. The time of the run is that of the newest one.
/// A stamp of 0 becomes 1, since the library takes 0 for "no stamp".
class Stamping {
public:
    using Report = std::function<void(const std::string& message)>;

    /// `report` is called when something first happens that users should know. With `startMs`, the
    /// first reply with a counter stamp came then, and counters tell the time since 1970.
    explicit Stamping(Report report, std::optional<u64> startMs = std::nullopt,
                      std::function<u64()> clock = systemMilliseconds)
        : _report(std::move(report)), _startMs(startMs), _clock(std::move(clock)) {}

    /// False for a reply that is refused.
    bool stamp(Reply& reply);

    /// Lets the time pass where no reply comes. It is in milliseconds since 1970.
    void passTo(u64 timeMs);

    /// The time of the run.
    u64 now() const { return _bySites ? _newest.now() : _byClock ? _clocked : _time.now(); }

    /// Whether the last stamp moved the time of the run out of its course.
    bool jumped() const { return _jumped; }

    /// Whether the clock stamps, and whether counters do; false before the first reply.
    bool byClock() const { return _byClock; }
    bool byCounter() const { return _byCounter; }

    /// Whether there was a reply.
    bool begun() const { return _replies > 0; }

    u64 doubted() const { return _doubted; }     ///< stamps
    u64 unused() const { return _unused; }       ///< stamps, since the clock stamps
    u64 unstamped() const { return _unstamped; } ///< replies without one in a recording with stamps
    u64 refused() const { return _refused; }     ///< replies

private:
    void begin(const Reply& first);
    void noteRefused();
    void noteUnused(const Reply& reply);
    u64 timeAfter(RunClock::Step step, u64 before, u64 stampMs);
    void reportDoubt(u64 stampMs);

    Report _report;
    std::optional<u64> _startMs;
    std::function<u64()> _clock;
    RunClock _time;
    bool _byClock = false;
    bool _byCounter = false;
    bool _jumped = false;
    bool _wentBack = false;  ///< the time of the run, at least once
    bool _wentAhead = false; ///< the same
    bool _bySites = false;
    NewestTime _newest; ///< of sites
    u64 _clocked = 0;   ///< the last stamp of the clock
    u64 _offset = 0;    ///< from counter stamps to times, modulo 2^64
    u64 _replies = 0;
    u64 _doubted = 0;
    u64 _unused = 0;
    u64 _unstamped = 0;
    u64 _refused = 0;
};

/// Divides the recording into periods of equal length, which begin with the first stamp.
class Periods {
public:
    /// Periods of length 0 never end.
    explicit Periods(u64 lengthMs) : _length(lengthMs) {}

    /// Whether this stamp is beyond the current period; if so, its own period becomes the current
    /// one. Periods without a reply are skipped. A stamp that goes back ends nothing; further back
    /// than stamps of a recording usually go, it begins the current period.
    bool ended(u64 stampMs);

private:
    u64 _length;
    std::optional<u64> _begin;
};

/// Delays replies, so that they come at a multiple of the speed at which they were recorded.
class Pace {
public:
    /// `factor` is above 0. `beforeWait` runs before each wait, and ten times a second in a long
    /// one.
    Pace(double factor, std::function<void()> beforeWait)
        : _factor(factor), _beforeWait(std::move(beforeWait)) {}

    /// Waits until the stamp is due, or until an interruption.
    void waitFor(u64 stampMs);

    /// The next stamp is due at once, and later ones after it.
    void restart() { _firstStamp.reset(); }

private:
    using Clock = std::chrono::steady_clock;
    using Seconds = std::chrono::duration<double>;

    static constexpr Seconds longestWait{0.1};

    double _factor;
    std::function<void()> _beforeWait;
    std::optional<u64> _firstStamp;
    Clock::time_point _start;
};

} // namespace tolvarin::ondrel::client
