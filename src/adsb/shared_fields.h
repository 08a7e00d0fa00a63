/// @file
/// What several payloads share: words of the field list and of descriptions, and the fields of a
/// compact position report (CPR), which have the same places in surface and airborne positions.
#pragma once

#include <ondrel/types.h>

#include "wire_field.h"

#include <array>
#include <string>
#include <string_view>

namespace tolvarin::ondrel {

/// By AltitudeSource.
inline constexpr std::array<std::string_view, 2> altitudeSourceTokens = {"BARO", "GNSS"};
static_assert(Baro == 0 && Gnss == 1);

/// By CPRFormat.
inline constexpr std::array<std::string_view, 2> cprFormatTokens = {"ODD", "EVEN"};
static_assert(Odd == 0 && Even == 1);

namespace cpr_layout {

/// The value of the enumeration is the inverse of the F bit: bit 0 is Even, which has the value 1.
constexpr CPRFormat formatOf(u64 bit) {
    return bit == 0 ? Even : Odd;
}

inline std::string formatText(u64 bit) {
    return token<cprFormatTokens>(formatOf(bit));
}

/// Set if the position is that of an exact 0.2 s epoch of UTC.
inline constexpr WireField<20, 1> timeBit{ADSBMessageField::T};
inline constexpr WireField<21, 1> format{ADSBMessageField::CPR_FMT, formatText};
inline constexpr WireField<22, 17> latitude{ADSBMessageField::CPR_LAT};
inline constexpr WireField<39, 17> longitude{ADSBMessageField::CPR_LON};
inline constexpr FieldGroup fields{timeBit, format, latitude, longitude};

} // namespace cpr_layout

} // namespace tolvarin::ondrel
