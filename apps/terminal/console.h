#pragma once

#include "apps/common/file.h"

#include <ondrel/log.h>
#include <ondrel/types.h>

#include <iosfwd>
#include <string>
#include <string_view>

/// What a run shows on standard error.
namespace tolvarin::ondrel::client {

/// "[##########..............................]  25 %". `total` is above 0; a larger `done` counts
/// as 100 %.
std::string progressText(u64 done, u64 total);

/// A progress bar in the last line of a terminal. Call hide() before writing anything else there.
class ProgressBar {
public:
    /// The stream must outlive the bar.
    explicit ProgressBar(std::ostream& terminal) : _terminal(terminal) {}
    ProgressBar(const ProgressBar&) = delete;
    ProgressBar& operator=(const ProgressBar&) = delete;
    ~ProgressBar() { hide(); }

    /// Draws the bar if it looks different from what is shown.
    void show(u64 done, u64 total);

    /// Erases the bar and moves the cursor back to the start of the line.
    void hide();

private:
    std::ostream& _terminal;
    std::string _shown;
};

/// Standard error, which messages, log lines, the summary and the progress bar share. Flushes the
/// output first, so that both appear in order when they go to the same terminal.
class Console {
public:
    /// The output must outlive the console.
    explicit Console(Output& output);

    /// Writes whole lines; the text has no end of its last line.
    void write(std::string_view text);

    /// Call this before waiting for input. Flushes the output and updates the progress bar. The bar
    /// shows only for a large total, and only if standard error is a terminal and standard output
    /// is none.
    void progress(u64 done, u64 total);

private:
    Output& _output;
    ProgressBar _bar;
    bool _barAllowed;
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
