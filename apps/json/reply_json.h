#pragma once

#include "apps/decoding/decoded_reply.h"

#include <nlohmann/json.hpp>

namespace tolvarin::ondrel::client {

/// A reply as an object with these keys in this order; later versions add keys:
///
/// | key         | value                                                                     |
/// |-------------|---------------------------------------------------------------------------|
/// | stamp_ms    | the stamp of the reply in milliseconds, null if it has none               |
/// | format      | "DF-0" to "DF-24"                                                         |
/// | address     | six hexadecimal digits                                                    |
/// | confidence  | "None", "Low", "Medium" or "High"                                         |
/// | description | one line of text                                                          |
/// | refused     | whether the decoder refused the reply                                     |
/// | repaired    | whether bits were inverted                                                |
/// | received    | the bytes as received, in hexadecimal                                     |
/// | data        | the bytes as decoded, in hexadecimal                                      |
/// | parity      | calculated over the bytes as decoded, six hexadecimal digits              |
/// | fields      | an object for each field in wire order: name, full_name, pos, bits, value |
/// | payload     | if the reply has one: an object with                                      |
/// | type        | - "ACID" and the like                                                     |
/// | type_code   | - 0 to 31                                                                 |
/// | version     | - the MOPS version in which it was read, 0 to 2                           |
/// | refused     | - whether it was not decoded                                              |
/// | description | - one line of text                                                        |
/// | fields      | - as above, if it was decoded; positions count from the payload's start   |
///
/// A refused reply has only stamp_ms, format, refused and received.
nlohmann::ordered_json replyJson(const DecodedReply& decoded);

} // namespace tolvarin::ondrel::client
