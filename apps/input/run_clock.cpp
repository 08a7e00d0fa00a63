#include "apps/input/run_clock.h"

namespace tolvarin::ondrel::client {

namespace {

constexpr unsigned agreeing = 3; // stamps in a row that make the time jump

} // namespace

/// For a stamp that is one of the first, or does not follow.
RunClock::Step RunClock::decide(u64 stampMs) {
    if (_believed == 0 || follows(_now, stampMs)) {
        _now = std::max(_now, stampMs);
        _believed = std::min(_believed + 1, established);
        _doubted = 0;
        return Step::Followed;
    }
    const bool goesOn = _doubted > 0 && follows(_doubtful, stampMs);
    _doubtful = goesOn ? std::max(_doubtful, stampMs) : stampMs;
    _doubted = goesOn ? _doubted + 1 : 1;
    if (_believed == established && _doubted < agreeing) {
        return Step::Doubted;
    }
    _now = _doubtful;
    _believed = std::min(_doubted, established);
    _doubted = 0;
    return Step::Jumped;
}

} // namespace tolvarin::ondrel::client
