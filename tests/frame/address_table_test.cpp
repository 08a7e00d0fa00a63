#include <ondrel/address_table.h>

#include <gtest/gtest.h>

#include <map>
#include <memory>
#include <random>
#include <utility>

namespace tolvarin::ondrel {
namespace {

using Table = AddressTable<std::unique_ptr<u64>>;
using Model = std::map<u32, u64>;

Model contentOf(const Table& table) {
    Model content;
    table.forEach([&](u32 address, const auto& value) {
        EXPECT_TRUE(content.emplace(address, *value).second) << address << " stands there twice";
    });
    EXPECT_EQ(table.size(), content.size());
    return content;
}

/// Enters and removes at random addresses, of which there are as many as it takes for most to be
/// known, and compares with an ordered map.
void expectAMap(u32 (*addressOf)(u32 number)) {
    std::mt19937 random(1);
    Table table;
    Model model;
    for (u64 step = 0; step < 20000; ++step) {
        const u32 address = addressOf(static_cast<u32>(random() % 3000));
        auto* known = table.find(address);
        ASSERT_EQ(known != nullptr, model.count(address) == 1);
        ASSERT_EQ(known != nullptr ? **known : 0, known != nullptr ? model.at(address) : 0);
        table[address] = std::make_unique<u64>(step);
        model[address] = step;
        if (step % 1000 == 999) {
            const u64 remainder = random() % 3;
            table.removeIf([&](const auto& value) { return *value % 3 == remainder; });
            for (auto entry = model.begin(); entry != model.end();) {
                entry = entry->second % 3 == remainder ? model.erase(entry) : std::next(entry);
            }
            ASSERT_EQ(contentOf(table), model);
        }
    }
    table.removeIf([](const auto&) { return true; });
    EXPECT_EQ(contentOf(table), Model{});
}

TEST(AddressTable, IsAMapOfAnyAddresses) {
    expectAMap([](u32 number) { return number; });
    expectAMap([](u32 number) { return ~number; });
    expectAMap([](u32 number) { return number << 20 | number; });
}

TEST(AddressTable, IsAMapOfAddressesThatWantTheSameSlot) {
    // Times the table's factor this is the number: a few slots at the end of the row, and round it
    // again at its begin.
    expectAMap([](u32 number) { return (0xFFFFFFFF - number) * 0x0E8B2F51; });
    static_assert(static_cast<u32>(0x0E8B2F51ULL * 0x9E3779B1ULL) == 1);
}

TEST(AddressTable, HasNothingAtFirst) {
    Table table;
    EXPECT_EQ(table.find(0), nullptr);
    table.removeIf([](const auto&) { return true; });
    EXPECT_EQ(contentOf(table), Model{});
}

} // namespace
} // namespace tolvarin::ondrel
