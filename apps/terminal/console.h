#pragma once

#include "apps/common/file.h"

#include <ondrel/log.h>
#include <ondrel/types.h>

#include <cstddef>
#include <deque>
#include <iosfwd>
#include <string>
#include <string_view>

/// What a run shows on standard error.
namespace tolvarin::ondrel::client {

/// "[##########..............................]  25 %". `total` is above 0; a larger `done` counts
/// as 100 %.
std::string progressText(u64 done, u64 total);

/// A text in the last line of a terminal. Call hide() before writing anything else there.
class StatusLine {
public:
    /// The stream must outlive the line.
    explicit StatusLine(std::ostream& terminal) : _terminal(terminal) {}
    StatusLine(const StatusLine&) = delete;
    StatusLine& operator=(const StatusLine&) = delete;
    ~StatusLine() { hide(); }

    /// Draws the text if it differs from what is shown. A narrow terminal gets only its end.
    void show(std::string text);

    /// Erases the text and moves the cursor back to the start of the line.
    void hide();

private:
    std::ostream& _terminal;
    std::string _shown;
};

/// Takes lines in place of the terminal.
class LineTaker {
public:
    LineTaker() = default;
    LineTaker(const LineTaker&) = delete;
    LineTaker& operator=(const LineTaker&) = delete;
    virtual ~LineTaker() = default;

    virtual void take(const std::string& line) = 0;
};

/// Standard error, which messages, log lines, the summary and the progress share. Flushes the
/// output first, so that both appear in order when they go to the same terminal. Progress shows
/// only on a terminal.
class Console {
public:
    /// The output must outlive the console. It may go to the same terminal.
    explicit Console(Output& output);
    Console(const Console&) = delete;
    Console& operator=(const Console&) = delete;
    ~Console();

    static constexpr std::size_t mostKept = 1000; ///< lines for the end of a redirection

    /// Gives all lines to the taker from now on, and shows no progress. If standard error is a
    /// terminal, they are written there only when null ends that, the last 1000 of them.
    void redirect(LineTaker* taker);

    /// Writes whole lines as safeText(); the text has no end of its last line.
    void write(std::string_view text);

    /// Call this before waiting for input or for time.
    void flushOutput() { _output.flush(); }

    /// Shows a progress bar. The output is at the end of a line. `total` is above 0.
    void showProgress(u64 done, u64 total);

    /// Shows a count where the total is not known: "1234 replies".
    void showCount(u64 replies);

private:
    void keep(std::string_view text);

    Output& _output;
    StatusLine _status;
    bool _onTerminal;
    LineTaker* _taker = nullptr;
    std::deque<std::string> _kept;
    u64 _notKept = 0;
};

/// Shows the library's log on the console as long as it lives.
class LibraryLog final : public LogHandler {
public:
    /// The console must outlive it.
    LibraryLog(Console& console, Log::Level level);
    LibraryLog(const LibraryLog&) = delete;
    LibraryLog& operator=(const LibraryLog&) = delete;
    ~LibraryLog();

    void writeLine(const std::string& line) override { _console.write(line); }

private:
    Console& _console;
};

} // namespace tolvarin::ondrel::client
