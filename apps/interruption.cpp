#include "apps/interruption.h"

#include <csignal>
#include <initializer_list>

namespace tolvarin::ondrel::client {

namespace {

volatile std::sig_atomic_t noted = 0; // all that a handler may touch

extern "C" void note(int /*signal*/) {
    noted = 1;
}

} // namespace

void noteInterruption() {
    struct sigaction action = {};
    action.sa_handler = note;
    action.sa_flags = static_cast<int>(SA_RESETHAND); // and not SA_RESTART
    for (const int signal : {SIGINT, SIGTERM}) {
        sigaction(signal, &action, nullptr);
    }
}

bool interrupted() {
    return noted != 0;
}

} // namespace tolvarin::ondrel::client
