/// @file
/// Measures work and a floor in turns.
///
/// A time alone says little: it depends on the machine and on what else runs. So each row has a
/// floor, which does only the necessary work. Work and floor take turns, so that both see the same
/// load of the machine. Both are measured in CPU time, so that waiting for a core does not count.
#pragma once

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstddef>
#include <ctime>
#include <string>
#include <utility>
#include <vector>

namespace tolvarin::ondrel::bench {

/// How often each row repeats work and floor. main() sets it.
inline int turns = 100;

/// The rows whose name is `name`, or begins with it and a slash.
struct Group {
    std::string name;
    std::string heading;
    std::string floor; ///< one sentence: what the floor of these rows does
    std::string unit = "ns";
};

inline std::vector<Group>& groups() {
    static std::vector<Group> all;
    return all;
}

/// Enters a group into the table. To be made before main(), in the file of the rows.
struct InTable {
    explicit InTable(Group group) { groups().push_back(std::move(group)); }
};

/// For BENCHMARK(...)->Apply: the turns are those of compare().
inline void inTurns(benchmark::internal::Benchmark* registered) {
    registered->UseManualTime()->Iterations(1);
}

/// Nanoseconds of CPU time that `action` takes in the calling thread.
template <class Action>
double cpuTime(Action action) {
    const auto now = [] {
        timespec time{};
        clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
        return static_cast<double>(time.tv_sec) * 1e9 + static_cast<double>(time.tv_nsec);
    };
    const double start = now();
    action();
    return now() - start;
}

/// Nanoseconds for one item: calls `work` with 0 to `count` - 1.
template <class Work>
double timePerItem(std::size_t count, Work& work) {
    const double time = cpuTime([&] {
        for (std::size_t i = 0; i < count; ++i) {
            work(i);
        }
    });
    return time / static_cast<double>(count);
}

/// The value below which this share of the values lies. Reorders them; there must be at least one.
inline double quantile(std::vector<double>& values, double share) {
    const double place = share * static_cast<double>(values.size() - 1) + 0.5;
    const auto found = values.begin() + static_cast<std::ptrdiff_t>(place);
    std::nth_element(values.begin(), found, values.end());
    return *found;
}

/// Each call of `workTurn` and `floorTurn` makes one turn and gives the time for one item.
template <class WorkTurn, class FloorTurn>
void compareTurns(benchmark::State& state, WorkTurn workTurn, FloorTurn floorTurn) {
    for (auto row : state) {
        static_cast<void>(row);
        std::vector<double> works;
        std::vector<double> floors;
        std::vector<double> ratios;
        for (int turn = 0; turn < turns; ++turn) {
            works.push_back(workTurn());
            floors.push_back(floorTurn());
            ratios.push_back(works.back() / floors.back());
        }
        state.SetIterationTime(works.back() * 1e-9);
        state.counters["work"] = quantile(works, 0.5);
        state.counters["low"] = quantile(works, 0.05);
        state.counters["high"] = quantile(works, 0.95);
        state.counters["floor"] = quantile(floors, 0.5);
        state.counters["ratio"] = quantile(ratios, 0.5);
    }
}

/// A turn is `count` calls of `work`, and as many of `floor`.
template <class Work, class Floor>
void compare(benchmark::State& state, std::size_t count, Work work, Floor floor) {
    compareTurns(
        state, [&] { return timePerItem(count, work); }, [&] { return timePerItem(count, floor); });
}

} // namespace tolvarin::ondrel::bench
