/// @file
/// The log: levels, the installable sink and the line format.
#pragma once

#include <ondrel/export.h>
#include <ondrel/types.h>

#include <atomic>
#include <string>

namespace tolvarin::ondrel {

/// A sink for log lines. The library never owns or deletes a handler: the application keeps it
/// alive while it is installed. Its destructor is protected, so that nobody deletes it through this
/// class.
class ONDREL_EXPORT LogHandler {
public:
    /// The class holds no data. A copy is not installed.
    ///@{
    LogHandler(const LogHandler&) = default;
    LogHandler& operator=(const LogHandler&) = default;
    ///@}

    /// Takes one finished line, without a line end. Runs on the thread that logs, inside the
    /// library call that logs; with several such threads it is called from all of them at once. It
    /// should not throw: the exception would leave that library call half done.
    virtual void writeLine(const std::string& line) = 0;

protected:
    /// A handler that is not installed.
    LogHandler() = default;
    /// Does not take the handler out of the log; do that first.
    ~LogHandler() = default;
};

/// The library's log. A line reads `[LEVEL   ][Module    ] message`: the module column is as wide
/// as the longest name shown so far, and at least ten. Without a handler lines go to std::clog.
///
/// All operations may be called from any number of threads at once. Every line is handed over
/// whole. With std::clog this needs the stream as it is when a program starts, synchronised with
/// the C streams. If you give it a buffer of your own and several threads log, install a handler.
///
/// Static objects may log before and after main(), and so may all else of the library.
///
/// Throws only when memory is exhausted, and what the handler throws. Without memory for it, a line
/// is not written.
class ONDREL_EXPORT Log {
public:
    /// How serious a line is, the least serious first. A value that is none shows as "UNKNOWN".
    enum Level : i32 {
        Debug = 0,    ///< details: undefined formats, removed targets
        Info = 1,     ///< normal use: new objects, repairs, replies that fail their parity
        Warning = 2,  ///< valid input that the library does not support
        Critical = 3, ///< input with reserved or contradictory values
        Panic = 4,    ///< for applications; the library writes none
    };

    /// Writes one line if `level` is at least the show level. The message may have any length.
    static void log(Level level, const std::string& module, const std::string& message);

    /// The same with a message in the standard print format, cut at 1023 characters. The format
    /// must fit the arguments; a null format counts as empty.
    static void log(Level level, const std::string& module, const char* format, ...)
        ONDREL_PRINT_FORMAT(3, 4);

    /// Sets the lowest level that is shown; it is `Info` at the start. Any value is taken.
    static void setShowLevel(Level level);

    /// Installs a sink in place of the one before; null brings std::clog back. The old handler may
    /// still be in use by another thread's line when this returns.
    static void setLogHandler(LogHandler* handler);

private:
    explicit Log() = default;

    ONDREL_HIDDEN static std::atomic<Level> _showLevel;
    ONDREL_HIDDEN static std::atomic<LogHandler*> _logHandler;
    ONDREL_HIDDEN static std::atomic<u64> _moduleWidth;
};

} // namespace tolvarin::ondrel
