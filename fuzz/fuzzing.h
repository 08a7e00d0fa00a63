/// @file
/// Helpers of the fuzz targets. What a target judges by is written here or in tests/support, and
/// shares nothing with the sources that it judges.
#pragma once

#include <ondrel/log.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <string_view>
#include <type_traits>
#include <vector>

namespace tolvarin::ondrel::fuzzing {

/// Stops the fuzzer if a promise does not hold, and shows the line that says so.
inline void hold(bool condition, const char* file = __builtin_FILE(), int line = __builtin_LINE()) {
    if (!condition) {
        std::fprintf(stderr, "%s:%d: this does not hold\n", file, line);
        std::abort();
    }
}

inline bool isPrintable(const std::string& text) {
    return std::all_of(text.begin(), text.end(), [](char c) { return c >= ' ' && c <= '~'; });
}

class LineChecker final : public LogHandler {
public:
    void writeLine(const std::string& line) override {
        hold(line.size() > 22 && line.front() == '[' && (_mayHoldAnyByte || isPrintable(line)));
    }

    /// After a call with a text that the library writes as it is.
    void setMayHoldAnyByte(bool may) { _mayHoldAnyByte = may; }

private:
    bool _mayHoldAnyByte = false;
};

/// Makes the library write lines of every level, and checks each of them.
inline LineChecker& checkLog() {
    static LineChecker checker;
    checker.setMayHoldAnyByte(false);
    Log::setLogHandler(&checker);
    Log::setShowLevel(Log::Debug);
    return checker;
}

/// The input, read from the front. Behind its end there are zeros.
class Input {
public:
    Input(const std::uint8_t* data, std::size_t size) : _data(data), _size(size) {}

    bool empty() const { return _size == 0; }

    /// How many bytes there are, `count` at most.
    std::size_t left(std::size_t count) const { return std::min(count, _size); }

    /// The next left(count) bytes.
    const std::uint8_t* bytes(std::size_t count) {
        const std::uint8_t* taken = _data;
        count = left(count);
        _data += count;
        _size -= count;
        return taken;
    }

    std::string text(std::size_t count) {
        count = left(count);
        const std::uint8_t* begin = bytes(count);
        return {begin, begin + count};
    }

    /// Any value of the type; of an enumeration, also those that are no enumerator.
    template <class Value>
    Value take() {
        if constexpr (std::is_same_v<Value, std::string>) {
            return text(take<std::uint8_t>());
        } else if constexpr (std::is_same_v<Value, bool>) {
            return (take<std::uint8_t>() & 1U) != 0;
        } else {
            Value value{};
            const std::size_t size = left(sizeof value);
            if (size > 0) {
                std::memcpy(&value, bytes(size), size);
            }
            return value;
        }
    }

private:
    const std::uint8_t* _data;
    std::size_t _size;
};

/// Whether an input may do what takes long: one of `share` inputs may, whatever they have at the
/// front, so that the fuzzer cannot come to prefer them.
inline bool mayTakeLong(const std::uint8_t* data, std::size_t size, u32 share) {
    u32 sum = 0;
    std::for_each(data, data + size, [&](u8 byte) { sum = sum * 31 + byte; });
    return sum % share == 0;
}

/// Whether the elements of a page of HTML nest: each is closed, in the right order, and all are in
/// one.
inline bool nestsWell(std::string_view page) {
    constexpr std::array<std::string_view, 6> withoutEnd = {"br",  "col",  "hr",
                                                            "img", "link", "meta"};
    constexpr std::string_view start = "<!DOCTYPE html>";
    if (page.substr(0, start.size()) != start) {
        return false;
    }
    page.remove_prefix(start.size());
    std::vector<std::string_view> open;
    bool hasRoot = false;
    while (true) {
        const std::size_t begin = page.find('<');
        if (begin == std::string_view::npos) {
            return hasRoot && open.empty();
        }
        const std::size_t end = page.find('>', begin);
        if (end == std::string_view::npos) {
            return false;
        }
        std::string_view tag = page.substr(begin + 1, end - begin - 1);
        page.remove_prefix(end + 1);
        const bool closes = !tag.empty() && tag.front() == '/';
        const bool isEmpty = !tag.empty() && tag.back() == '/';
        tag.remove_prefix(closes ? 1 : 0);
        const std::string_view name = tag.substr(0, tag.find_first_of(" \n/"));
        if (name.empty() || tag.find('<') != std::string_view::npos) {
            return false;
        }
        if (closes) {
            if (open.empty() || open.back() != name) {
                return false;
            }
            open.pop_back();
        } else if (!isEmpty &&
                   std::find(withoutEnd.begin(), withoutEnd.end(), name) == withoutEnd.end()) {
            if (open.empty() && hasRoot) {
                return false;
            }
            hasRoot = true;
            open.push_back(name);
        }
    }
}

} // namespace tolvarin::ondrel::fuzzing
