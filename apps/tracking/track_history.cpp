#include "apps/tracking/track_history.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <limits>

namespace tolvarin::ondrel::client {

namespace {

// In degrees: 55 m. An aircraft needs a quarter of a second for it at 430 kt.
constexpr double smallestStep = 0.0005;
constexpr std::int64_t smallestClimb = 100; // feet
constexpr u64 longestLevelMs = 30000;       // between two altitudes that are the same
constexpr double gapChange = 1e6;           // more than any change, less than infinity
constexpr double recentMs = 600000;         // of the last so much time, all counts nearly the same
constexpr double fullCircle = 360;          // degrees
constexpr double degreesInRadian = 57.29577951308232;

bool isNear(const GeoPoint& left, const GeoPoint& right) {
    return std::abs(left.latitude - right.latitude) < smallestStep &&
           std::abs(left.longitude - right.longitude) < smallestStep;
}

/// How far the path moves if the point between two others goes: its distance from the line between
/// them, in degrees of latitude. The ends of a gap are the last to go.
double changeWithout(const PastPosition& point, const PastPosition& before,
                     const PastPosition& after) {
    if (point.afterGap || after.afterGap) {
        return gapChange;
    }
    const double shrinkage = std::cos(point.place.latitude / degreesInRadian);
    const auto east = [&](const PastPosition& other) {
        const double degrees = other.place.longitude - point.place.longitude;
        const bool crossesDateLine = std::abs(degrees) > fullCircle / 2;
        return shrinkage *
               (crossesDateLine ? degrees - std::copysign(fullCircle, degrees) : degrees);
    };
    const double fromX = east(before);
    const double fromY = before.place.latitude - point.place.latitude;
    const double x = east(after) - fromX;
    const double y = after.place.latitude - point.place.latitude - fromY;
    const double squaredLength = x * x + y * y;
    const double part =
        squaredLength > 0 ? std::clamp(-(fromX * x + fromY * y) / squaredLength, 0.0, 1.0) : 0;
    const double offX = fromX + part * x;
    const double offY = fromY + part * y;
    return std::sqrt(offX * offX + offY * offY);
}

/// The same for an altitude, in feet.
double changeWithout(const PastAltitude& point, const PastAltitude& before,
                     const PastAltitude& after) {
    if (point.afterGap || after.afterGap) {
        return gapChange;
    }
    // Without a gap, stamps do not go back.
    const auto whole = static_cast<double>(after.stampMs - before.stampMs);
    const double part = whole > 0 ? static_cast<double>(point.stampMs - before.stampMs) / whole : 0;
    const double climb = static_cast<double>(after.feet) - before.feet;
    return std::abs(before.feet + part * climb - point.feet);
}

double apart(u64 one, u64 other) {
    return static_cast<double>(std::max(one, other) - std::min(one, other));
}

/// What the line loses without the point, by how much it changes and for how long. Without the
/// time, hours would vanish from the middle of a day of circles. What is long ago counts less.
template <class Point>
double weightOf(const std::vector<Point>& points, std::size_t i) {
    const Point& point = points[i];
    const double age = apart(points.back().stampMs, point.stampMs) + recentMs;
    const double time = apart(points[i - 1].stampMs, points[i + 1].stampMs) + 1;
    return changeWithout(point, points[i - 1], points[i + 1]) * time / (age * age);
}

/// Drops points of the lightest quarter, but never two neighbours at once, since their weights hold
/// only while the other stays.
template <class Point>
void thin(std::vector<Point>& points) {
    std::vector<double> weights(points.size(), std::numeric_limits<double>::infinity());
    for (std::size_t i = 1; i + 1 < points.size(); ++i) {
        weights[i] = weightOf(points, i);
    }
    std::vector<double> sorted = weights;
    const auto quarter = sorted.begin() + static_cast<std::ptrdiff_t>(sorted.size() / 4);
    std::nth_element(sorted.begin(), quarter, sorted.end());
    std::size_t kept = 0;
    bool drops = false;
    for (std::size_t i = 0; i < points.size(); ++i) {
        drops = !drops && weights[i] <= *quarter;
        if (drops) {
            points[i + 1].afterGap = points[i + 1].afterGap || points[i].afterGap;
        } else {
            points[kept++] = points[i];
        }
    }
    points.erase(points.begin() + static_cast<std::ptrdiff_t>(kept), points.end());
}

template <class Point>
void append(std::vector<Point>& points, const Point& point) {
    if (points.size() == TrackHistory::mostPoints) {
        thin(points);
    }
    points.push_back(point);
}

bool isGap(u64 before, u64 after) {
    return after < before || after - before > TrackHistory::longestGapMs;
}

} // namespace

void TrackHistory::notePosition(u32 address, const Position& position) {
    Record& record = _aircraft[address];
    std::vector<PastPosition>& path = record.path;
    record.gapInPath =
        !path.empty() && (record.gapInPath || isGap(record.positionMs, position.stampMs));
    record.positionMs = position.stampMs;
    if (path.empty() || !isNear(path.back().place, position.place)) {
        append(path, {position.place, position.stampMs, record.gapInPath});
        record.gapInPath = false;
    }
}

void TrackHistory::noteAltitude(u32 address, i32 feet, u64 stampMs) {
    std::vector<PastAltitude>& altitudes = _aircraft[address].altitudes;
    if (altitudes.empty()) {
        altitudes.push_back({stampMs, feet, false});
        return;
    }
    const PastAltitude& last = altitudes.back();
    const bool afterGap = isGap(last.stampMs, stampMs);
    const std::int64_t climb = std::int64_t{feet} - last.feet;
    if (afterGap || std::abs(climb) >= smallestClimb || stampMs - last.stampMs >= longestLevelMs) {
        append(altitudes, {stampMs, feet, afterGap});
    }
}

const TrackHistory::Record& TrackHistory::recordOf(u32 address) const {
    static const Record none;
    const auto record = _aircraft.find(address);
    return record != _aircraft.end() ? record->second : none;
}

const std::vector<PastPosition>& TrackHistory::pathOf(u32 address) const {
    return recordOf(address).path;
}

const std::vector<PastAltitude>& TrackHistory::altitudesOf(u32 address) const {
    return recordOf(address).altitudes;
}

} // namespace tolvarin::ondrel::client
