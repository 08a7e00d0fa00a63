// Runs the benchmarks, with the command line of Google Benchmark.

#include <ondrel/log.h>

#include <benchmark/benchmark.h>

int main(int argc, char** argv) {
    // No log lines: the benchmarks measure decoding, not the terminal.
    tolvarin::ondrel::Log::setShowLevel(tolvarin::ondrel::Log::Panic);
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) {
        return 1;
    }
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
}
