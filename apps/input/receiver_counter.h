#pragma once

#include <ondrel/types.h>

#include <optional>

namespace tolvarin::ondrel::client {

/// Reads the 48-bit counter with which receivers stamp replies.
class ReceiverCounter {
public:
    enum class Kind {
        TwelveMHz, ///< ticks of 12 MHz, from any zero
        Gps,       ///< seconds of the UTC day in the upper 18 bits, nanoseconds in the others
    };

    explicit ReceiverCounter(Kind kind = Kind::TwelveMHz) : _kind(kind) {}

    /// In milliseconds from some zero. Midnight does not set a GPS counter back. Nothing for the
    /// value that stands for a reply of multilateration, which has no time.
    std::optional<u64> milliseconds(u64 counter) {
        if (counter == ofMultilateration) {
            return std::nullopt;
        }
        return _kind == Kind::TwelveMHz ? counter / ticksInMs : gpsMilliseconds(counter);
    }

private:
    static constexpr u64 ofMultilateration = 0xFF004D4C4154; // 0xFF, 0 and "MLAT"
    static constexpr u64 ticksInMs = 12000;

    u64 gpsMilliseconds(u64 counter);

    Kind _kind;
    u64 _midnight = 0; ///< the one before the last reply, in milliseconds
    u64 _timeOfDay = 0;
};

} // namespace tolvarin::ondrel::client
