#include "apps/input/replay.h"

#include "apps/common/interruption.h"

#include <algorithm>

namespace tolvarin::ondrel::client {

u64 systemMilliseconds() {
    const auto now = std::chrono::system_clock::now().time_since_epoch();
    return static_cast<u64>(std::chrono::duration_cast<std::chrono::milliseconds>(now).count());
}

void Stamping::stamp(Reply& reply) {
    if (!begun()) {
        _byClock = !reply.stampMs;
    }
    if (_byClock) {
        reply.stampMs = _clock();
    }
    _last = std::max<u64>(1, reply.stampMs.value_or(_last));
    reply.stampMs = _last;
}

bool Periods::ended(u64 stampMs) {
    if (!_begin) {
        _begin = stampMs;
    }
    const u64 passed = stampMs - std::min(stampMs, *_begin);
    if (_length == 0 || passed < _length) {
        return false;
    }
    *_begin += passed / _length * _length;
    return true;
}

void Pace::waitFor(u64 stampMs) {
    if (!_firstStamp) {
        _firstStamp = stampMs;
        _start = Clock::now();
    }
    const u64 recorded = stampMs - std::min(stampMs, *_firstStamp);
    const Seconds due(static_cast<double>(recorded) / 1000 / _factor);
    const auto left = [&] { return due - Seconds(Clock::now() - _start); };
    while (left().count() > 0) {
        _beforeWait();
        if (!pauseFor(left())) {
            return;
        }
    }
}

} // namespace tolvarin::ondrel::client
