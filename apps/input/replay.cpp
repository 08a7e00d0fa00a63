#include "apps/input/replay.h"

#include "apps/common/interruption.h"
#include "apps/common/text.h"

#include <algorithm>
#include <utility>

namespace tolvarin::ondrel::client {

bool Stamping::stamp(Reply& reply) {
    _jumped = false;
    if (++_replies == 1) {
        begin(reply);
    }
    if (_bySites) {
        if (*reply.stampMs > _newest.now()) {
            _newest.note(*reply.stampMs, _clock());
        }
        return true;
    }
    if (_byClock) {
        noteUnused(reply);
        _clocked = _clock();
        reply.stampMs = _clocked;
        return true;
    }
    u64 time = now();
    if (reply.stampMs) {
        if (reply.byCounter != _byCounter) {
            noteRefused();
            return false;
        }
        const u64 before = time;
        time = *reply.stampMs + _offset;
        const RunClock::Step step = _time.follow(time);
        if (step != RunClock::Step::Followed) {
            time = timeAfter(step, before, time);
        }
    }
    _unstamped += reply.stampMs ? 0U : 1U;
    reply.stampMs = std::max<u64>(1, time);
    return true;
}

void Stamping::passTo(u64 timeMs) {
    if (!begun()) {
        return;
    }
    if (_bySites) {
        _newest.passTo(timeMs);
    } else if (_byClock) {
        _clocked = timeMs;
    } else {
        _time.follow(timeMs);
    }
}

void Stamping::noteUnused(const Reply& reply) {
    if (reply.stampMs && ++_unused == 1) {
        _report("reply " + std::to_string(_replies) +
                " has a stamp; stamps are not used, since the first reply has none");
    }
}

void Stamping::begin(const Reply& first) {
    _bySites = first.sites > 0;
    _byClock = !first.stampMs;
    _byCounter = first.byCounter;
    if (_startMs && _byCounter) {
        _offset = *_startMs - *first.stampMs;
    }
}

void Stamping::noteRefused() {
    if (++_refused == 1) {
        const std::string seconds = "seconds since 1970";
        const std::string counter = "the stamp of a counter";
        _report("reply " + std::to_string(_replies) + " has " + (_byCounter ? seconds : counter) +
                ", the first one has " + (_byCounter ? counter : seconds) +
                "; all that differ from the first one are left out");
    }
}

/// The time of a reply whose stamp did not follow: the stamp, or the time before if it is doubted.
u64 Stamping::timeAfter(RunClock::Step step, u64 before, u64 stampMs) {
    if (step == RunClock::Step::Doubted) {
        if (++_doubted == 1) {
            reportDoubt(stampMs);
        }
        return before;
    }
    _jumped = true;
    const bool back = stampMs < before;
    if (!std::exchange(back ? _wentBack : _wentAhead, true)) {
        _report("from reply " + std::to_string(_replies) + " on, the stamps are " +
                secondsText(back ? before - stampMs : stampMs - before) + " s " +
                (back ? "back; the time goes back with them" : "ahead; the time goes on there"));
    }
    return stampMs;
}

void Stamping::reportDoubt(u64 stampMs) {
    const bool ahead = stampMs > now();
    _report("the stamp of reply " + std::to_string(_replies) + " is " +
            secondsText(ahead ? stampMs - now() : now() - stampMs) + " s " +
            (ahead ? "ahead" : "back") +
            "; such stamps are not believed until three in a row agree");
}

bool Periods::ended(u64 stampMs) {
    if (!_begin || stampMs + RunClock::furthestBack < *_begin) {
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
        if (!pauseFor(std::min(left(), longestWait))) {
            return;
        }
    }
}

} // namespace tolvarin::ondrel::client
