#include "apps/pages/altitude_profile.h"

#include "apps/common/text.h"
#include "apps/display/aircraft_data.h"
#include "apps/pages/html.h"
#include "apps/pages/time_text.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <limits>

namespace tolvarin::ondrel::client {

namespace {

// In units of the picture.
constexpr double leftMargin = 66;  // for "126700 ft", the highest altitude of a reply
constexpr double rightMargin = 34; // for half of "2023-11-14"
constexpr double topMargin = 14;
constexpr double bottomMargin = 26;
constexpr double baseline = 4;       // of a text, below the middle of its height
constexpr double timeLabelRoom = 84; // for "2023-11-14"
constexpr double feetLabelRoom = 36;

constexpr u64 shortestSpan = 10000;          // ms
constexpr std::int64_t smallestRange = 1000; // feet

/// One direction of the picture.
struct Axis {
    double from; ///< the value at its start
    double to;
    double start; ///< in units of the picture
    double end;

    double at(double value) const { return start + (end - start) * (value - from) / (to - from); }
};

/// 100, 200, 500, 1000 feet and so on: the smallest step of which at most `most` make the range.
std::int64_t feetStep(std::int64_t range, double most) {
    constexpr std::array<std::int64_t, 3> factors = {1, 2, 5};
    std::size_t i = 0;
    std::int64_t power = 100;
    while (static_cast<double>(range) > most * static_cast<double>(factors[i] * power)) {
        i = (i + 1) % factors.size();
        power *= i == 0 ? 10 : 1;
    }
    return factors[i] * power;
}

/// The same for a time in milliseconds, in steps that divide a minute, an hour or a day; above a
/// day it doubles.
u64 timeStep(u64 span, double most) {
    constexpr std::array<u64, 17> seconds = {1,   2,   5,    10,   15,   30,    60,    120,  300,
                                             600, 900, 1800, 3600, 7200, 10800, 21600, 43200};
    const auto fits = [&](u64 step) {
        return static_cast<double>(span) <= most * static_cast<double>(step);
    };
    for (const u64 one : seconds) {
        if (fits(one * 1000)) {
            return one * 1000;
        }
    }
    u64 step = u64{86400} * 1000;
    while (!fits(step) && step <= std::numeric_limits<u64>::max() / 2) {
        step *= 2;
    }
    return step;
}

/// The multiple of `step` at or below a value.
std::int64_t roundedDown(std::int64_t value, std::int64_t step) {
    const std::int64_t quotient = value / step;
    return (value % step < 0 ? quotient - 1 : quotient) * step;
}

/// As short as the step allows: "2023-11-14", "22:13" or "22:13:20"; "25 s" of a counter.
std::string timeLabel(u64 stampMs, u64 step) {
    constexpr u64 minute = 60000;
    constexpr u64 day = 1440 * minute;
    const TimeParts parts = timeParts(stampMs);
    if (parts.date.empty()) {
        return std::to_string(stampMs / 1000) + " s";
    }
    if (step >= day) {
        return parts.date;
    }
    return step >= minute ? parts.time.substr(0, 5) : parts.time;
}

std::string number(double units) {
    return decimalText(units, 1);
}

std::string line(std::string_view style, double x1, double y1, double x2, double y2) {
    return "<line" + attribute("class", style) + attribute("x1", number(x1)) +
           attribute("y1", number(y1)) + attribute("x2", number(x2)) + attribute("y2", number(y2)) +
           "/>\n";
}

/// `y` is at the middle of the height of the text.
std::string label(double x, double y, std::string_view anchor, std::string_view text) {
    return "<text" + attribute("class", "degrees") + attribute("text-anchor", anchor) +
           attribute("x", number(x)) + attribute("y", number(y + baseline)) + ">" + htmlText(text) +
           "</text>\n";
}

/// Horizontal lines at round altitudes. The first and the last are the edges of the axis.
std::string altitudeLines(const Axis& feet, std::int64_t step, double right) {
    std::string lines;
    for (auto at = static_cast<std::int64_t>(feet.from); at <= static_cast<std::int64_t>(feet.to);
         at += step) {
        const double y = feet.at(static_cast<double>(at));
        lines += line("grid", leftMargin, y, right, y) +
                 label(leftMargin - 6, y, "end", std::to_string(at) + " ft");
    }
    return lines;
}

/// Vertical lines at round times from `first` to `last`.
std::string timeLines(const Axis& time, u64 first, u64 last, u64 step, double bottom) {
    std::string lines;
    for (u64 i = first / step + (first % step > 0 ? 1 : 0); i <= last / step; ++i) {
        const double x = time.at(static_cast<double>(i * step));
        lines += line("grid", x, topMargin, x, bottom) +
                 label(x, bottom + bottomMargin / 2, "middle", timeLabel(i * step, step));
    }
    return lines;
}

/// A point without neighbours is a line of no length, whose round ends are a dot.
std::string curve(const std::vector<PastAltitude>& altitudes, const Axis& time, const Axis& feet) {
    std::string path;
    for (std::size_t i = 0; i < altitudes.size(); ++i) {
        const bool begins = i == 0 || altitudes[i].afterGap;
        const bool ends = i + 1 == altitudes.size() || altitudes[i + 1].afterGap;
        path += (begins ? "M" : "L") + number(time.at(static_cast<double>(altitudes[i].stampMs))) +
                "," + number(feet.at(altitudes[i].feet)) + (begins && ends ? "h0" : "");
    }
    return "<path class=\"profile\"" + attribute("d", path) + "/>\n";
}

} // namespace

AltitudeProfile::AltitudeProfile(const TrackedAircraft& aircraft, const TrackHistory& history)
    : _altitudes(history.altitudesOf(aircraft.icaoAddress())) {
    addNewest(aircraft);
    if (isEmpty()) {
        return;
    }
    const auto byStamp = [](const PastAltitude& one, const PastAltitude& other) {
        return one.stampMs < other.stampMs;
    };
    const auto byFeet = [](const PastAltitude& one, const PastAltitude& other) {
        return one.feet < other.feet;
    };
    const auto [first, last] = std::minmax_element(_altitudes.begin(), _altitudes.end(), byStamp);
    const auto [lowest, highest] =
        std::minmax_element(_altitudes.begin(), _altitudes.end(), byFeet);
    _first = first->stampMs;
    _last = last->stampMs;
    _lowest = lowest->feet;
    _highest = highest->feet;
}

/// The history notes changes, so its last altitude is a little older.
void AltitudeProfile::addNewest(const TrackedAircraft& aircraft) {
    const u64 stampMs = aircraft.altitudeBaroLastUpdate();
    if (aircraft.notes.altitudeTold &&
        (_altitudes.empty() || _altitudes.back().stampMs < stampMs)) {
        _altitudes.push_back({stampMs, aircraft.altitudeBaro(), false});
    }
}

std::string AltitudeProfile::caption() const {
    const std::string feet = std::to_string(_lowest);
    return "Altitude, " + (_lowest < _highest ? feet + " to " + std::to_string(_highest) : feet) +
           " ft, " + fromTo(_first, _last);
}

std::string AltitudeProfile::svg(std::string_view style, double width, double height) const {
    const double right = width - rightMargin;
    const double bottom = height - bottomMargin;

    const u64 span = std::max(_last - _first, shortestSpan);
    const u64 first = std::min(_first, std::numeric_limits<u64>::max() - span);
    const Axis time = {static_cast<double>(first),
                       static_cast<double>(first) + static_cast<double>(span), leftMargin, right};

    const std::int64_t range = std::int64_t{_highest} - _lowest;
    const std::int64_t missing = std::max<std::int64_t>(smallestRange - range, 0);
    const std::int64_t lowest = _lowest - missing / 2;
    const std::int64_t highest = _highest + missing / 2;
    const std::int64_t step = feetStep(highest - lowest, (bottom - topMargin) / feetLabelRoom - 2);
    const Axis feet = {static_cast<double>(roundedDown(lowest, step)),
                       static_cast<double>(roundedDown(highest + step - 1, step)), bottom,
                       topMargin};

    return "<svg role=\"img\"" + attribute("class", style) + " viewBox=\"0 0 " +
           decimalText(width, 0) + " " + decimalText(height, 0) + "\">\n" +
           element("title", htmlText(caption())) + "\n" + altitudeLines(feet, step, right) +
           timeLines(time, first, first + span,
                     timeStep(span, (right - leftMargin) / timeLabelRoom), bottom) +
           curve(_altitudes, time, feet) + "</svg>\n";
}

} // namespace tolvarin::ondrel::client
