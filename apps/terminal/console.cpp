#include "apps/terminal/console.h"

#include <algorithm>
#include <cstddef>
#include <iostream>
#include <ostream>
#include <unistd.h>
#include <utility>

namespace tolvarin::ondrel::client {

namespace {

constexpr u64 longInput = 1000000; // bytes; less takes a fraction of a second
constexpr std::size_t barWidth = 40;

} // namespace

std::string progressText(u64 done, u64 total) {
    const double share = std::min(1.0, static_cast<double>(done) / static_cast<double>(total));
    const auto filled = static_cast<std::size_t>(share * barWidth);
    const std::string percent = std::to_string(static_cast<int>(share * 100));
    return "[" + std::string(filled, '#') + std::string(barWidth - filled, '.') + "] " +
           std::string(3 - percent.size(), ' ') + percent + " %";
}

void ProgressBar::show(u64 done, u64 total) {
    std::string text = progressText(done, total);
    if (text == _shown) {
        return;
    }
    _terminal << '\r' << text << std::flush;
    _shown = std::move(text);
}

void ProgressBar::hide() {
    if (!_shown.empty()) {
        _terminal << '\r' << std::string(_shown.size(), ' ') << '\r' << std::flush;
        _shown.clear();
    }
}

Console::Console(Output& output)
    : _output(output), _bar(std::cerr),
      _barAllowed(::isatty(STDERR_FILENO) != 0 && ::isatty(STDOUT_FILENO) == 0) {}

void Console::write(std::string_view text) {
    // The library calls this for a log line, and no exception may pass through it.
    _output.flushQuietly();
    _bar.hide();
    std::cerr << std::string(text) + '\n';
}

void Console::progress(u64 done, u64 total) {
    _output.flush();
    if (_barAllowed && total >= longInput) {
        _bar.show(done, total);
    }
}

LibraryLog::LibraryLog(Console& console, Log::Level level) : _console(console) {
    Log::setShowLevel(level);
    Log::setLogHandler(this);
}

LibraryLog::~LibraryLog() {
    Log::setLogHandler(nullptr);
}

} // namespace tolvarin::ondrel::client
