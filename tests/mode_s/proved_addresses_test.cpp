#include "proved_addresses.h"

#include "support/allocations.h"

#include "simulator/fleet.h"
#include "simulator/random.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <limits>
#include <map>
#include <new>
#include <random>
#include <vector>

namespace tolvarin::ondrel {
namespace {

using Seconds = ProvedAddresses::Seconds;

constexpr u32 allAddresses = 1U << 24;
constexpr u32 neighbours = 16; // addresses in one page

/// Looks up the addresses of the model, and the one behind each.
void expectSame(ProvedAddresses& table, const std::map<u32, Seconds>& model) {
    for (const auto& [address, second] : model) {
        const Seconds* known = table.find(address);
        ASSERT_TRUE(known != nullptr && *known == second) << address;
        const u32 next = (address + 1) % allAddresses;
        ASSERT_EQ(table.find(next) != nullptr, model.count(next) == 1) << next;
    }
}

TEST(ProvedAddresses, KeepsEachSecondExactly) {
    const Seconds seconds[] = {0,
                               -1,
                               1'700'000'000,
                               Seconds{1} << 32,
                               std::numeric_limits<Seconds>::min(),
                               std::numeric_limits<Seconds>::max()};
    std::mt19937 random(1);
    ProvedAddresses table;
    std::map<u32, Seconds> model;
    for (int i = 0; i < 20000; ++i) {
        // Half of them in two blocks, so that pages fill and addresses come again.
        const u32 draw = random() % allAddresses;
        const u32 address = i % 2 == 0 ? draw : draw & 0x400FFF;
        const Seconds second = seconds[random() % std::size(seconds)];
        table.set(address, second);
        model[address] = second;
    }
    for (const u32 address : {0U, allAddresses - 1}) {
        table.set(address, 1);
        model[address] = 1;
    }
    expectSame(table, model);

    ProvedAddresses copy(table);
    for (const auto& entry : model) {
        table.set(entry.first, 2);
    }
    expectSame(copy, model);
}

/// The bytes that a copy takes: it has no more than it needs.
std::size_t bytesOf(const ProvedAddresses& table) {
    const std::size_t before = test::allocatedBytes();
    const ProvedAddresses copy(table);
    return sizeof(table) + test::allocatedBytes() - before;
}

TEST(ProvedAddresses, TakesAtMost64BytesForEachOf4095Aircraft) {
    simulator::FleetOptions options;
    options.aircraft = 4095;
    simulator::Random draws(1);
    ProvedAddresses simulated;
    for (const auto& aircraft : simulator::makeFleet(options, draws)) {
        simulated.set(aircraft.airframe().address, 1);
    }
    EXPECT_LE(bytesOf(simulated), 64 * 4095U);

    std::mt19937 random(1);
    ProvedAddresses scattered;
    for (int i = 0; i < 4095; ++i) {
        scattered.set(random() % allAddresses, 1);
    }
    EXPECT_LE(bytesOf(scattered), 64 * 4095U);
}

/// More addresses than a hash table takes. All belong into one slot if it has up to 2048 slots, and
/// into four if it has 8192.
std::vector<u32> addressesOfOneSlot() {
    std::vector<u32> addresses;
    for (u32 address = 0; address < allAddresses; ++address) {
        if (u32{address * 0x9E3779B1U} >> 21U == 0) {
            addresses.push_back(address);
        }
    }
    return addresses;
}

// What one call allocates also bounds what it copies.
TEST(ProvedAddresses, HasABoundForAllAddressesAndForEachCall) {
    constexpr std::size_t kibibyte = 1024;
    std::vector<u32> ascending;
    for (u32 address = 0; address < allAddresses; address += neighbours) {
        ascending.push_back(address);
    }
    std::vector<u32> shuffled = ascending;
    std::shuffle(shuffled.begin(), shuffled.end(), std::mt19937(1));
    std::vector<u32> hostile = addressesOfOneSlot();
    ASSERT_GT(hostile.size(), 4096U);
    hostile.insert(hostile.end(), ascending.begin(), ascending.end());

    for (const auto& order : {ascending, shuffled, hostile}) {
        ProvedAddresses table;
        const std::size_t start = test::allocatedBytes();
        std::size_t most = 0;
        const auto prove = [&](u32 address) {
            const std::size_t before = test::allocatedBytes();
            table.set(address, 1);
            most = std::max(most, test::allocatedBytes() - before);
        };
        std::for_each(order.begin(), order.end(), prove);
        // The hash table is full now. After this, each page has at least two addresses.
        for (const u32 address : order) {
            prove(address ^ (neighbours - 1));
        }
        EXPECT_LE(most, 256 * kibibyte);
        EXPECT_LE(test::allocatedBytes() - start, 192 * kibibyte * kibibyte);

        // Every page is there. No further address takes memory.
        const std::size_t complete = test::allocatedBytes();
        for (u32 address = 0; address < allAddresses; address += 7) {
            table.set(address, 2);
        }
        EXPECT_EQ(test::allocatedBytes(), complete);
        // What the heap adds to each page makes the 153 MiB that the headers promise of it.
        EXPECT_LE(bytesOf(table), 145 * kibibyte * kibibyte);
    }
}

TEST(ProvedAddresses, StaysAsItWasIfMemoryRunsOut) {
    ProvedAddresses table;
    std::map<u32, Seconds> model;
    std::size_t failures = 0;
    for (u32 i = 0; i < 5000; ++i) {
        const u32 address = i * 3001 % allAddresses;
        // The first allocation of a call fails, then the second, until the call needs no more.
        for (std::size_t spared = 0; model.count(address) == 0; ++spared) {
            try {
                const test::FailingAllocation failing(spared);
                table.set(address, i);
            } catch (const std::bad_alloc&) {
                ++failures;
                ASSERT_EQ(table.find(address), nullptr);
                continue;
            }
            model[address] = i;
        }
    }
    EXPECT_GT(failures, 1000U);
    expectSame(table, model);
}

} // namespace
} // namespace tolvarin::ondrel
