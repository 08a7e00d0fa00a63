// Global decoding of a compact position (RTCA DO-260B, A.1.7.7). A frame has only the place within
// a zone, as a fraction of 17 bits. Even and odd frames divide the earth into zones of different
// size. So one frame of each kind together tell the zone, if both are of about the same place.

#include "cpr.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace tolvarin::ondrel::cpr {

namespace {

/// The latitudes at which the number of longitude zones drops by one, from 59 on (RTCA DO-260B,
/// table A-21): 180/pi acos(sqrt((1 - cos(pi/30)) / (1 - cos(2 pi/n)))) for n = 59 down to 2.
///
/// The digits are those of the printed table and are not calculated. Near a limit, sender and all
/// receivers must count the same number of zones, and a calculated limit differs in the last bits.
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

constexpr i32 mostZones = 59;           // at the equator
constexpr double scale = 1.0 / 131072;  // 17 bits for the fraction of a zone
constexpr double evenStep = 360.0 / 60; // height of a latitude zone in degrees
constexpr double oddStep = 360.0 / 59;

// Positions are compared to the last bit, by tests and by clients. So keep these constants, and the
// order of the operations below.
static_assert(oddStep == 6.101694915254237);

/// The remainder from 0 to `divisor` - 1, also of a negative number.
constexpr i32 modulo(i32 number, i32 divisor) {
    const i32 remainder = number % divisor;
    return remainder < 0 ? remainder + divisor : remainder;
}

/// The nearest whole number; halves are rounded up, as in the standard's formula. For two frames of
/// one place the exact value is close to a whole number; the 17 bits of the frames are rounded.
i32 zoneIndex(double value) {
    return static_cast<i32>(std::floor(value * scale + 0.5));
}

/// Zones are counted from the equator to the north and all around the earth, 0 to 360 degrees. So
/// the last quarter, from 270 degrees on, are the south latitudes -90 to 0. Values from 90 to 270
/// are no latitudes, and pass unchanged.
double foldedLatitude(double latitude) {
    return latitude >= 270.0 ? latitude - 360.0 : latitude;
}

} // namespace

i32 cprNL(double latitude) {
    // A latitude exactly at a limit has the lower number of zones.
    // NOLINTNEXTLINE(readability-qualified-auto): not in every library is the iterator a pointer
    const auto band = std::upper_bound(transitionLatitudes.begin(), transitionLatitudes.end(),
                                       std::abs(latitude));
    return mostZones - static_cast<i32>(band - transitionLatitudes.begin());
}

std::optional<Position> solve(const Frame& even, const Frame& odd, bool evenIsNewer) {
    // Latitude. The heights of even and odd zones differ by one part in 60, so the difference of
    // the two fractions tells in which zone, counted from the equator, the place is.
    const i32 latitudeIndex = zoneIndex(even.latitude * 59.0 - odd.latitude * 60.0);
    const double evenLatitude =
        foldedLatitude((modulo(latitudeIndex, 60) + even.latitude * scale) * evenStep);
    const double oddLatitude =
        foldedLatitude((modulo(latitudeIndex, 59) + odd.latitude * scale) * oddStep);

    // Both frames must have the same number of longitude zones. If the aircraft crossed a limit
    // between the two, their longitudes do not go together.
    const i32 zones = cprNL(evenLatitude);
    if (zones != cprNL(oddLatitude)) {
        return std::nullopt;
    }

    // Longitude, in the same way: even frames have `zones` zones, odd frames one less. Close to the
    // poles there is one zone for both.
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
