/// @file
/// Helpers of the fuzz targets.
#pragma once

#include <ondrel/log.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string>

namespace tolvarin::ondrel::fuzzing {

/// Stops the fuzzer if a condition does not hold.
inline void hold(bool condition) {
    if (!condition) {
        std::abort();
    }
}

class LineChecker final : public LogHandler {
public:
    void writeLine(const std::string& line) override {
        hold(line.size() > 22 && line.front() == '[' && line.find('\n') == std::string::npos);
    }
};

/// Makes the library write lines of every level, and checks each of them.
inline void checkLog() {
    static LineChecker checker;
    Log::setLogHandler(&checker);
    Log::setShowLevel(Log::Debug);
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

    template <class Value>
    Value take() {
        Value value{};
        const std::size_t size = left(sizeof value);
        if (size > 0) {
            std::memcpy(&value, bytes(size), size);
        }
        return value;
    }

private:
    const std::uint8_t* _data;
    std::size_t _size;
};

} // namespace tolvarin::ondrel::fuzzing
