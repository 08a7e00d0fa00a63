// What the log costs.

#include "compare.h"
#include "samples.h"

#include <ondrel/log.h>

#include <array>
#include <cstddef>
#include <cstdio>
#include <string>

namespace tolvarin::ondrel::bench {
namespace {

/// Counts the lines.
class Sink final : public LogHandler {
public:
    void writeLine(const std::string& line) override {
        benchmark::DoNotOptimize(line.data());
        ++lines;
    }
    std::size_t lines = 0;
};

void showTo(LogHandler* sink, Log::Level level) {
    Log::setLogHandler(sink);
    Log::setShowLevel(level);
}

const InTable
    roadRows({"logOnRoad",
              "The whole road of a reply of the damaged traffic of 500 aircraft, with the log on: "
              "level Info, to a sink that counts lines.",
              "the same road with the log off."});

void logOnRoad(benchmark::State& state) {
    const auto& replies = stream(Kind::Damaged, 500);
    Sky work(500);
    Sky floor(500);
    Sink sink;
    compareTurns(
        state,
        [&] {
            showTo(&sink, Log::Info);
            const double time = work.timeToHear(replies);
            showTo(nullptr, Log::Panic);
            return time;
        },
        [&] { return floor.timeToHear(replies); });
    if (sink.lines == 0) {
        state.SkipWithError("the log wrote nothing");
    }
}

BENCHMARK(logOnRoad)->Apply(inTurns);

const InTable lineRows({"logLine", "A line as the decoder writes it, on its way to a sink.",
                        "formatting its message alone."});

void logLine(benchmark::State& state) {
    constexpr const char* format = "Fix 2 bits error in %s message at %u and %u.";
    const std::string module = "ModeSDecoder";
    Sink sink;
    showTo(&sink, Log::Info);
    compare(
        state, 1U << 14,
        [&](std::size_t i) {
            Log::log(Log::Info, module, format, "DF-17", static_cast<unsigned>(i % 88), 100U);
        },
        [&](std::size_t i) {
            std::array<char, 1024> buffer;
            benchmark::DoNotOptimize(std::snprintf(buffer.data(), buffer.size(), format, "DF-17",
                                                   static_cast<unsigned>(i % 88), 100U));
            benchmark::DoNotOptimize(buffer.data());
        });
    showTo(nullptr, Log::Panic);
}

BENCHMARK(logLine)->Apply(inTurns);

} // namespace
} // namespace tolvarin::ondrel::bench
