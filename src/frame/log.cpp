// The layout of a log line and the way to its sink. Whatever several threads share is atomic.

#include <ondrel/log.h>

#include "keyed_rows.h"

#include <algorithm>
#include <array>
#include <cstdarg>
#include <cstddef>
#include <cstdio>
#include <iostream>
#include <string_view>
#include <utility>

namespace tolvarin::ondrel {

namespace {

constexpr std::size_t longestFormatted = 1024; // with the terminator

struct LabelRow {
    Log::Level key;
    std::string_view label;
};

constexpr std::array<LabelRow, 6> labelRows = {{
    {Log::Debug, "[DEBUG   ]"},
    {Log::Info, "[INFO    ]"},
    {Log::Warning, "[WARNING ]"},
    {Log::Critical, "[CRITICAL]"},
    {Log::Panic, "[PANIC   ]"},
    {static_cast<Log::Level>(Log::Panic + 1), "[UNKNOWN ]"},
}};
static_assert(keysCountFrom0(labelRows));

/// Raises `width` to `length` if that is more; gives the larger of the two.
u64 widen(std::atomic<u64>& width, u64 length) {
    u64 current = width.load(std::memory_order_relaxed);
    while (current < length &&
           !width.compare_exchange_weak(current, length, std::memory_order_relaxed)) {
    }
    return std::max(current, length);
}

void writeToStandardLog(std::string line) {
    line += '\n';
    std::clog.write(line.data(), static_cast<std::streamsize>(line.size()));
    std::clog.flush();
}

} // namespace

std::atomic<Log::Level> Log::_showLevel{Log::Info};
std::atomic<LogHandler*> Log::_logHandler{nullptr};
std::atomic<u64> Log::_moduleWidth{10};

bool Log::shown(Level level) {
    return level >= _showLevel.load(std::memory_order_relaxed);
}

void Log::log(Level level, const std::string& module, const std::string& message) {
    if (shown(level)) {
        write(level, module, message);
    }
}

// NOLINTNEXTLINE(cert-dcl50-cpp): a print format is the documented interface
void Log::log(Level level, const std::string& module, const char* format, ...) {
    // Nobody sees what is formatted but the line, so nothing is formatted for a line below the
    // level.
    if (!shown(level)) {
        return;
    }
    if (format == nullptr) {
        write(level, module, {});
        return;
    }
    thread_local std::array<char, longestFormatted> buffer;
    buffer.fill('\0'); // where formatting fails, what it wrote until then is the message
    std::va_list arguments;
    va_start(arguments, format);
    // NOLINTNEXTLINE(clang-analyzer-valist.Uninitialized): the line above is what it misses
    static_cast<void>(std::vsnprintf(buffer.data(), buffer.size(), format, arguments));
    va_end(arguments);
    buffer.back() = '\0';
    write(level, module, buffer.data());
}

void Log::write(Level level, const std::string& module, std::string_view message) {
    const u64 width = widen(_moduleWidth, module.size());
    const std::string_view head = entryOrLast(labelRows, level).label;
    std::string line;
    line.reserve(head.size() + width + message.size() + 4);
    line += head;
    line += '[';
    line += module;
    line.append(width - module.size(), ' ');
    line += "] ";
    line += message;
    if (LogHandler* handler = _logHandler.load(std::memory_order_acquire)) {
        handler->writeLine(line);
    } else {
        writeToStandardLog(std::move(line));
    }
}

void Log::setShowLevel(Level level) {
    _showLevel.store(level, std::memory_order_relaxed);
}

void Log::setLogHandler(LogHandler* handler) {
    _logHandler.store(handler, std::memory_order_release);
}

} // namespace tolvarin::ondrel
