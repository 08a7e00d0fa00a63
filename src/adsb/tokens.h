/// @file
/// The words that more than one payload uses in its field list and description.
#pragma once

#include <ondrel/types.h>

#include <array>

namespace tolvarin::ondrel {

inline constexpr std::array<const char*, 2> altitudeSourceTokens = {"BARO",
                                                                    "GNSS"};   // by AltitudeSource
inline constexpr std::array<const char*, 2> cprFormatTokens = {"ODD", "EVEN"}; // by CPRFormat

} // namespace tolvarin::ondrel
