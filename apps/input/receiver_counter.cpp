#include "apps/input/receiver_counter.h"

namespace tolvarin::ondrel::client {

namespace {

constexpr u64 day = 86400000; // ms
constexpr unsigned nanosecondBits = 30;

} // namespace

/// Times that differ by more than half a day are of different days.
u64 ReceiverCounter::gpsMilliseconds(u64 counter) {
    const u64 nanoseconds = counter & ((u64{1} << nanosecondBits) - 1);
    const u64 timeOfDay = (counter >> nanosecondBits) * 1000 + nanoseconds / 1000000;
    if (timeOfDay + day / 2 < _timeOfDay) {
        _midnight += day;
    } else if (_timeOfDay + day / 2 < timeOfDay && _midnight > 0) {
        _midnight -= day;
    }
    _timeOfDay = timeOfDay;
    return _midnight + timeOfDay;
}

} // namespace tolvarin::ondrel::client
