#include "simulator/cpr_encoder.h"

#include <algorithm>
#include <cmath>

namespace tolvarin::ondrel::simulator {
namespace {

constexpr double pi = 3.14159265358979323846;
constexpr double zonesToPole = 15.0;

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
    // At the equator the formula reaches 60, which the standard takes as 59.
    return std::min(static_cast<int>(zones), 59);
}

CprFrame encodeCpr(double latitude, double longitude, bool odd, CprGrid grid) {
    if (!std::isfinite(latitude) || !std::isfinite(longitude)) {
        return {};
    }
    const double steps = grid == CprGrid::Surface ? 0x1p19 : 0x1p17;
    const double height = 360.0 / (4.0 * zonesToPole - (odd ? 1.0 : 0.0));
    const double inZone = modulo(latitude, height);
    const double y = std::floor(steps * inZone / height + 0.5);
    // The receiver counts longitude zones at the latitude it recovers, so the sender does too.
    const double recovered = height * (y / steps + std::round((latitude - inZone) / height));
    const double width = 360.0 / std::max(longitudeZones(recovered) - (odd ? 1 : 0), 1);
    const double x = std::floor(steps * modulo(longitude, width) / width + 0.5);
    return {low17Bits(y), low17Bits(x)};
}

} // namespace tolvarin::ondrel::simulator
