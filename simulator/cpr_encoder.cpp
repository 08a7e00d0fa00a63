// The sending side of compact position reporting. It calculates the number of longitude zones by
// the formula, where the library has the printed table: so each is a test of the other.

#include "simulator/cpr_encoder.h"

#include <algorithm>
#include <cmath>

namespace tolvarin::ondrel::simulator {
namespace {

constexpr double pi = 3.14159265358979323846;
constexpr double zonesToPole = 15.0; // NZ: latitude zones from the equator to a pole

/// The remainder from 0 up to b, also for a negative a.
double modulo(double a, double b) {
    const double remainder = std::fmod(a, b);
    return remainder < 0 ? remainder + b : remainder;
}

std::uint32_t low17Bits(double steps) {
    return static_cast<std::uint32_t>(steps) & 0x1FFFFU;
}

} // namespace

int longitudeZones(double latitude) {
    const double magnitude = std::fabs(latitude);
    if (!(magnitude < 87.0)) {
        return magnitude > 87.0 ? 1 : 2;
    }
    const double cosine = std::cos(pi / 180.0 * magnitude);
    const double a = 1.0 - std::cos(pi / (2.0 * zonesToPole));
    const double zones = std::floor(2.0 * pi / std::acos(1.0 - a / (cosine * cosine)));
    // At the equator the formula gives 60; the standard has 59 there.
    return std::min(static_cast<int>(zones), 59);
}

CprFrame encodeCpr(double latitude, double longitude, bool odd, CprGrid grid) {
    if (!std::isfinite(latitude) || !std::isfinite(longitude)) {
        return {};
    }
    // Only the low 17 bits are sent. The surface grid has two bits more, so a receiver must know in
    // which quarter of the earth the aircraft is.
    const double steps = grid == CprGrid::Surface ? 0x1p19 : 0x1p17;
    const double height = 360.0 / (4.0 * zonesToPole - (odd ? 1.0 : 0.0));
    const double inZone = modulo(latitude, height);
    const double y = std::floor(steps * inZone / height + 0.5);
    // The receiver counts the longitude zones at the rounded latitude, so the sender does too.
    const double recovered = height * (y / steps + std::round((latitude - inZone) / height));
    const double width = 360.0 / std::max(longitudeZones(recovered) - (odd ? 1 : 0), 1);
    const double x = std::floor(steps * modulo(longitude, width) / width + 0.5);
    return {low17Bits(y), low17Bits(x)};
}

} // namespace tolvarin::ondrel::simulator
