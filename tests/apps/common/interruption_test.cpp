#include "apps/common/file.h"
#include "apps/common/interruption.h"

#include <gtest/gtest.h>

#include <chrono>
#include <csignal>
#include <cstddef>
#include <fcntl.h>
#include <string>
#include <thread>
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

TEST(Interruption, EndsTheWaitForAReaderThatStandsStill) {
    expectAfterInterruption([] {
        int ends[2];
        if (::pipe(ends) != 0 || ::dup2(ends[1], STDOUT_FILENO) < 0) {
            return false;
        }
        File output = File::openForWriting("-");
        output.write(std::string(1000000, 'x')); // more than a pipe takes
        output.write("y");
        std::string taken(1000000, ' ');
        taken.resize(static_cast<std::size_t>(::read(ends[0], taken.data(), taken.size())));
        output.write("z"); // there is room again, but a part is missing before it
        return taken.find_first_not_of('x') == std::string::npos &&
               ::fcntl(ends[0], F_SETFL, O_NONBLOCK) == 0 && ::read(ends[0], taken.data(), 1) < 0;
    });
}

TEST(Interruption, LetsAReaderTakeTheRest) {
    expectAfterInterruption([] {
        int ends[2];
        if (::pipe(ends) != 0 || ::dup2(ends[1], STDOUT_FILENO) < 0) {
            return false;
        }
        constexpr std::size_t size = 1000000;
        std::size_t taken = 0;
        std::thread reader([&] {
            char bytes[4096];
            ssize_t count = 0;
            while (taken < size && (count = ::read(ends[0], bytes, sizeof bytes)) > 0) {
                taken += static_cast<std::size_t>(count);
            }
        });
        File::openForWriting("-").write(std::string(size, 'x'));
        reader.join();
        return taken == size;
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
