// In place of live_screen.cpp where ncurses is not installed.

#include "apps/terminal/live_screen.h"

namespace tolvarin::ondrel::client {

bool hasLiveScreen() {
    return false;
}

std::unique_ptr<LiveScreen> openLiveScreen() {
    return nullptr;
}

} // namespace tolvarin::ondrel::client
