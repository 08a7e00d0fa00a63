/// @file
/// The log of a test.
#pragma once

#include <ondrel/log.h>

#include <string>
#include <utility>
#include <vector>

namespace tolvarin::ondrel::test {

/// Collects all log lines until it is destroyed. Removes the padding of the module column, which
/// depends on earlier lines of the process.
class CapturedLog final : public LogHandler {
public:
    explicit CapturedLog(Log::Level level = Log::Debug) {
        Log::setLogHandler(this);
        Log::setShowLevel(level);
    }
    CapturedLog(const CapturedLog&) = delete;
    CapturedLog& operator=(const CapturedLog&) = delete;
    ~CapturedLog() {
        Log::setLogHandler(nullptr);
        Log::setShowLevel(Log::Info);
    }

    void writeLine(const std::string& line) override {
        const std::size_t end = line.find(']', labelWidth);
        const std::size_t name = line.find_last_not_of(' ', end - 1) + 1;
        _lines.push_back(line.substr(0, name) + line.substr(end));
    }

    /// The lines since the last call.
    std::vector<std::string> take() { return std::exchange(_lines, {}); }

private:
    static constexpr std::size_t labelWidth = 10;

    std::vector<std::string> _lines;
};

using Lines = std::vector<std::string>;

} // namespace tolvarin::ondrel::test
