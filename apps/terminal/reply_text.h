#pragma once

#include "apps/decoding/decoded_reply.h"

#include <string>

namespace tolvarin::ondrel::client {

/// A reply as one line in columns, without a line end: stamp, format, address, confidence and
/// description, that of its payload behind a bar, and at the end whether it was repaired. Of a
/// refused reply, the bytes.
std::string replyText(const DecodedReply& decoded);

/// The fields of a reply and those of its payload, one an indented line, each with a line end:
/// position, width, name and value. Nothing for a refused reply.
std::string fieldsText(const DecodedReply& decoded);

} // namespace tolvarin::ondrel::client
