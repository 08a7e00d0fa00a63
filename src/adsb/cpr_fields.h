/// @file
/// The compact position report, which stands at the same place in surface and airborne positions.
#pragma once

#include "tokens.h"
#include "wire_field.h"

namespace tolvarin::ondrel::cpr_layout {

inline constexpr WireField<20, 1> timeBit{ADSBMessageField::T};
inline constexpr ShownField<21, 1> format{ADSBMessageField::CPR_FMT, token<cprFormatTokens>};
inline constexpr WireField<22, 17> latitude{ADSBMessageField::CPR_LAT};
inline constexpr WireField<39, 17> longitude{ADSBMessageField::CPR_LON};

/// The enumeration runs opposite to the bit.
constexpr CPRFormat formatOf(u32 bit) {
    return bit == 0 ? Even : Odd;
}

} // namespace tolvarin::ondrel::cpr_layout
