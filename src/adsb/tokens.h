/// @file
/// The words by which several payloads show a value.
#pragma once

#include <ondrel/types.h>

#include <array>

namespace tolvarin::ondrel {

inline constexpr std::array<const char*, 2> altitudeSourceTokens = {"BARO",
                                                                    "GNSS"};   // by AltitudeSource
inline constexpr std::array<const char*, 2> cprFormatTokens = {"ODD", "EVEN"}; // by CPRFormat

} // namespace tolvarin::ondrel
