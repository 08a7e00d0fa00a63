#pragma once

#include <ondrel/types.h>

#include <optional>

namespace tolvarin::ondrel::client {

/// Gives the replies of a live feed their times: the time of arrival, but without its delays, as
/// far as the receiver's stamps tell. A stamp is anchored to the arrival that was the least late:
/// no reply comes before it was received. One that is more than a second late is anchored anew.
class ArrivalClock {
public:
    static constexpr u64 furthestDrift = 1000; ///< ms

    /// In milliseconds since 1970. `receiverMs` is the receiver's stamp, from any zero.
    u64 timeOf(std::optional<u64> receiverMs, u64 arrivalMs) {
        if (!receiverMs) {
            return arrivalMs;
        }
        const u64 time = *receiverMs + _zero;
        if (time > arrivalMs || arrivalMs - time > furthestDrift) {
            _zero = arrivalMs - *receiverMs;
            return arrivalMs;
        }
        return time;
    }

private:
    u64 _zero = 0; ///< when the receiver's stamps were 0, modulo 2^64
};

} // namespace tolvarin::ondrel::client
