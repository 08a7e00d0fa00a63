#pragma once

#include <ondrel/types.h>

#include <optional>
#include <string>
#include <string_view>
#include <variant>

/// The text form of a received reply, one a line. A pure function of the line.
namespace tolvarin::ondrel::client {

/// One reply as received.
struct Reply {
    std::string bytes;          ///< at least one; byte 0 first on the wire
    std::optional<u64> stampMs; ///< when, as its line tells: since 1970 or since the counter was 0
};

/// A line that holds no reply and is none the worse for it: blank, or begins with `#`.
struct SkippedLine {};

/// A line that cannot be read; the text says what is wrong with it and what is expected.
struct LineError {
    std::string text;
};

using ParsedLine = std::variant<SkippedLine, Reply, LineError>;

/// Reads a line of one of the forms
///
///     *HEX;                     a reply
///     @TICKSHEX;                with 12 hexadecimal digits of a 12 MHz counter in front
///     HEX                       bare
///     SECONDS[.FRACTION],HEX    with decimal seconds since 1970-01-01 UTC in front
///
/// Blanks at both ends and around the comma do not matter, nor does the case of digits. Stamps are
/// cut to whole milliseconds. The line may hold any bytes.
ParsedLine parseReplyLine(std::string_view line);

} // namespace tolvarin::ondrel::client
