#include "address_table.h"

#include <gtest/gtest.h>

#include <map>
#include <random>
#include <utility>

namespace tolvarin::ondrel {
namespace {

using Table = AddressTable<u64>;
using Model = std::map<u32, u64>;

Model contentOf(const Table& table) {
    Model content;
    table.forEach([&](u32 address, u64 value) {
        EXPECT_TRUE(content.emplace(address, value).second) << address << " is listed twice";
    });
    EXPECT_EQ(table.size(), content.size());
    return content;
}

/// Compares random entries and look-ups with those of an ordered map.
void expectAMap(u32 (*addressOf)(u32 number)) {
    std::mt19937 random(1);
    Table table;
    Model model;
    for (u64 step = 1; step <= 20000; ++step) {
        const u32 address = addressOf(static_cast<u32>(random() % 10000));
        const u64* known = std::as_const(table).find(address);
        ASSERT_EQ(known != nullptr, model.count(address) == 1);
        ASSERT_EQ(table[address], std::exchange(model[address], step));
        table[address] = step;
        known = table.find(address);
        ASSERT_TRUE(known != nullptr && *known == step);
    }
    EXPECT_EQ(contentOf(table), model);

    const Table copy(table);
    Table moved(std::move(table));
    EXPECT_EQ(contentOf(table), Model{}); // NOLINT(bugprone-use-after-move)
    EXPECT_EQ(contentOf(moved), model);
    moved[~u32{0}] = 0;
    table = std::move(moved);
    table = copy;
    EXPECT_EQ(contentOf(table), model);
}

TEST(AddressTable, DoesWhatAMapDoesForAnyAddresses) {
    expectAMap([](u32 number) { return number; });
    expectAMap([](u32 number) { return ~number; });
    expectAMap([](u32 number) { return number << 18 | number; });
}

// Multiplied by the table's factor, these addresses are the highest numbers, which all belong into
// the last slot. With linear probing this test would take minutes.
TEST(AddressTable, StaysFastIfAllAddressesBelongIntoOneSlot) {
    constexpr u32 inverse = 0x0E8B2F51;
    static_assert(inverse * 0x9E3779B1U == 1);
    expectAMap([](u32 number) { return ~number * inverse; });
    Table table;
    for (u32 i = 0; i < 300000; ++i) {
        table[~i * inverse] = i;
    }
    EXPECT_EQ(table.size(), 300000U);
}

} // namespace
} // namespace tolvarin::ondrel
