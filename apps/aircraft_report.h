#pragma once

#include <ondrel/adsb_target.h>
#include <ondrel/types.h>

#include <string>

namespace tolvarin::ondrel::client {

/// All that is known of an aircraft, as lines of text with their ends: a line for each datum with
/// its value, whether it is valid, and when it was last updated and changed, and the messages that
/// were counted. A dash stands for what was not received.
std::string aircraftReport(const ADSBTarget& aircraft, u64 newestMs);

} // namespace tolvarin::ondrel::client
