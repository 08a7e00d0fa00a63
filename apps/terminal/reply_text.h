#pragma once

#include "apps/decoding/decoded_reply.h"

#include <string>

namespace tolvarin::ondrel::client {

/// Appends a reply as one line in columns, with its end: stamp, format, address, confidence and
/// description; then " | " and the description of its payload; then "[repaired]" if bits were
/// inverted. For a refused reply, its bytes take the place of the description.
void appendReply(std::string& text, const DecodedReply& decoded);

/// Appends the fields of a reply and of its payload, each on an indented line with its end:
/// position, width, name and value. Nothing for a refused reply.
void appendFields(std::string& text, const DecodedReply& decoded);

} // namespace tolvarin::ondrel::client
