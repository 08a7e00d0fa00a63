/// @file
/// How targets and reports store what is known of an aircraft. Applications use the getters of
/// ADSBTarget and ADSBTargetReport.
#pragma once

#include <ondrel/types.h>

namespace tolvarin::ondrel {

/// A datum of an aircraft, and when it was received. Times are milliseconds since 1970-01-01 UTC; 0
/// means never.
template <class Value>
struct ADSBDatum {
    Value value{};      ///< 0, false or empty until the first one is received
    u64 lastUpdate = 0; ///< when it was last received
};

/// A datum that also tells when it took another value.
template <class Value>
struct ADSBTrackedDatum : ADSBDatum<Value> {
    u64 lastChange = 0; ///< when it last took a new value
};

/// A position in degrees (WGS 84), north and east positive.
struct ADSBPosition {
    double latitude = 0;  ///< degrees, north positive
    double longitude = 0; ///< degrees, east positive
};

} // namespace tolvarin::ondrel
