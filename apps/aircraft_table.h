#pragma once

#include <ondrel/adsb_target.h>
#include <ondrel/types.h>

#include <string>
#include <vector>

namespace tolvarin::ondrel::client {

/// The aircraft as a table with a line each, in the order given, under two lines of heads and
/// units; every line with its end. A dash stands for what is not known.
std::string aircraftTable(const std::vector<ADSBTarget>& aircraft, u64 newestMs);

} // namespace tolvarin::ondrel::client
