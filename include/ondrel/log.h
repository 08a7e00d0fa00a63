/// @file
/// What the library has to say: levels, the installable sink and the line format.
#pragma once

#include <ondrel/export.h>
#include <ondrel/types.h>

#include <atomic>
#include <string>
#include <string_view>

namespace tolvarin::ondrel {

/// A sink for log lines. The library never owns or deletes a handler: the application keeps it
/// alive while it is installed.
class ONDREL_EXPORT LogHandler {
public:
    LogHandler(const LogHandler&) = default;
    LogHandler& operator=(const LogHandler&) = default;

    /// Takes one finished line, without a line end. Runs on the thread that logs, inside the
    /// library call that logs; with several such threads it is called from all of them at once.
    virtual void writeLine(const std::string& line) = 0;

protected:
    LogHandler() = default;
    ~LogHandler() = default;
};

/// The library's log. A line reads `[LEVEL   ][Module    ] message`: the module column is as wide
/// as the longest name shown so far, and at least ten. Without a handler lines go to std::clog.
///
/// All operations may be called from any number of threads at once. Every line is handed over
/// whole. For std::clog that holds as long as it is what it is at the start, synchronised with the
/// C streams: with a buffer of your own in it, and several threads, install a handler.
class ONDREL_EXPORT Log {
public:
    enum Level : i32 {
        Debug = 0,
        Info = 1,
        Warning = 2,
        Critical = 3,
        Panic = 4,
    };

    /// Writes one line if `level` is at least the show level. The message may have any length.
    static void log(Level level, const std::string& module, const std::string& message);

    /// The same with a message in the standard print format, cut at 1023 characters. The format
    /// must fit the arguments; a null format counts as empty.
    static void log(Level level, const std::string& module, const char* format, ...)
        ONDREL_PRINT_FORMAT(3, 4);

    /// The lowest level that is shown; `Info` at the start.
    static void setShowLevel(Level level);

    /// Installs a sink in place of the one before; null brings std::clog back. The old handler may
    /// still be in use by another thread's line when this returns.
    static void setLogHandler(LogHandler* handler);

private:
    explicit Log() = default;

    static bool shown(Level level);
    static void write(Level level, const std::string& module, std::string_view message);

    static std::atomic<Level> _showLevel;
    static std::atomic<LogHandler*> _logHandler;
    static std::atomic<u64> _moduleWidth;
};

} // namespace tolvarin::ondrel
