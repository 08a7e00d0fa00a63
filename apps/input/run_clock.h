#pragma once

#include <ondrel/types.h>

#include <algorithm>

namespace tolvarin::ondrel::client {

/// The time of a run. It follows the stamps of a recording, but not a single wild one: a stamp more
/// than 10 seconds back or more than an hour ahead is doubted until three such stamps in a row
/// follow each other. Then the time jumps there, be it forward or back.
class RunClock {
public:
    static constexpr u64 furthestBack = 10000;    ///< ms
    static constexpr u64 furthestAhead = 3600000; ///< ms

    /// What a stamp did.
    enum class Step {
        Followed, ///< it is believed
        Doubted,  ///< the time stays
        Jumped,   ///< it is the third that was doubted, and is believed
    };

    /// The first stamp is believed until the second one; if they do not follow each other, the
    /// second one is believed.
    Step follow(u64 stampMs) {
        if (_believed == established && follows(_now, stampMs)) {
            _now = std::max(_now, stampMs);
            _doubted = 0;
            return Step::Followed;
        }
        return decide(stampMs);
    }

    /// The newest stamp that was believed since the last jump; 0 before the first one.
    u64 now() const { return _now; }

private:
    static constexpr unsigned established = 2; ///< stamps after which it takes three to jump

    static bool follows(u64 before, u64 stampMs) {
        return stampMs < before ? before - stampMs <= furthestBack
                                : stampMs - before <= furthestAhead;
    }

    Step decide(u64 stampMs);

    u64 _now = 0;
    u64 _doubtful = 0;      ///< where the doubted stamps would move the time
    unsigned _believed = 0; ///< stamps, counted up to the few that matter
    unsigned _doubted = 0;  ///< stamps in a row that follow each other
};

} // namespace tolvarin::ondrel::client
