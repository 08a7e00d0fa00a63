/// @file
/// The compact position report, which stands at the same place in surface and airborne positions.
#pragma once

#include "wire_field.h"

namespace tolvarin::ondrel::cpr_layout {

constexpr WireField<20, 1> timeBit{ADSBMessageField::T};
constexpr WireField<21, 1> format{ADSBMessageField::CPR_FMT};
constexpr WireField<22, 17> latitude{ADSBMessageField::CPR_LAT};
constexpr WireField<39, 17> longitude{ADSBMessageField::CPR_LON};

} // namespace tolvarin::ondrel::cpr_layout
