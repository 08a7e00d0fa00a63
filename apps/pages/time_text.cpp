#include "apps/pages/time_text.h"

#include "apps/common/text.h"
#include "apps/display/showing.h"

#include <array>
#include <cstddef>
#include <string_view>

namespace tolvarin::ondrel::client {

namespace {

struct Unit {
    u64 seconds;
    std::string_view name;
};

constexpr std::array<Unit, 4> units = {{{86400, " d"}, {3600, " h"}, {60, " min"}, {1, " s"}}};

std::string counted(u64 number, const Unit& unit) {
    return std::to_string(number) + std::string(unit.name);
}

} // namespace

TimeParts timeParts(u64 milliseconds) {
    constexpr std::size_t length = std::string_view("22:13:20").size();
    const std::string text = timeText(milliseconds);
    const std::size_t separator = text.find('T');
    return separator != std::string::npos
               ? TimeParts{text.substr(0, separator), text.substr(separator + 1, length)}
               : TimeParts{"", text + " s"};
}

std::string dateAndTime(u64 milliseconds) {
    const TimeParts parts = timeParts(milliseconds);
    return parts.date.empty() ? parts.time : parts.date + " " + parts.time + " UTC";
}

std::string fromTo(u64 firstMs, u64 lastMs) {
    const TimeParts first = timeParts(firstMs);
    const bool sameDay = !first.date.empty() && first.date == timeParts(lastMs).date;
    return sameDay ? first.date + " " + first.time + " to " + timeParts(lastMs).time + " UTC"
                   : dateAndTime(firstMs) + " to " + dateAndTime(lastMs);
}

std::string agoText(const std::optional<u64>& milliseconds) {
    if (!milliseconds) {
        return "before the time went back";
    }
    const u64 seconds = *milliseconds / 1000;
    for (std::size_t i = 0; i < units.size(); ++i) {
        const Unit& unit = units[i];
        if (seconds < unit.seconds) {
            continue;
        }
        std::string text = counted(seconds / unit.seconds, unit);
        if (i + 1 < units.size() && seconds % unit.seconds >= units[i + 1].seconds) {
            text += " " + counted(seconds % unit.seconds / units[i + 1].seconds, units[i + 1]);
        }
        return text + " ago";
    }
    return "now";
}

std::string greyIsOld() {
    return "Position, altitude, speed and rate are grey when they are older than " +
           std::to_string(oldAfterMs / 1000) + " s.";
}

} // namespace tolvarin::ondrel::client
