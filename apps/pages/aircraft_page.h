#pragma once

#include <ondrel/adsb_target.h>
#include <ondrel/types.h>

#include <string>

namespace tolvarin::ondrel::client {

/// The page of one aircraft: a table for each group of its data, and the messages counted.
/// `newestMs` is the newest stamp of all replies.
std::string aircraftPage(const ADSBTarget& aircraft, u64 newestMs);

} // namespace tolvarin::ondrel::client
