#pragma once

#include <ondrel/types.h>

#include <optional>
#include <string>

/// Times as the pages show them.
namespace tolvarin::ondrel::client {

/// A time as date and time of day, "2023-11-14" and "22:13:20". The time of a counter, which tells
/// no date, has an empty date and seconds, "12.500 s".
struct TimeParts {
    std::string date;
    std::string time;
};
TimeParts timeParts(u64 milliseconds);

/// "2023-11-14 22:13:20 UTC" or "12.500 s".
std::string dateAndTime(u64 milliseconds);

/// "2023-11-14 22:13:20 to 22:16:19 UTC", with a second date if it is another one.
std::string fromTo(u64 firstMs, u64 lastMs);

/// How long ago something was: "now", "12 s ago", "3 min 20 s ago", "2 h 5 min ago", "3 d 4 h ago";
/// "before the time went back" for a time without an age.
std::string agoText(const std::optional<u64>& milliseconds);

/// A sentence about the values that a page shows in grey.
std::string greyIsOld();

} // namespace tolvarin::ondrel::client
