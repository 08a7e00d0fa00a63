#include "apps/terminal/console.h"

#include "apps/common/text.h"

#include <algorithm>
#include <cstddef>
#include <iostream>
#include <ostream>
#include <sys/ioctl.h>
#include <unistd.h>
#include <utility>

namespace tolvarin::ondrel::client {

namespace {

constexpr std::size_t barWidth = 40;

} // namespace

std::string progressText(u64 done, u64 total) {
    const double share = std::min(1.0, static_cast<double>(done) / static_cast<double>(total));
    const auto filled = static_cast<std::size_t>(share * barWidth);
    const std::string percent = std::to_string(static_cast<int>(share * 100));
    return "[" + std::string(filled, '#') + std::string(barWidth - filled, '.') + "] " +
           std::string(3 - percent.size(), ' ') + percent + " %";
}

void StatusLine::show(std::string text) {
    winsize size = {};
    if (::ioctl(STDERR_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col > 0 &&
        text.size() >= size.ws_col) {
        text.erase(0, text.size() - size.ws_col + 1); // a line that wraps could not be erased
    }
    if (text == _shown) {
        return;
    }
    if (text.size() < _shown.size()) {
        hide();
    }
    _terminal << '\r' << text << std::flush;
    _shown = std::move(text);
}

void StatusLine::hide() {
    if (!_shown.empty()) {
        _terminal << '\r' << std::string(_shown.size(), ' ') << '\r' << std::flush;
        _shown.clear();
    }
}

Console::Console(Output& output)
    : _output(output), _status(std::cerr), _onTerminal(::isatty(STDERR_FILENO) != 0) {
    if (_onTerminal && ::isatty(STDOUT_FILENO) != 0) {
        _output.beforeWrite([this] { _status.hide(); });
    }
}

Console::~Console() {
    _output.beforeWrite(nullptr);
}

void Console::write(std::string_view text) {
    // The library calls this for a log line, and no exception may pass through it.
    if (_taker != nullptr) {
        _taker->take(std::string(text));
        if (_onTerminal) {
            keep(text);
            return;
        }
    }
    _output.flushQuietly();
    _status.hide();
    std::cerr << safeText(text) + '\n';
}

void Console::keep(std::string_view text) {
    if (_kept.size() == mostKept) {
        _kept.pop_front();
        ++_notKept;
    }
    _kept.emplace_back(text);
}

void Console::redirect(LineTaker* taker) {
    _status.hide();
    _taker = taker;
    if (_taker != nullptr) {
        return;
    }
    if (_notKept > 0) {
        write("(" + std::to_string(_notKept) + " earlier lines are left out)");
    }
    for (const std::string& line : _kept) {
        write(line);
    }
    _kept.clear();
    _notKept = 0;
}

void Console::showProgress(u64 done, u64 total) {
    if (_onTerminal && _taker == nullptr) {
        _status.show(progressText(done, total));
    }
}

void Console::showCount(u64 replies) {
    if (_onTerminal && _taker == nullptr) {
        _status.show(std::to_string(replies) + " replies");
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
