/// @file
/// Times by the C library, whose calendar reaches as far.
#pragma once

#include <ondrel/types.h>

#include <array>
#include <cstdio>
#include <ctime>
#include <string>

namespace tolvarin::ondrel::test {

/// "2023-11-14T22:13:20.123Z"; milliseconds since 1970.
inline std::string plainTime(u64 time) {
    const auto seconds = static_cast<std::time_t>(time / 1000);
    std::tm fields{};
    gmtime_r(&seconds, &fields);
    std::array<char, 64> text{};
    std::snprintf(text.data(), text.size(), "%d-%02d-%02dT%02d:%02d:%02d.%03dZ",
                  fields.tm_year + 1900, fields.tm_mon + 1, fields.tm_mday, fields.tm_hour,
                  fields.tm_min, fields.tm_sec, static_cast<int>(time % 1000));
    return text.data();
}

} // namespace tolvarin::ondrel::test
