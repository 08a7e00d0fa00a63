// The hash table by address beside std::unordered_map.

#include "address_table.h"

#include "compare.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <random>
#include <unordered_map>
#include <vector>

namespace tolvarin::ondrel::bench {
namespace {

constexpr std::size_t addresses = 4095;
constexpr std::size_t lookUps = 1U << 14;

struct LookUp {
    std::size_t table;
    u32 address;
};

/// A look-up of a known address, beside the same in a std::unordered_map. With one table all of it
/// is in the cache. With many tables, as where other work comes between two look-ups, hardly
/// anything is.
void lookUp(benchmark::State& state) {
    std::mt19937 random(1); // NOLINT(cert-msc51-cpp): every run measures the same
    const auto tables = static_cast<std::size_t>(state.range(0));
    std::vector<ondrel::AddressTable<std::int64_t>> work(tables);
    std::vector<std::unordered_map<u32, std::int64_t>> floor(tables);
    std::vector<LookUp> order;
    for (std::size_t i = 0; i < tables * addresses; ++i) {
        const LookUp one = {i % tables, static_cast<u32>(random() & 0xFFFFFF)};
        work[one.table][one.address] = 1;
        floor[one.table][one.address] = 1;
        order.push_back(one);
    }
    std::shuffle(order.begin(), order.end(), random);
    order.resize(std::min(order.size(), lookUps));
    compare(
        state, order.size(),
        [&](std::size_t i) {
            benchmark::DoNotOptimize(work[order[i].table].find(order[i].address));
        },
        [&](std::size_t i) {
            benchmark::DoNotOptimize(floor[order[i].table].find(order[i].address));
        });
}

BENCHMARK(lookUp)->Name("AddressTable/LookUp")->Arg(1)->Arg(256)->Apply(inTurns);

} // namespace
} // namespace tolvarin::ondrel::bench
