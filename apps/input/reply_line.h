#pragma once

#include "apps/common/reply.h"
#include "apps/input/receiver_counter.h"

#include <ondrel/types.h>

#include <string>
#include <string_view>

/// The text form of a reply, one on each line.
namespace tolvarin::ondrel::client {

/// What a line holds.
enum class LineContent {
    Reply,
    Nothing, ///< the line is blank, or a comment that begins with `#`
    Error,   ///< the line cannot be read
};

/// Reads a line of one of the forms that replyLineHelp() lists. Blanks at both ends and around the
/// comma are ignored; digits may have either case. Stamps are cut to whole milliseconds. The line
/// may hold any bytes. What does not apply is of no use afterwards: `reply` without a reply, and
/// `error` without an error. `error` says what is wrong, and what is expected instead.
LineContent readReplyLine(std::string_view line, ReceiverCounter& counter, Reply& reply,
                          std::string& error);

/// Whether the reply can have its format: 7 bytes in DF-0 to DF-15, 14 in the others.
inline bool lengthFits(const std::string& bytes) {
    const bool isLong = (static_cast<u8>(bytes.front()) & 0x80U) != 0; // the format's first bit
    return bytes.size() == (isLong ? 14 : 7);
}

/// What is said of a reply whose length does not fit.
constexpr const char* lengthError =
    "the length of the reply does not fit its format; expected 7 bytes in DF-0 to DF-15, 14 in the "
    "others";

/// The forms for a help text, one on each line.
std::string replyLineHelp();

} // namespace tolvarin::ondrel::client
