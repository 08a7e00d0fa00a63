// The decoder's table of addresses beside a hash table without a bound: what the bound costs.

#include "address_table.h"
#include "proved_addresses.h"

#include "compare.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <random>
#include <vector>

namespace tolvarin::ondrel::bench {
namespace {

using Floor = ondrel::AddressTable<std::int64_t>;

constexpr std::size_t lookUps = 1U << 14;
constexpr std::size_t newest = 4095;

std::vector<u32> makeAddresses(std::mt19937& random, std::size_t count) {
    std::vector<u32> addresses;
    for (std::size_t i = 0; i < count; ++i) {
        addresses.push_back(static_cast<u32>(random() & 0xFFFFFF));
    }
    return addresses;
}

/// Look-ups of the newest 4095 addresses, of as many as the argument says. The older ones stand for
/// aircraft that are gone, and for noise.
void lookUp(benchmark::State& state) {
    std::mt19937 random(1); // NOLINT(cert-msc51-cpp): every run measures the same
    const auto addresses = makeAddresses(random, static_cast<std::size_t>(state.range(0)));
    ProvedAddresses work;
    Floor floor;
    for (const u32 address : addresses) {
        work.set(address, 1);
        floor[address] = 1;
    }
    std::vector<u32> order;
    for (std::size_t i = 0; i < lookUps; ++i) {
        const std::size_t age = 1 + random() % std::min(addresses.size(), newest);
        order.push_back(addresses[addresses.size() - age]);
    }
    compare(
        state, lookUps, [&](std::size_t i) { benchmark::DoNotOptimize(work.find(order[i])); },
        [&](std::size_t i) { benchmark::DoNotOptimize(floor.find(order[i])); });
}

/// Enters as many new addresses as the argument says into an empty table, and destroys the table.
void fill(benchmark::State& state) {
    std::mt19937 random(1); // NOLINT(cert-msc51-cpp): every run measures the same
    const auto addresses = makeAddresses(random, static_cast<std::size_t>(state.range(0)));
    std::optional<ProvedAddresses> work;
    std::optional<Floor> floor;
    compare(
        state, addresses.size(),
        [&](std::size_t i) {
            if (i == 0) {
                work.emplace();
            }
            work->set(addresses[i], 1);
        },
        [&](std::size_t i) {
            if (i == 0) {
                floor.emplace();
            }
            (*floor)[addresses[i]] = 1;
        });
}

BENCHMARK(lookUp)->Name("ProvedAddresses/LookUp")->Arg(10)->Arg(4095)->Arg(1 << 20)->Apply(inTurns);
BENCHMARK(fill)->Name("ProvedAddresses/Fill")->Arg(4095)->Arg(1 << 16)->Apply(inTurns);

} // namespace
} // namespace tolvarin::ondrel::bench
