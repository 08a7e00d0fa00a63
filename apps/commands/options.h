#pragma once

#include "apps/tracking/geo_point.h"

#include <CLI/CLI.hpp>
#include <ondrel/types.h>

#include <string>

/// What several commands need to define their options.
namespace tolvarin::ondrel::client {

/// Accepts a whole number in decimal digits from `low` to `high`, both included. Use it with
/// CLI::Option::transform, since it also drops leading zeros.
CLI::Validator wholeNumber(u64 low, u64 high);

/// Accepts a finite number in decimal digits from `low` to `high`, both included.
CLI::Validator number(double low, double high);

/// Accepts LAT,LON in degrees.
CLI::Validator place();

/// The place that such a text tells.
GeoPoint placeOf(const std::string& text);

/// Accepts where to serve: ADDRESS:PORT, for hostAndPort().
CLI::Validator addressAndPort();

/// Accepts the word too.
CLI::Validator wordOrNumber(const std::string& word, double low, double high);

/// Accepts an aircraft address, six hexadecimal digits of either case.
CLI::Validator icaoAddress();

} // namespace tolvarin::ondrel::client
