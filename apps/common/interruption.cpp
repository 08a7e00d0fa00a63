#include "apps/common/interruption.h"

#include "apps/common/failure.h"

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <cmath>
#include <csignal>
#include <cstddef>
#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

namespace tolvarin::ondrel::client {

namespace {

volatile std::sig_atomic_t noted = 0;

// The handler sets the flag and writes into the pipe, which every wait watches. The flag alone is
// not enough: a signal just before a wait begins would not end that wait.
int pipeEnds[2] = {-1, -1};

std::atomic<void (*)()> lastAction = nullptr;
static_assert(std::atomic<void (*)()>::is_always_lock_free, "a signal handler reads it");

/// Ends the program as if there was no handler. The signal comes when the handler returns.
extern "C" void endAtOnce(int signal) {
    if (auto* action = lastAction.exchange(nullptr)) {
        action();
    }
    static_cast<void>(std::signal(signal, SIG_DFL));
    static_cast<void>(std::raise(signal));
}

extern "C" void note(int signal) {
    const int error = errno;
    if (signal != SIGHUP) {
        static_cast<void>(std::signal(signal, endAtOnce));
    }
    noted = 1;
    [[maybe_unused]] const ssize_t written = ::write(pipeEnds[1], "", 1);
    errno = error;
}

constexpr int patienceMs = 2000; // with a reader, after an interruption

/// Waits for one of them at most so many milliseconds (-1: without limit).
template <std::size_t count>
void waitFor(pollfd (&waits)[count], int milliseconds) {
    while (::poll(waits, count, milliseconds) < 0) {
        if (errno != EINTR) {
            throw Failure("cannot wait", errno);
        }
    }
}

/// Waits for the descriptor (-1: for none) at most so many milliseconds (-1: without limit).
bool waitUnlessInterrupted(int descriptor, int milliseconds) {
    pollfd waits[] = {{descriptor, POLLIN, 0}, {pipeEnds[0], POLLIN, 0}};
    waitFor(waits, milliseconds);
    return !interrupted();
}

} // namespace

void noteInterruption() {
    if (::pipe2(pipeEnds, O_CLOEXEC | O_NONBLOCK) != 0) {
        throw Failure("cannot watch for an interruption", errno);
    }
    struct sigaction action = {};
    action.sa_handler = note;
    for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
        struct sigaction before = {};
        ::sigaction(signal, nullptr, &before);
        if (before.sa_handler != SIG_IGN) {
            ::sigaction(signal, &action, nullptr);
        }
    }
}

void beforeSuddenEnd(void (*action)()) {
    lastAction = action;
    for (const int signal : {SIGQUIT, SIGABRT, SIGBUS, SIGFPE, SIGILL, SIGSEGV}) {
        struct sigaction before = {};
        ::sigaction(signal, nullptr, &before);
        if (before.sa_handler == SIG_DFL) {
            static_cast<void>(std::signal(signal, endAtOnce));
        }
    }
}

bool interrupted() {
    return noted != 0;
}

int interruptionDescriptor() {
    return pipeEnds[0];
}

bool waitUntilReadable(int descriptor) {
    return waitUnlessInterrupted(descriptor, -1);
}

bool waitUntilWritable(int descriptor) {
    pollfd waits[] = {{descriptor, POLLOUT, 0}, {pipeEnds[0], POLLIN, 0}};
    waitFor(waits, -1);
    if (waits[0].revents == 0) {
        pollfd last[] = {{descriptor, POLLOUT, 0}};
        waitFor(last, patienceMs);
        return last[0].revents != 0;
    }
    return true;
}

bool pauseFor(std::chrono::duration<double> time) {
    constexpr double hour = 3600e3;
    const double milliseconds = std::ceil(time.count() * 1000);
    return waitUnlessInterrupted(-1, static_cast<int>(std::clamp(milliseconds, 0.0, hour)));
}

} // namespace tolvarin::ondrel::client
