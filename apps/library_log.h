#pragma once

#include "apps/console.h"

#include <CLI/CLI.hpp>
#include <ondrel/log.h>

#include <string>

namespace tolvarin::ondrel::client {

/// Adds `--log`, which puts its choice into `level`; without it, `level` is set to show nothing.
void addLogOption(CLI::App& command, Log::Level& level);

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
