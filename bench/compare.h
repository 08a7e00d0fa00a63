/// @file
/// Measures work and a floor in turns.
///
/// A time alone says little: it depends on the machine and on what else runs. So each benchmark has
/// a floor, which does only the necessary work. Work and floor take turns, so that both see
/// the same load of the machine. Reported are
///
///   work_ns    of the work, for one item
///   floor_ns   of the floor, for one item
///   ratio      of the two
///
/// each as the median over all turns: a turn that was interrupted does not count. The column Time
/// has the mean of the work.
#pragma once

#include <benchmark/benchmark.h>

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <vector>

namespace tolvarin::ondrel::bench {

/// Turns of each benchmark.
constexpr int turns = 100;

/// Registers a benchmark with this number of turns. compare() measures the time.
inline void inTurns(benchmark::internal::Benchmark* registered) {
    registered->UseManualTime()->Iterations(turns);
}

/// Seconds for one item: calls `work` with 0 to `count` - 1.
template <class Work>
double secondsPerItem(std::size_t count, Work& work) {
    const auto start = std::chrono::steady_clock::now();
    for (std::size_t i = 0; i < count; ++i) {
        work(i);
    }
    const std::chrono::duration<double> elapsed = std::chrono::steady_clock::now() - start;
    return elapsed.count() / static_cast<double>(count);
}

/// Reorders the values, of which there must be at least one.
inline double median(std::vector<double>& values) {
    const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::nth_element(values.begin(), middle, values.end());
    return *middle;
}

/// Runs one turn for each iteration of `state`: `workCount` calls of `work`, `floorCount` of
/// `floor`.
template <class Work, class Floor>
void compare(benchmark::State& state, std::size_t workCount, Work work, std::size_t floorCount,
             Floor floor) {
    std::vector<double> works;
    std::vector<double> floors;
    std::vector<double> ratios;
    for (auto turn : state) {
        static_cast<void>(turn);
        const double workTime = secondsPerItem(workCount, work);
        const double floorTime = secondsPerItem(floorCount, floor);
        state.SetIterationTime(workTime);
        works.push_back(workTime * 1e9);
        floors.push_back(floorTime * 1e9);
        ratios.push_back(workTime / floorTime);
    }
    state.counters["work_ns"] = median(works);
    state.counters["floor_ns"] = median(floors);
    state.counters["ratio"] = median(ratios);
}

template <class Work, class Floor>
void compare(benchmark::State& state, std::size_t count, Work work, Floor floor) {
    compare(state, count, work, count, floor);
}

} // namespace tolvarin::ondrel::bench
