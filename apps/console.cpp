#include "apps/console.h"

#include <iostream>
#include <string>
#include <unistd.h>

namespace tolvarin::ondrel::client {

namespace {

constexpr u64 longInput = 1000000; // bytes; less is read within the blink of an eye

} // namespace

Console::Console(Output& output)
    : _output(output), _bar(std::cerr),
      _barAllowed(::isatty(STDERR_FILENO) != 0 && ::isatty(STDOUT_FILENO) == 0) {}

void Console::write(std::string_view text) {
    // Log lines come from inside the library, which is no place to throw through.
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

} // namespace tolvarin::ondrel::client
