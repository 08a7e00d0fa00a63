#include <ondrel/log.h>

#include "support/captured_log.h"
#include "support/unfinished_print.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <type_traits>

namespace tolvarin::ondrel {
namespace {

using test::CapturedLog;
using test::Lines;

// No test uses a longer module name: the column never becomes narrower in a process.
const std::string longModule = "ModuleOf20Characters";

class PrintingHandler final : public LogHandler {
public:
    void writeLine(const std::string& line) override {
        std::fputs(("<" + line + ">").c_str(), stderr);
    }
};

PrintingHandler handler;

/// Calls in a new process, and the standard error output that they give.
struct Case {
    const char* name;
    void (*say)();
    std::string shown;
};

/// GoogleTest would print the bytes, padding included.
void PrintTo(const Case& example, std::ostream* out) {
    *out << example.name;
}

class FreshLogDeathTest : public testing::TestWithParam<Case> {};

TEST_P(FreshLogDeathTest, WritesExactly) {
    GTEST_FLAG_SET(death_test_style, "threadsafe"); // runs in a new process
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

static_assert(!std::is_aggregate_v<Log> && !std::is_default_constructible_v<Log>);

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

TEST(Log, ShowsWhatAFormatWroteBeforeItFailed) {
    CapturedLog log;
    const wchar_t strange[] = {0x110000, 0}; // no character
    const std::string old(1000, 'o');
    for (const std::size_t length : {0U, 5U, 999U, 1022U, 1023U, 2000U}) {
        const std::string head(length, 'h');
        // How much is written depends on the C library. Zeros show it.
        std::string written(1024, '\0');
        const int result =
            std::snprintf(written.data(), written.size(), "%s%ls tail", head.c_str(), strange);
        ASSERT_LT(result, 0) << "the format fails";
        Log::log(Log::Info, "abc", "%s", old.c_str());
        Log::log(Log::Info, "abc", "%s%ls tail", head.c_str(), strange);
        EXPECT_EQ(log.take(), (Lines{"[INFO    ][abc] " + old,
                                     std::string("[INFO    ][abc] ") + written.c_str()}))
            << length;
    }
}

// Nothing of the rubbish that the failing format left, and nothing behind the buffer, is shown.
TEST(Log, EndsWhatAFailedFormatWroteWithoutATerminator) {
    CapturedLog log;
    for (const std::size_t length : {0U, 5U, 1022U, 1023U, 1024U, 2000U}) {
        const std::string written(length, 'w');
        {
            const test::UnfinishedPrint print(written.c_str());
            Log::log(Log::Info, "abc", "%s", "anything");
        }
        const std::string cut(std::min<std::size_t>(length, 1023), 'w');
        EXPECT_EQ(log.take(), Lines{"[INFO    ][abc] " + cut}) << length;
    }
}

TEST(Log, TakesAStringMessageAsItIs) {
    CapturedLog log;
    const std::string message("100 % %s %n \0 done", 18);
    Log::log(Log::Info, "abc", message);
    EXPECT_EQ(log.take(), Lines{"[INFO    ][abc] " + message});
}

} // namespace
} // namespace tolvarin::ondrel
