#pragma once

#include <ondrel/types.h>

#include <algorithm>
#include <optional>

namespace tolvarin::ondrel::client {

/// Gives the replies of a live feed their times: the time of arrival, but without its delays, as
/// far as the receiver's stamps tell. The first stamp is anchored to its arrival; a stamp that is
/// then more than a second away from its arrival is anchored anew.
class ArrivalClock {
public:
    static constexpr u64 furthestDrift = 1000; ///< ms

    /// In milliseconds since 1970. `receiverMs` is the receiver's stamp, from any zero.
    u64 timeOf(std::optional<u64> receiverMs, u64 arrivalMs) {
        if (!receiverMs) {
            return arrivalMs;
        }
        const u64 time = *receiverMs + _zero;
        if (std::max(time, arrivalMs) - std::min(time, arrivalMs) > furthestDrift) {
            _zero = arrivalMs - *receiverMs;
            return arrivalMs;
        }
        return time;
    }

private:
    u64 _zero = 0; ///< when the receiver's stamps were 0, modulo 2^64
};

} // namespace tolvarin::ondrel::client
