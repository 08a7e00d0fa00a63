#include "apps/terminal/text_style.h"

#include <cstdlib>
#include <string_view>
#include <sys/ioctl.h>
#include <unistd.h>

namespace tolvarin::ondrel::client {

namespace {

/// The variable of the environment; empty if it is not set.
std::string_view variable(const char* name) {
    const char* value = std::getenv(name);
    return value != nullptr ? value : "";
}

} // namespace

TextStyle standardOutputStyle() {
    TextStyle style;
    if (::isatty(STDOUT_FILENO) == 0) {
        return style;
    }
    winsize size = {};
    if (::ioctl(STDOUT_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col > 0) {
        style.width = size.ws_col;
    }
    style.colour = variable("NO_COLOR").empty() && canMoveCursor();
    return style;
}

bool canMoveCursor() {
    const std::string_view terminal = variable("TERM");
    return !terminal.empty() && terminal != "dumb";
}

} // namespace tolvarin::ondrel::client
