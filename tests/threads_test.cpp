// What several threads may do at the same time. A program of its own, for the thread sanitizer.
#include <ondrel/log.h>
#include <ondrel/mode_s_decoder.h>

#include "support/bytes.h"

#include <gtest/gtest.h>

#include <atomic>
#include <cstdlib>
#include <memory>
#include <mutex>
#include <set>
#include <string>
#include <thread>
#include <vector>

namespace tolvarin::ondrel {
namespace {

const std::string longModule = "ModuleOf20Characters";

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
        return std::string(900, static_cast<char>('a' + thread)); // long, so that threads overlap
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
            // The column is at least as wide as the name, and at most as the longest name.
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

TEST(ModeSDecoderThreads, DecodersInDifferentThreadsAreIndependent) {
    class Silence final : public LogHandler {
    public:
        void writeLine(const std::string&) override {}
    } silence;
    Log::setLogHandler(&silence);
    const auto run = [] {
        ModeSDecoder decoder;
        std::string addresses;
        for (u32 i = 0; i < 3000; ++i) {
            const std::string frame = test::inverted(test::squitter(i * 5555, 17), {i % 112});
            const std::unique_ptr<ModeSMessage> message(
                decoder.decode(ModeSMessage::Downlink, frame));
            addresses += message ? message->icaoAddressHexString() : "-";
        }
        return addresses;
    };
    const std::string expected = run();
    std::vector<std::string> results(threadCount);
    inThreads([&](unsigned thread) { results[thread] = run(); });
    EXPECT_EQ(results, std::vector<std::string>(threadCount, expected));
    Log::setLogHandler(nullptr);
}

} // namespace
} // namespace tolvarin::ondrel
