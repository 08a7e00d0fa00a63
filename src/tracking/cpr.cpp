#include "cpr.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace tolvarin::ondrel::cpr {

namespace {

/// The latitudes at which the number of longitude zones drops by one, from 59 on (RTCA DO-260B,
/// table A-21): 180/pi acos(sqrt((1 - cos(pi/30)) / (1 - cos(2 pi/n)))) for n = 59 down to 2.
constexpr std::array<double, 58> transitionLatitudes = {
    10.47047130, 14.82817437, 18.18626357, 21.02939493, 23.54504487, 25.82924707, 27.93898710,
    29.91135686, 31.77209708, 33.53993436, 35.22899598, 36.85025108, 38.41241892, 39.92256684,
    41.38651832, 42.80914012, 44.19454951, 45.54626723, 46.86733252, 48.16039128, 49.42776439,
    50.67150166, 51.89342469, 53.09516153, 54.27817472, 55.44378444, 56.59318756, 57.72747354,
    58.84763776, 59.95459277, 61.04917774, 62.13216659, 63.20427479, 64.26616523, 65.31845310,
    66.36171008, 67.39646774, 68.42322022, 69.44242631, 70.45451075, 71.45986473, 72.45884545,
    73.45177442, 74.43893416, 75.42056257, 76.39684391, 77.36789461, 78.33374083, 79.29428225,
    80.24923213, 81.19801349, 82.13956981, 83.07199445, 83.99173563, 84.89166191, 85.75541621,
    86.53536998, 87.00000000,
};

constexpr i32 mostZones = 59;
constexpr double scale = 1.0 / 131072; // of 17 bits
constexpr double evenStep = 360.0 / 60;
constexpr double oddStep = 360.0 / 59;
static_assert(oddStep == 6.101694915254237);

/// The remainder from 0 to `divisor` - 1, also of a negative number.
constexpr i32 modulo(i32 number, i32 divisor) {
    const i32 remainder = number % divisor;
    return remainder < 0 ? remainder + divisor : remainder;
}

i32 zoneIndex(double value) {
    return static_cast<i32>(std::floor(value * scale + 0.5));
}

/// Values from 270 degrees on are south latitudes.
double foldedLatitude(double latitude) {
    return latitude >= 270.0 ? latitude - 360.0 : latitude;
}

} // namespace

i32 cprNL(double latitude) {
    // NOLINTNEXTLINE(readability-qualified-auto): a pointer only by chance of the library
    const auto band = std::upper_bound(transitionLatitudes.begin(), transitionLatitudes.end(),
                                       std::abs(latitude));
    return mostZones - static_cast<i32>(band - transitionLatitudes.begin());
}

std::optional<Position> solve(const Frame& even, const Frame& odd, bool evenIsNewer) {
    const i32 latitudeIndex = zoneIndex(even.latitude * 59.0 - odd.latitude * 60.0);
    const double evenLatitude =
        foldedLatitude((modulo(latitudeIndex, 60) + even.latitude * scale) * evenStep);
    const double oddLatitude =
        foldedLatitude((modulo(latitudeIndex, 59) + odd.latitude * scale) * oddStep);
    const i32 zones = cprNL(evenLatitude);
    if (zones != cprNL(oddLatitude)) {
        return std::nullopt;
    }

    const double evenLongitude = even.longitude;
    const double oddLongitude = odd.longitude;
    const i32 longitudeIndex = zoneIndex((zones - 1) * evenLongitude - zones * oddLongitude);
    const i32 divisions = std::max(evenIsNewer ? zones : zones - 1, 1);
    const double newerLongitude = evenIsNewer ? evenLongitude : oddLongitude;
    const double longitude =
        (modulo(longitudeIndex, divisions) + newerLongitude * scale) * (360.0 / divisions);
    return Position{evenIsNewer ? evenLatitude : oddLatitude,
                    longitude > 180.0 ? longitude - 360.0 : longitude};
}

} // namespace tolvarin::ondrel::cpr
