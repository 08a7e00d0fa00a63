// Tables that the library does not export.

#include "address_table.h"
#include "parity.h"
#include "proved_addresses.h"

#include "compare.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <random>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

namespace tolvarin::ondrel::bench {
namespace {

constexpr std::size_t lookUps = 1U << 14;
constexpr std::size_t fullTable = 4095;

using Table = AddressTable<std::int64_t>;

/// Numbers of 24 bits, the same in every run.
std::vector<u32> randomNumbers(std::size_t count) {
    std::mt19937 random(1); // NOLINT(cert-msc51-cpp)
    std::vector<u32> numbers(count);
    std::generate(numbers.begin(), numbers.end(), [&] { return random() & 0xFFFFFF; });
    return numbers;
}

const InTable
    pairRows({"pairSearch",
              "The search for two wrong bits that explain a wrong parity. Most are beyond "
              "repair.",
              "the same search in a std::unordered_map."});

void pairSearch(benchmark::State& state) {
    const auto differences = randomNumbers(lookUps);
    std::unordered_map<u32, std::pair<u8, u8>> pairs;
    for (u8 first = 0; first < parity::longBits; ++first) {
        for (u8 second = first + 1; second < parity::longBits; ++second) {
            std::string wrong(parity::longBits / 8, '\0');
            parity::invert(wrong, first);
            parity::invert(wrong, second);
            pairs.try_emplace(parity::sum(wrong, parity::longBits), first, second);
        }
    }
    compare(
        state, differences.size(),
        [&](std::size_t i) {
            benchmark::DoNotOptimize(parity::findBitPair(parity::longBits, differences[i]));
        },
        [&](std::size_t i) { benchmark::DoNotOptimize(pairs.find(differences[i])); });
}

BENCHMARK(pairSearch)->Apply(inTurns);

const InTable
    tableRows({"AddressTable",
               "A look-up among 4095 addresses: in one table, which is in the cache, and in "
               "256 tables by turns, which are not, as where other work comes between.",
               "the same in a std::unordered_map."});

void lookUp(benchmark::State& state) {
    const auto tables = static_cast<std::size_t>(state.range(0));
    const auto addresses = randomNumbers(tables * fullTable);
    std::vector<Table> work(tables);
    std::vector<std::unordered_map<u32, std::int64_t>> floor(tables);
    std::vector<std::pair<std::size_t, u32>> order; // table and address
    for (std::size_t i = 0; i < addresses.size(); ++i) {
        work[i % tables][addresses[i]] = 1;
        floor[i % tables][addresses[i]] = 1;
        order.emplace_back(i % tables, addresses[i]);
    }
    std::shuffle(order.begin(), order.end(), std::mt19937(2)); // NOLINT(cert-msc51-cpp)
    order.resize(std::min(order.size(), lookUps));
    compare(
        state, order.size(),
        [&](std::size_t i) {
            benchmark::DoNotOptimize(work[order[i].first].find(order[i].second));
        },
        [&](std::size_t i) {
            benchmark::DoNotOptimize(floor[order[i].first].find(order[i].second));
        });
}

BENCHMARK(lookUp)->Name("AddressTable/LookUp")->Arg(1)->Arg(256)->Apply(inTurns);

const InTable
    provedRows({"ProvedAddresses",
                "The decoder's bounded table of as many addresses as the number says: a "
                "look-up of one of the newest 4095, and a new address, from an empty table on.",
                "the same in a hash table without a bound (AddressTable)."});

/// The older addresses stand for aircraft that are gone, and for noise.
void lookUpProved(benchmark::State& state) {
    const auto addresses = randomNumbers(static_cast<std::size_t>(state.range(0)));
    ProvedAddresses work;
    Table floor;
    for (const u32 address : addresses) {
        work.set(address, 1);
        floor[address] = 1;
    }
    std::vector<u32> order = randomNumbers(lookUps);
    for (u32& address : order) {
        address = addresses[addresses.size() - 1 - address % fullTable];
    }
    compare(
        state, lookUps, [&](std::size_t i) { benchmark::DoNotOptimize(work.find(order[i])); },
        [&](std::size_t i) { benchmark::DoNotOptimize(floor.find(order[i])); });
}

void fillProved(benchmark::State& state) {
    const auto addresses = randomNumbers(static_cast<std::size_t>(state.range(0)));
    compareTurns(
        state,
        [&] {
            ProvedAddresses work;
            const auto set = [&](std::size_t i) { work.set(addresses[i], 1); };
            return timePerItem(addresses.size(), set);
        },
        [&] {
            Table floor;
            const auto set = [&](std::size_t i) { floor[addresses[i]] = 1; };
            return timePerItem(addresses.size(), set);
        });
}

BENCHMARK(lookUpProved)->Name("ProvedAddresses/LookUp")->Arg(4095)->Arg(1 << 20)->Apply(inTurns);
BENCHMARK(fillProved)->Name("ProvedAddresses/Fill")->Arg(4095)->Arg(1 << 16)->Apply(inTurns);

} // namespace
} // namespace tolvarin::ondrel::bench
