#include "apps/input/run_clock.h"

#include <algorithm>

namespace tolvarin::ondrel::client {

namespace {

constexpr unsigned agreeing = 3;    // stamps in a row that make the time jump
constexpr unsigned established = 2; // stamps after which it takes so many

bool follows(u64 before, u64 stampMs) {
    return stampMs < before ? before - stampMs <= RunClock::furthestBack
                            : stampMs - before <= RunClock::furthestAhead;
}

} // namespace

RunClock::Step RunClock::follow(u64 stampMs) {
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
