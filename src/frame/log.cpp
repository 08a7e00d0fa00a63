// The layout of a log line and its way to the handler or to the standard log stream.
//
// Threads share the show level, the handler and the column width, so these are atomic. Level and
// width use the relaxed order: each is a number of its own, and no other data depends on it.

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

// A formatted message is cut at 1023 characters and the terminator. A message given as a string has
// no limit.
constexpr std::size_t longestFormatted = 1024;

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
    {static_cast<Log::Level>(Log::Panic + 1), "[UNKNOWN ]"}, // any other number
}};
static_assert(keysCountFrom0(labelRows));

/// Raises `width` to `length` if that is more. If another thread raises the width at the same time,
/// the larger value stays.
void widen(std::atomic<u64>& width, u64 length) {
    u64 current = width.load(std::memory_order_relaxed);
    while (current < length &&
           !width.compare_exchange_weak(current, length, std::memory_order_relaxed)) {
    }
}

/// The line with its label and with the module padded to `width`.
std::string lineOf(Log::Level level, const std::string& module, u64 width,
                   std::string_view message) {
    const std::string_view label = entryOrLast(labelRows, level).label;
    std::string line;
    line.reserve(label.size() + width + message.size() + 4);
    line += label;
    line += '[';
    line += module;
    line.append(width - module.size(), ' ');
    line += "] ";
    line += message;
    return line;
}

void writeToStandardLog(std::string line) {
    line += '\n';
    // Makes the stream, if a static object of the application logs before the standard library or
    // this source has made it.
    const std::ios_base::Init streams;
    // One write for each line, so that lines of two threads do not mix. The stream is buffered: the
    // flush shows the line even if the program crashes after it.
    std::clog.write(line.data(), static_cast<std::streamsize>(line.size()));
    std::clog.flush();
}

void write(const std::atomic<LogHandler*>& installed, std::atomic<u64>& width, Log::Level level,
           const std::string& module, std::string_view message) {
    std::string line =
        lineOf(level, module, std::max<u64>(width.load(std::memory_order_relaxed), module.size()),
               message);
    widen(width, module.size()); // not for a line that there was no memory for
    // Acquire and release: what the application wrote to its handler before it installed it is
    // visible in the thread that calls the handler.
    if (LogHandler* handler = installed.load(std::memory_order_acquire)) {
        handler->writeLine(line);
    } else {
        writeToStandardLog(std::move(line));
    }
}

} // namespace

std::atomic<Log::Level> Log::_showLevel{Log::Info};
std::atomic<LogHandler*> Log::_logHandler{nullptr};
std::atomic<u64> Log::_moduleWidth{10};

void Log::log(Level level, const std::string& module, const std::string& message) {
    if (level >= _showLevel.load(std::memory_order_relaxed)) {
        write(_logHandler, _moduleWidth, level, module, message);
    }
}

// NOLINTNEXTLINE(cert-dcl50-cpp): a print format is the documented interface
void Log::log(Level level, const std::string& module, const char* format, ...) {
    // Formatting is the expensive part, so a line that is not shown is not formatted.
    if (level < _showLevel.load(std::memory_order_relaxed)) {
        return;
    }
    if (format == nullptr) {
        log(level, module, std::string());
        return;
    }
    std::array<char, longestFormatted> buffer; // not initialised: most lines are much shorter
    std::va_list arguments;
    va_start(arguments, format);
    // NOLINTNEXTLINE(clang-analyzer-valist.Uninitialized): va_start() above initialises the list
    const int length = std::vsnprintf(buffer.data(), buffer.size(), format, arguments);
    va_end(arguments);
    if (length < 0) {
        // The message is what was written before the failure. No terminator is promised then, so
        // the same is formatted once more, into zeros that end it.
        buffer.fill('\0');
        va_start(arguments, format);
        // NOLINTNEXTLINE(clang-analyzer-valist.Uninitialized): va_start() above initialises it
        static_cast<void>(std::vsnprintf(buffer.data(), buffer.size(), format, arguments));
        va_end(arguments);
        buffer.back() = '\0';
    }
    write(_logHandler, _moduleWidth, level, module, buffer.data());
}

void Log::setShowLevel(Level level) {
    _showLevel.store(level, std::memory_order_relaxed);
}

void Log::setLogHandler(LogHandler* handler) {
    _logHandler.store(handler, std::memory_order_release);
}

} // namespace tolvarin::ondrel
