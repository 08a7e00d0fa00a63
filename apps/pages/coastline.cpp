#include "apps/pages/coastline.h"

#include <ondrel/types.h>

#include <algorithm>
#include <cmath>
#include <cstddef>

namespace tolvarin::ondrel::client {

namespace {

constexpr double unit = 0.01; // degrees
constexpr double fullCircle = 360;

u32 digit(char character) {
    if (character >= '0' && character <= '9') {
        return static_cast<u32>(character - '0');
    }
    if (character >= 'A' && character <= 'Z') {
        return static_cast<u32>(character - 'A' + 10);
    }
    if (character >= 'a' && character <= 'z') {
        return static_cast<u32>(character - 'a' + 36);
    }
    return character == '+' ? 62 : 63;
}

/// Takes a number from the front of the text, as the head of coastline.txt tells.
int takeNumber(std::string_view& text) {
    u32 number = 0;
    bool isLast = false;
    for (u32 shift = 0; !isLast && !text.empty() && shift < 32; shift += 5) {
        const u32 group = digit(text.front());
        text.remove_prefix(1);
        number |= (group & 31U) << shift;
        isLast = group < 32;
    }
    const int half = static_cast<int>(number / 2);
    return number % 2 == 0 ? half : -half - 1;
}

std::vector<GeoPoint> pointsOf(std::string_view line) {
    std::vector<GeoPoint> points;
    int longitude = 0;
    int latitude = 0;
    while (!line.empty()) {
        longitude += takeNumber(line);
        latitude += takeNumber(line);
        points.push_back({latitude * unit, longitude * unit});
    }
    return points;
}

/// Of at least one point.
GeoBox boxOf(const std::vector<GeoPoint>& points) {
    GeoBox box = {points.front().latitude, points.front().latitude, points.front().longitude, 0};
    double east = box.west;
    for (const GeoPoint& point : points) {
        box.south = std::min(box.south, point.latitude);
        box.north = std::max(box.north, point.latitude);
        box.west = std::min(box.west, point.longitude);
        east = std::max(east, point.longitude);
    }
    box.width = east - box.west;
    return box;
}

struct Stretch {
    std::string_view line;
    GeoBox box;
};

std::vector<Stretch> readStretches() {
    std::vector<Stretch> stretches;
    for (std::string_view rest = coastlineText; !rest.empty();) {
        const std::size_t end = std::min(rest.find('\n'), rest.size() - 1);
        const std::string_view line = rest.substr(0, end);
        rest.remove_prefix(end + 1);
        if (!line.empty() && line.front() != '#') {
            stretches.push_back({line, boxOf(pointsOf(line))});
        }
    }
    return stretches;
}

/// Degrees to the east, from 0 to below 360.
double eastward(double from, double to) {
    const double degrees = std::fmod(to - from, fullCircle);
    return degrees < 0 ? degrees + fullCircle : degrees;
}

} // namespace

bool GeoBox::touches(const GeoBox& other) const {
    return south <= other.north && other.south <= north &&
           (eastward(west, other.west) <= width || eastward(other.west, west) <= other.width);
}

std::vector<std::vector<GeoPoint>> coastsIn(const GeoBox& box) {
    static const std::vector<Stretch> stretches = readStretches();
    std::vector<std::vector<GeoPoint>> found;
    for (const Stretch& stretch : stretches) {
        if (stretch.box.touches(box)) {
            found.push_back(pointsOf(stretch.line));
        }
    }
    return found;
}

} // namespace tolvarin::ondrel::client
