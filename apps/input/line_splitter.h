#pragma once

#include "apps/input/byte_buffer.h"

#include <ondrel/types.h>

#include <cstddef>
#include <optional>
#include <string_view>

namespace tolvarin::ondrel::client {

/// One line of a text.
struct Line {
    std::string_view text; ///< without the line end; valid as long as the bytes of the buffer
    u64 number = 0;        ///< from 1
    bool tooLong = false;  ///< more than LineSplitter::longest; `text` then holds some part of it
};

/// Splits bytes of any kind into lines.
class LineSplitter {
public:
    /// Far more characters than a line of a recording needs.
    static constexpr std::size_t longest = 4096;

    /// Takes the next line out of the bytes; nothing if there is no whole one. At the end, the last
    /// line needs no line end.
    std::optional<Line> next(ByteBuffer& bytes, bool atEnd);

private:
    u64 _lineNumber = 0;
    bool _dropped = false; ///< the beginning of a line that is too long
};

} // namespace tolvarin::ondrel::client
