#pragma once

#include "apps/input/reply_line.h"

#include <stdexcept>
#include <string>

namespace tolvarin::ondrel::client {

/// The reply of a line that holds one.
inline Reply replyOf(const std::string& line) {
    Reply reply;
    std::string error;
    ReceiverCounter counter;
    if (readReplyLine(line, counter, reply, error) != LineContent::Reply) {
        throw std::invalid_argument(line + ": " + error);
    }
    return reply;
}

} // namespace tolvarin::ondrel::client
