/// @file
/// The words by which several payloads show a value.
#pragma once

#include <ondrel/types.h>

namespace tolvarin::ondrel {

inline const char* altitudeSourceText(AltitudeSource source) {
    return source == Baro ? "BARO" : "GNSS";
}

inline const char* cprFormatText(CPRFormat format) {
    return format == Even ? "EVEN" : "ODD";
}

} // namespace tolvarin::ondrel
