#include <ondrel/log.h>

#include "support/captured_log.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <mutex>
#include <set>
#include <thread>

namespace tolvarin::ondrel {
namespace {

using test::CapturedLog;
using test::Lines;

// The longest module name of all tests: the column never shrinks again in a process.
const std::string longModule = "ModuleOf20Characters";

class PrintingHandler final : public LogHandler {
public:
    void writeLine(const std::string& line) override {
        std::fputs(("<" + line + ">").c_str(), stderr);
    }
};

PrintingHandler handler;

/// What a fresh process says, and what then stands on standard error.
struct Case {
    const char* name;
    void (*say)();
    std::string shown;
};

class FreshLogDeathTest : public testing::TestWithParam<Case> {};

TEST_P(FreshLogDeathTest, WritesExactly) {
    GTEST_FLAG_SET(death_test_style, "threadsafe"); // runs in a process started anew
    EXPECT_EXIT((GetParam().say(), std::_Exit(0)), testing::ExitedWithCode(0),
                testing::Eq(GetParam().shown));
}

const std::vector<Case> freshCases = {
    {"NoDebugLine", [] { Log::log(Log::Debug, "abc", "x"); }, ""},
    {"AnInfoLinePaddedToTen", [] { Log::log(Log::Info, "abc", "x"); },
     "[INFO    ][abc       ] x\n"},
    {"AFormattedLine", [] { Log::log(Log::Info, "abc", "%s %u", "x", 7U); },
     "[INFO    ][abc       ] x 7\n"},
    {"AColumnAsWideAsTheLongestName",
     [] {
         Log::log(Log::Info, longModule, "x");
         Log::log(Log::Info, "abc", "y");
     },
     "[INFO    ][ModuleOf20Characters] x\n[INFO    ][abc                 ] y\n"},
    {"AColumnThatHiddenLinesDoNotWiden",
     [] {
         Log::log(Log::Debug, longModule, "x");
         Log::log(Log::Debug, longModule, "%s", "x");
         Log::log(Log::Info, "abc", "y");
     },
     "[INFO    ][abc       ] y\n"},
    {"LinesFromTheShowLevelUp",
     [] {
         Log::setShowLevel(Log::Critical);
         for (const int level : {0, 1, 2, 3, 4, 7}) {
             Log::log(static_cast<Log::Level>(level), "abc", std::to_string(level));
             Log::log(static_cast<Log::Level>(level), "abc", "%d", level + 10);
         }
     },
     "[CRITICAL][abc       ] 3\n[CRITICAL][abc       ] 13\n"
     "[PANIC   ][abc       ] 4\n[PANIC   ][abc       ] 14\n"
     "[UNKNOWN ][abc       ] 7\n[UNKNOWN ][abc       ] 17\n"},
    {"ToAHandlerWithoutLineEndAndBackToTheStream",
     [] {
         Log::setLogHandler(&handler);
         Log::log(Log::Info, "abc", "x");
         Log::setLogHandler(nullptr);
         Log::log(Log::Info, "abc", "y");
     },
     "<[INFO    ][abc       ] x>[INFO    ][abc       ] y\n"},
};

INSTANTIATE_TEST_SUITE_P(Process, FreshLogDeathTest, testing::ValuesIn(freshCases),
                         [](const auto& example) { return std::string(example.param.name); });

TEST(Log, LabelsEveryLevel) {
    CapturedLog log(static_cast<Log::Level>(-2));
    for (int level = -2; level <= 5; ++level) {
        Log::log(static_cast<Log::Level>(level), "abc", std::string("x"));
    }
    EXPECT_EQ(log.take(), (Lines{
                              "[UNKNOWN ][abc] x",
                              "[UNKNOWN ][abc] x",
                              "[DEBUG   ][abc] x",
                              "[INFO    ][abc] x",
                              "[WARNING ][abc] x",
                              "[CRITICAL][abc] x",
                              "[PANIC   ][abc] x",
                              "[UNKNOWN ][abc] x",
                          }));
}

TEST(Log, CutsAFormattedMessageAt1023CharactersAndNoOther) {
    CapturedLog log;
    const std::string prefix = "[INFO    ][abc] ";
    for (const std::size_t length : {0U, 1022U, 1023U, 1024U, 2000U}) {
        const std::string message(length, 'm');
        Log::log(Log::Info, "abc", "%s", message.c_str());
        Log::log(Log::Info, "abc", message);
        const std::string cut(std::min<std::size_t>(length, 1023), 'm');
        EXPECT_EQ(log.take(), (Lines{prefix + cut, prefix + message})) << length;
    }
}

TEST(Log, TakesAStringMessageAsItIs) {
    CapturedLog log;
    const std::string message("100 % %s %n \0 done", 18);
    Log::log(Log::Info, "abc", message);
    EXPECT_EQ(log.take(), Lines{"[INFO    ][abc] " + message});
}

// Several threads at once

constexpr unsigned threadCount = 4;
constexpr unsigned linesPerThread = 500;

template <class Work>
void inThreads(Work work) {
    std::vector<std::thread> threads;
    for (unsigned i = 0; i < threadCount; ++i) {
        threads.emplace_back([work, i] { work(i); });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
}

class LockingHandler final : public LogHandler {
public:
    void writeLine(const std::string& line) override {
        const std::lock_guard lock(_mutex);
        _lines.insert(line);
        _last = line;
    }
    const std::multiset<std::string>& all() const { return _lines; }
    const std::string& last() const { return _last; }

private:
    std::mutex _mutex;
    std::multiset<std::string> _lines;
    std::string _last;
};

TEST(LogThreads, EveryLineArrivesWholeAndTheColumnFitsTheLongestName) {
    const auto moduleOf = [](unsigned i) {
        return longModule.substr(0, 1 + i * longModule.size() / linesPerThread);
    };
    const auto filler = [](unsigned thread) {
        return std::string(900, static_cast<char>('a' + thread)); // time for others to interfere
    };
    LockingHandler lines;
    Log::setLogHandler(&lines);
    inThreads([&](unsigned thread) {
        for (unsigned i = 0; i < linesPerThread; ++i) {
            Log::log(Log::Info, moduleOf(i), "%u %u %s", thread, i, filler(thread).c_str());
            Log::log(Log::Debug, longModule + longModule, "hidden %u", i);
        }
    });
    Log::log(Log::Info, "abc", "last");
    Log::setLogHandler(nullptr);

    EXPECT_EQ(lines.last(), "[INFO    ][abc                 ] last");
    std::multiset<std::string> left = lines.all();
    EXPECT_EQ(left.size(), threadCount * linesPerThread + 1);
    for (unsigned thread = 0; thread < threadCount; ++thread) {
        for (unsigned i = 0; i < linesPerThread; ++i) {
            // As wide as the name at least, and as the longest name at most.
            std::string start = "[INFO    ][" + moduleOf(i);
            const std::string rest =
                "] " + std::to_string(thread) + " " + std::to_string(i) + " " + filler(thread);
            while (left.erase(start + rest) == 0) {
                ASSERT_LE((start += ' ').size(), 11 + longModule.size()) << rest;
            }
        }
    }
}

TEST(LogThreads, LevelAndHandlerChangeWhileOthersWrite) {
    LockingHandler first;
    LockingHandler second;
    Log::setLogHandler(&first);
    std::atomic<unsigned> running{threadCount - 1};
    inThreads([&](unsigned thread) {
        if (thread == 0) {
            while (running > 0) {
                Log::setLogHandler(&second);
                Log::setShowLevel(Log::Panic);
                Log::setShowLevel(Log::Debug);
                Log::setLogHandler(&first);
            }
            return;
        }
        for (unsigned i = 0; i < linesPerThread; ++i) {
            Log::log(Log::Panic, "abc", "%u", i);
            Log::log(Log::Debug, "abc", "%u", i);
        }
        --running;
    });
    Log::setLogHandler(nullptr);
    Log::setShowLevel(Log::Info);
    const std::size_t written = first.all().size() + second.all().size();
    EXPECT_GE(written, (threadCount - 1) * linesPerThread);
    EXPECT_LE(written, 2 * (threadCount - 1) * linesPerThread);
}

TEST(LogThreadsDeathTest, TheStandardStreamGetsWholeLines) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    const auto write = [] {
        inThreads([](unsigned) {
            for (unsigned i = 0; i < linesPerThread; ++i) {
                Log::log(Log::Info, "abc", "%020u", i);
            }
        });
        std::_Exit(0);
    };
    EXPECT_EXIT(write(), testing::ExitedWithCode(0),
                testing::MatchesRegex("(\\[INFO    \\]\\[abc       \\] [0-9]{20}\n)+"));
}

} // namespace
} // namespace tolvarin::ondrel
