#include "apps/common/file.h"
#include "apps/common/interruption.h"

#include <gtest/gtest.h>

#include <chrono>
#include <csignal>
#include <unistd.h>

namespace tolvarin::ondrel::client {

namespace {

using std::chrono::seconds;

/// In a process of its own, so that an endless wait ends with it.
template <class Check>
void expectAfterInterruption(Check check) {
    EXPECT_EXIT(
        {
            ::alarm(20);
            std::signal(SIGINT, SIG_DFL);
            noteInterruption();
            const bool before = !interrupted() && pauseFor(seconds(0));
            std::raise(SIGINT);
            std::_Exit(before && interrupted() && check() ? 0 : 1);
        },
        testing::ExitedWithCode(0), "");
}

// The signal may come just before the wait begins.
TEST(Interruption, EndsAWaitThatBeginsAfterIt) {
    expectAfterInterruption([] { return !pauseFor(seconds(1000)); });
    expectAfterInterruption([] {
        int silentSource[2];
        char byte = 0;
        return ::pipe(silentSource) == 0 && ::dup2(silentSource[0], STDIN_FILENO) >= 0 &&
               File::openForReading("-").read(&byte, 1) == 0;
    });
}

TEST(Interruption, EndsTheProgramTheSecondTime) {
    EXPECT_EXIT(
        {
            noteInterruption();
            std::raise(SIGTERM);
            std::raise(SIGTERM);
            std::_Exit(0);
        },
        testing::KilledBySignal(SIGTERM), "");
}

TEST(Interruption, OfWhatRunsInTheBackgroundStaysIgnored) {
    EXPECT_EXIT(
        {
            std::signal(SIGINT, SIG_IGN);
            noteInterruption();
            std::raise(SIGINT);
            std::_Exit(interrupted() ? 1 : 0);
        },
        testing::ExitedWithCode(0), "");
}

} // namespace

} // namespace tolvarin::ondrel::client
