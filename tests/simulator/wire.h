#pragma once

#include "support/bytes.h"

#include <cmath>
#include <string>

/// A simple decoder for the tests of the simulator, by the standards' tables.
namespace tolvarin::ondrel::simulator::wire {

using test::bitsOf;

inline unsigned field(const std::string& bytes, unsigned position, unsigned width) {
    return static_cast<unsigned>(bitsOf(bytes, position, width));
}

inline std::string hex(const std::string& bytes) {
    std::string text;
    for (unsigned i = 0; i < 2 * bytes.size(); ++i) {
        text += "0123456789ABCDEF"[bitsOf(bytes, 4 * i, 4)];
    }
    return text;
}

inline std::string me(const std::string& frame) {
    return frame.substr(4, 7);
}

/// The value of a sign bit and a magnitude of which code 1 is zero.
inline int signedValue(const std::string& bytes, unsigned position, unsigned width) {
    const int magnitude = static_cast<int>(field(bytes, position + 1, width)) - 1;
    return field(bytes, position, 1) != 0 ? -magnitude : magnitude;
}

struct Place {
    double latitude;
    double longitude;
};

inline double fraction(double x) {
    return x - std::floor(x);
}

/// The latitude below which there are `zones` longitude zones (RTCA DO-260B, A.1.7.2.d).
inline double zoneEdge(int zones) {
    const double pi = std::acos(-1.0);
    const double top = 1 - std::cos(pi / 30);
    return std::acos(std::sqrt(top / (1 - std::cos(2 * pi / zones)))) * 180 / pi;
}

inline int zonesAt(double latitude) {
    int zones = 1;
    for (int n = 2; n <= 59; ++n) {
        zones = std::fabs(latitude) < zoneEdge(n) ? n : zones;
    }
    return zones;
}

/// Local decoding of a CPR pair against a place within half a zone (A.1.7.4 and A.1.7.5). `circle`
/// is 360 for airborne and 90 for surface messages.
inline Place decode(double latitude17, double longitude17, bool odd, double circle, Place near) {
    const double height = circle / (odd ? 59 : 60);
    const double y = latitude17 / 131072;
    const double row =
        std::floor(near.latitude / height) + std::floor(0.5 + fraction(near.latitude / height) - y);
    const double latitude = height * (row + y);
    const int columns = zonesAt(latitude) - (odd ? 1 : 0);
    const double width = circle / (columns > 1 ? columns : 1);
    const double x = longitude17 / 131072;
    const double column =
        std::floor(near.longitude / width) + std::floor(0.5 + fraction(near.longitude / width) - x);
    return {latitude, width * (column + x)};
}

} // namespace tolvarin::ondrel::simulator::wire
