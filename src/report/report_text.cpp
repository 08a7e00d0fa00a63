// The text forms of a report's data: times in UTC (ISO 8601), address, squawk and angles. The date
// is calculated here, since the standard functions for it share a static buffer between threads.

#include <ondrel/adsb_target_report.h>

#include "text.h"

#include <array>
#include <cmath>
#include <cstddef>

namespace tolvarin::ondrel {

namespace {

/// A date of the Gregorian calendar.
struct Date {
    u64 year;
    u64 month; // 1 to 12
    u64 day;   // 1 to 31
};

constexpr u64 daysIn400Years = 146097;      // after these the calendar repeats
constexpr u64 daysIn100Years = 36524;       // without the leap day of a year like 2000
constexpr u64 daysIn4Years = 1461;          // with one leap day
constexpr u64 daysIn5Months = 153;          // March to July, and August to December
constexpr u64 daysFromYear0To1970 = 719468; // from the first of March of year 0

/// The date of a day. In this calculation a year begins in March. So the leap day is the last day
/// of its year, and the days before a month are the same in all years. The lengths of the months
/// repeat after five months (31, 30, 31, 30, 31 days), hence the divisions by 153 and 5.
Date dateOf(u64 daysSince1970) {
    const u64 days = daysSince1970 + daysFromYear0To1970;
    const u64 era = days / daysIn400Years;
    const u64 dayOfEra = days % daysIn400Years;
    // Takes out the leap days, so that each year has 365 days: one in 4 years, none in the last of
    // 100 years, one in the last of 400 years.
    const u64 yearOfEra = (dayOfEra - dayOfEra / (daysIn4Years - 1) + dayOfEra / daysIn100Years -
                           dayOfEra / (daysIn400Years - 1)) /
                          365;
    const u64 dayOfYear = dayOfEra - (365 * yearOfEra + yearOfEra / 4 - yearOfEra / 100);
    const u64 monthFromMarch = (5 * dayOfYear + 2) / daysIn5Months;
    const u64 month = monthFromMarch < 10 ? monthFromMarch + 3 : monthFromMarch - 9;
    const u64 year = era * 400 + yearOfEra + (month <= 2 ? 1 : 0);
    return {year, month, dayOfYear - (daysIn5Months * monthFromMarch + 2) / 5 + 1};
}

/// Appends the number in decimal, padded on the left with zeros.
void appendPadded(std::string& text, u64 number, std::size_t width) {
    std::array<char, 20> digits; // of the largest number
    std::size_t start = digits.size();
    while (number != 0 || digits.size() - start < width) {
        digits[--start] = static_cast<char>('0' + number % 10);
        number /= 10;
    }
    text.append(&digits[start], digits.size() - start);
}

/// Degrees, minutes and seconds, then the letter of the hemisphere: 52.2572 gives "521526N".
/// Seconds are rounded and can come out as 60. 0 has the letter of the negative side. What is no
/// number, or too large for one, gives dashes.
std::string angle(double degrees, std::size_t degreeDigits, char positive, char negative) {
    constexpr double noAngle = 2147483648.0; // 2^31: no angle comes near, and the digits stay few
    const double magnitude = std::abs(degrees);
    if (!(magnitude < noAngle)) {
        return std::string(degreeDigits + 5, '-');
    }
    const double whole = std::floor(magnitude);
    const double fraction = magnitude - whole;
    const double minutes = std::floor(fraction * 60.0);
    const double seconds = std::round((fraction - minutes / 60.0) * 3600.0);
    std::string text;
    appendPadded(text, static_cast<u64>(whole), degreeDigits);
    appendPadded(text, static_cast<u64>(minutes), 2);
    appendPadded(text, static_cast<u64>(seconds), 2);
    text += degrees > 0.0 ? positive : negative;
    return text;
}

} // namespace

std::string ADSBTargetReport::boolToString(bool value) {
    return value ? "TRUE" : "FALSE";
}

std::string ADSBTargetReport::timeToString(u64 time) {
    if (time == 0) {
        return {};
    }
    const u64 seconds = time / 1000;
    const Date date = dateOf(seconds / 86400);
    std::string text;
    text.reserve(24); // "2023-11-14T22:13:20.123Z"
    const auto add = [&text](u64 number, std::size_t width, char mark) {
        appendPadded(text, number, width);
        text += mark;
    };
    add(date.year, 4, '-');
    add(date.month, 2, '-');
    add(date.day, 2, 'T');
    add(seconds / 3600 % 24, 2, ':');
    add(seconds / 60 % 60, 2, ':');
    add(seconds % 60, 2, '.');
    add(time % 1000, 3, 'Z');
    return text;
}

// Six columns, padded with blanks and not with zeros.
std::string ADSBTargetReport::icaoAddressString() const {
    constexpr std::size_t width = 6;
    if (!_icaoAddressValid) {
        return {};
    }
    std::string digits = text::hex(_icaoAddress);
    if (digits.size() < width) {
        digits.insert(0, width - digits.size(), ' ');
    }
    return digits.substr(0, width);
}

std::string ADSBTargetReport::squawkString() const {
    return text::octal(_squawk.value);
}

std::string ADSBTargetReport::latitudeString() const {
    return angle(_position.value.latitude, 2, 'N', 'S');
}

std::string ADSBTargetReport::longitudeString() const {
    return angle(_position.value.longitude, 3, 'E', 'W');
}

std::string ADSBTargetReport::positionString() const {
    return latitudeString() + longitudeString();
}

} // namespace tolvarin::ondrel
