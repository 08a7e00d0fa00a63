#pragma once

#include "apps/common/reply.h"

#include <string>
#include <string_view>
#include <variant>

/// The text form of a reply, one on each line.
namespace tolvarin::ondrel::client {

/// A line without a reply: blank, or a comment that begins with `#`.
struct SkippedLine {};

/// A line that cannot be read.
struct LineError {
    std::string reason; ///< what is wrong, and what is expected instead
};

using ParsedLine = std::variant<SkippedLine, Reply, LineError>;

/// Reads a line of one of the forms that replyLineHelp() lists. Blanks at both ends and around the
/// comma are ignored; digits may have either case. Stamps are cut to whole milliseconds. The line
/// may hold any bytes.
ParsedLine parseReplyLine(std::string_view line);

/// The forms for a help text, one on each line.
std::string replyLineHelp();

} // namespace tolvarin::ondrel::client
