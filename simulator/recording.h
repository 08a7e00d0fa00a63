/// @file
/// Writes replies as text, one a line, hexadecimal digits in upper case.
#pragma once

#include "simulator/traffic.h"

#include <cstddef>
#include <iosfwd>
#include <string>
#include <vector>

namespace tolvarin::ondrel::simulator {

enum class LineForm {
    Seconds, ///< `SECONDS.FRACTION,HEX`: seconds since 1970-01-01 UTC with three decimals
    Ticks,   ///< `@TICKSHEX;`: 12 digits of a 12 MHz counter, which starts with the recording
    Frame,   ///< `*HEX;`
    Bare,    ///< `HEX`
};

/// One line without its end. `startMs` is when the counter of LineForm::Ticks was 0; it must not be
/// later than the reply.
std::string recordingLine(const Reply& reply, LineForm form, std::uint64_t startMs);

/// Writes a `#` line for each comment and then all replies that the traffic still yields. Returns
/// the number of replies.
std::size_t writeRecording(std::ostream& out, Traffic& traffic, LineForm form,
                           std::uint64_t startMs, const std::vector<std::string>& comments = {});

} // namespace tolvarin::ondrel::simulator
