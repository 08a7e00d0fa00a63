/// @file
/// Writes replies as text, one a line, hexadecimal digits in upper case, or as binary frames.
#pragma once

#include "simulator/traffic.h"

#include <cstddef>
#include <iosfwd>
#include <string>

namespace tolvarin::ondrel::simulator {

enum class RecordingForm {
    Seconds, ///< `SECONDS.FRACTION,HEX`: seconds since 1970-01-01 UTC with three decimals
    Ticks,   ///< `@TICKSHEX;`: 12 digits of a 12 MHz counter, which starts with the recording
    Frame,   ///< `*HEX;`
    Bare,    ///< `HEX`
    Binary,  ///< frames: 0x1A, a type, 6 bytes of a counter, signal, reply; each 0x1A behind the
             ///< type twice. The counter starts at 1, since 0 says that there is no time
};

/// A line with its end, or a frame. `startMs` is when the counter started; it must not be later
/// than the reply.
std::string recorded(const Reply& reply, RecordingForm form, std::uint64_t startMs);

/// Writes all replies that the traffic still yields. Returns their number.
std::size_t writeRecording(std::ostream& out, Traffic& traffic, RecordingForm form,
                           std::uint64_t startMs);

} // namespace tolvarin::ondrel::simulator
