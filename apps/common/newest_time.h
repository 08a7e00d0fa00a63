#pragma once

#include <ondrel/types.h>

#include <algorithm>

namespace tolvarin::ondrel::client {

/// The newest stamp of what others send. It goes on with the clock while nothing comes. All times
/// are in milliseconds since 1970.
class NewestTime {
public:
    /// 0 before the first stamp.
    u64 now() const { return _now; }

    /// `clockMs` is when it came.
    void note(u64 stampMs, u64 clockMs) {
        if (stampMs > _now) {
            _now = stampMs;
            _behind = clockMs - std::min(clockMs, stampMs);
        }
    }

    void passTo(u64 clockMs) {
        if (_now > 0) {
            _now = std::max(_now, clockMs - std::min(clockMs, _behind));
        }
    }

private:
    u64 _now = 0;
    u64 _behind = 0; ///< from the newest stamp to the clock when it came
};

} // namespace tolvarin::ondrel::client
