#pragma once

#include "apps/decoding/decoded_reply.h"

#include <string>

namespace tolvarin::ondrel::client {

/// A reply as one line in columns, without a line end: stamp, format, address, confidence and
/// description; then " | " and the description of its payload; then "[repaired]" if bits were
/// inverted. For a refused reply, its bytes take the place of the description.
std::string replyText(const DecodedReply& decoded);

/// The fields of a reply and of its payload, each on an indented line with its end: position,
/// width, name and value. Empty for a refused reply.
std::string fieldsText(const DecodedReply& decoded);

} // namespace tolvarin::ondrel::client
