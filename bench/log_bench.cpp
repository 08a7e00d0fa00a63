// A log line that is shown, on its way to a handler.

#include "compare.h"

#include <ondrel/log.h>

#include <array>
#include <cstddef>
#include <cstdio>
#include <string>

namespace tolvarin::ondrel::bench {
namespace {

class Sink final : public LogHandler {
public:
    void writeLine(const std::string& line) override { benchmark::DoNotOptimize(line.data()); }
};

/// A line as the decoder writes it, beside formatting its message alone. The level is Panic, since
/// main() hides all others.
void logLine(benchmark::State& state) {
    constexpr std::size_t lines = 1U << 14;
    constexpr const char* format = "Fix 2 bits error in %s message at %u and %u.";
    const std::string module = "ModeSDecoder";
    Sink sink;
    Log::setLogHandler(&sink);
    compare(
        state, lines,
        [&](std::size_t i) {
            Log::log(Log::Panic, module, format, "DF-17", static_cast<unsigned>(i % 88), 100U);
        },
        [&](std::size_t i) {
            std::array<char, 1024> buffer;
            benchmark::DoNotOptimize(std::snprintf(buffer.data(), buffer.size(), format, "DF-17",
                                                   static_cast<unsigned>(i % 88), 100U));
            benchmark::DoNotOptimize(buffer.data());
        });
    Log::setLogHandler(nullptr);
}

BENCHMARK(logLine)->Name("Log/Line")->Apply(inTurns);

} // namespace
} // namespace tolvarin::ondrel::bench
