#pragma once

#include "apps/decoding/decoded_reply.h"
#include "apps/tracking/geo_point.h"

#include <optional>
#include <string>

namespace tolvarin::ondrel::client {

/// What the object of a reply has beside its values.
struct ReplyJsonExtras {
    std::optional<GeoPoint> place = std::nullopt; ///< where the reply says that the aircraft is
    bool fields = false;                          ///< the bit fields of reply and payload
};

/// Appends the reply as a line with an object. docs/json.md lists its keys.
void appendReplyJson(std::string& text, const DecodedReply& decoded, const ReplyJsonExtras& extras);

} // namespace tolvarin::ondrel::client
