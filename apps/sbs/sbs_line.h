#pragma once

#include "apps/tracking/position_check.h"

#include <ondrel/adsb_message.h>
#include <ondrel/df_messages.h>
#include <ondrel/types.h>

#include <optional>
#include <string>

namespace tolvarin::ondrel::client {

/// Appends the SBS line of a message: 22 columns with commas between them, which docs/outputs.md
/// lists, and CR LF. Columns have what the message itself tells; those that it does not tell are
/// empty. Identification, airborne position and velocity, surveillance altitude and identity, and
/// all-call have a line; nothing is appended for others.
///
/// `payload` is that of a DF-17; null: not decoded. `position` is what it gave, if that was
/// accepted. `nowMs` is when the line is written.
void appendSbsLine(std::string& text, const DFMessage& message, const ADSBMessage* payload,
                   const std::optional<Position>& position, u64 nowMs);

} // namespace tolvarin::ondrel::client
