// Runs the benchmarks, with the command line of Google Benchmark, and prints the table.

#include "build_facts.h"
#include "compare.h"

#include <ondrel/log.h>
#include <ondrel/ondrel.h>

#include <benchmark/benchmark.h>

#include <sched.h>
#include <sys/utsname.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <string>
#include <string_view>

#ifndef BUILD_MEASURED
#define BUILD_MEASURED FACT_BUILD
#endif

namespace tolvarin::ondrel::bench {
namespace {

/// What a line of the file has behind the name, without separators and quotes.
std::string valueIn(const char* file, const std::string& name) {
    std::ifstream input(file);
    for (std::string line; std::getline(input, line);) {
        const std::size_t start = line.find_first_not_of(" \t:=\"", name.size());
        if (line.compare(0, name.size(), name) == 0 && start != std::string::npos) {
            return line.substr(start, line.find_last_not_of('"') + 1 - start);
        }
    }
    return "unknown";
}

std::string machine() {
    cpu_set_t usable;
    CPU_ZERO(&usable);
    sched_getaffinity(0, sizeof usable, &usable);
    return valueIn("/proc/cpuinfo", "model name") + ", " +
           std::to_string(sysconf(_SC_NPROCESSORS_ONLN)) + " cores, of which this run may use " +
           std::to_string(CPU_COUNT(&usable));
}

std::string operatingSystem() {
    utsname names{};
    uname(&names);
    return valueIn("/etc/os-release", "PRETTY_NAME") + ", " + names.sysname + ' ' + names.release +
           ' ' + names.machine;
}

/// Prints the text behind the name, in lines of at most 110 characters.
void print(const std::string& name, std::string text) {
    constexpr std::size_t width = 100;
    while (text.size() > width) {
        const std::size_t end = text.rfind(' ', width);
        std::printf("%-10s%s\n", name.c_str(), text.substr(0, end).c_str());
        return print(std::string(name.size(), ' '), text.substr(end + 1));
    }
    std::printf("%-10s%s\n", name.c_str(), text.c_str());
}

/// Prints the head, and each group of rows under its heading.
class Table final : public benchmark::BenchmarkReporter {
public:
    bool ReportContext(const Context& /*context*/) override {
        std::printf("\n");
        print("Measured", MEASURED);
        print("Version", Ondrel::version() + ", commit " + FACT_COMMIT);
        print("Machine", machine());
        print("System", operatingSystem());
        print("Compiler", FACT_COMPILER);
        print("Build", BUILD_MEASURED);
        print("Turns", std::to_string(turns) + " of each row");
        print("Times",
              "CPU time for one item. Of the work, the median of all turns, and the range from 5 % "
              "to 95 % of them; of the floor, the median. Work and floor take turns. The ratio is "
              "the median of the ratios of each turn. The log is off unless a row says otherwise.");
        return true;
    }

    void ReportRuns(const std::vector<Run>& runs) override {
        for (const Run& run : runs) {
            const std::string& function = run.run_name.function_name;
            const std::string& arguments = run.run_name.args;
            beginGroup(function.substr(0, function.find('/')));
            const std::string name = arguments.empty() ? function : function + "/" + arguments;
            if (run.error_occurred) {
                std::printf("%-34s %s\n", name.c_str(), run.error_message.c_str());
            } else if (run.run_type == Run::RT_Iteration) {
                printRow(name, run.counters);
            }
        }
        std::fflush(stdout);
    }

private:
    void beginGroup(const std::string& name) {
        if (name == _group) {
            return;
        }
        _group = name;
        std::string unit = "ns";
        std::printf("\n");
        for (const Group& group : groups()) {
            if (group.name == name) {
                print("Work", group.heading);
                print("Floor", group.floor);
                unit = group.unit;
            }
        }
        std::printf("%-34s %12s %27s %14s %10s\n", "", ("work " + unit).c_str(),
                    "5 % .. 95 %       ", ("floor " + unit).c_str(), "ratio");
    }

    static void printRow(const std::string& name, const benchmark::UserCounters& values) {
        const auto value = [&](const char* key) { return static_cast<double>(values.at(key)); };
        std::printf("%-34s %12.1f %12.1f .. %-11.1f %14.1f %10.2f\n", name.c_str(), value("work"),
                    value("low"), value("high"), value("floor"), value("ratio"));
    }

    std::string _group;
};

/// --benchmark_min_time=SECONDS sets the number of turns: 100 for 0.5 seconds, at least 5.
int turnsWanted(int argc, char** argv) {
    constexpr std::string_view option = "--benchmark_min_time=";
    double seconds = 0.5;
    for (int i = 1; i < argc; ++i) {
        if (std::string_view(argv[i]).substr(0, option.size()) == option) {
            seconds = std::atof(argv[i] + option.size());
        }
    }
    return static_cast<int>(std::clamp(seconds * 200, 5.0, 10000.0));
}

} // namespace
} // namespace tolvarin::ondrel::bench

int main(int argc, char** argv) {
    using namespace tolvarin::ondrel;
    Log::setShowLevel(Log::Panic); // no lines: the library writes none of this level
    bench::turns = bench::turnsWanted(argc, argv);
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) {
        return 1;
    }
    bench::Table table;
    benchmark::RunSpecifiedBenchmarks(&table);
    benchmark::Shutdown();
}
