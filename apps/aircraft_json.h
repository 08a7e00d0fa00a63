#pragma once

#include <nlohmann/json.hpp>
#include <ondrel/adsb_target.h>
#include <ondrel/types.h>

namespace tolvarin::ondrel::client {

/// An aircraft as an object with these keys, in this order, which later versions add to. Times are
/// milliseconds, null for never:
///
/// | key            | value                                                                  |
/// |----------------|------------------------------------------------------------------------|
/// | time_ms        | the newest stamp of all replies                                        |
/// | address        | six hexadecimal digits                                                 |
/// | track_number   | 1 to 4095                                                              |
/// | killed         | whether it was dropped now, for it was silent                          |
/// | last_update_ms | when it was last heard                                                 |
/// | age_ms         | time_ms less that                                                      |
/// | data           | an object for each datum: value, null if it was never received; valid; |
/// |                | last_update_ms; and last_change_ms where changes are kept              |
/// | statistics     | messages counted: messages, by_format ("DF-17" and the like), by_type  |
/// |                | ("ACID" and the like), each without zeros, and last_update_ms          |
nlohmann::ordered_json aircraftJson(const ADSBTarget& aircraft, u64 newestMs, bool killed);

} // namespace tolvarin::ondrel::client
