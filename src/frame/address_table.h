/// @file
/// A hash table by aircraft address. The decoder stores when the first few thousand addresses were
/// last proved; the tracker stores its targets.
#pragma once

#include <ondrel/types.h>

#include <cstddef>
#include <map>
#include <utility>
#include <vector>

namespace tolvarin::ondrel {

/// Values by address, for many look-ups and few new entries. All entries are in one array (open
/// addressing). So a look-up among thousands of aircraft costs about one cache miss, where a map
/// with nodes costs one for each node on the way: AddressTable/LookUp of the benchmarks takes 0.75
/// of the time of std::unordered_map in the cache, and 0.6 outside it.
///
/// Addresses come from the air, and a sender can choose addresses with the same hash. Therefore a
/// search ends after a fixed number of slots. An entry that finds no free slot in this range goes
/// into an ordered map. So a look-up stays short for every choice of addresses.
///
/// Entries are never removed. A new entry can move the others: pointers and references to values
/// are good until the next new entry.
template <class Value>
class AddressTable {
public:
    AddressTable() = default;
    AddressTable(const AddressTable&) = default;
    /// Leaves the other table empty.
    AddressTable(AddressTable&& other) noexcept { swap(other); }
    AddressTable& operator=(AddressTable other) noexcept {
        swap(other);
        return *this;
    }
    ~AddressTable() = default;

    std::size_t size() const { return _size; }

    /// The value of the address; null if it has no entry.
    Value* find(u32 address) { return const_cast<Value*>(std::as_const(*this).find(address)); }
    const Value* find(u32 address) const {
        if (_slots.empty()) {
            return nullptr;
        }
        const Slot& slot = _slots[slotOf(address)];
        if (!slot.used) {
            return nullptr;
        }
        if (slot.address == address) {
            return &slot.value;
        }
        const auto entry = _overflow.find(address);
        return entry != _overflow.end() ? &entry->second : nullptr;
    }

    /// The value of the address. An address without an entry gets one with a default value.
    Value& operator[](u32 address) {
        if (Value* known = find(address)) {
            return *known;
        }
        // At most half of the slots are used: then most searches end at the first or second slot.
        if (2 * (_size + 1) > _slots.size()) {
            grow();
        }
        Value& value = enter(address, Value{});
        ++_size;
        return value;
    }

    /// Calls `visit(address, value)` for each entry, in no particular order.
    template <class Visit>
    void forEach(Visit visit) const {
        for (const Slot& slot : _slots) {
            if (slot.used) {
                visit(slot.address, slot.value);
            }
        }
        for (const auto& [address, value] : _overflow) {
            visit(address, value);
        }
    }

private:
    struct Slot {
        u32 address = 0;
        bool used = false;
        Value value{};
    };

    static constexpr std::size_t initialSlots = 16;
    static constexpr std::size_t longestProbe = 32; // slots that one search looks at

    /// The slot that holds the address. If there is none, the free slot for it. If the search found
    /// no free slot either, a slot of another address. A free slot ends the search, since entries
    /// are never removed. The table must have slots.
    std::size_t slotOf(u32 address) const {
        // 2^32 divided by the golden ratio. Addresses of one fleet are often neighbours: the
        // product spreads them over the table.
        constexpr u32 goldenRatio = 0x9E3779B1;
        const u64 hash = u32{address * goldenRatio};
        auto index = static_cast<std::size_t>(hash * _slots.size() >> 32);
        for (std::size_t probe = 0; probe < longestProbe; ++probe) {
            if (!_slots[index].used || _slots[index].address == address) {
                break;
            }
            index = (index + 1) & (_slots.size() - 1);
        }
        return index;
    }

    Value& enter(u32 address, Value&& value) {
        Slot& slot = _slots[slotOf(address)];
        if (slot.used) {
            return _overflow.emplace(address, std::move(value)).first->second;
        }
        slot = {address, true, std::move(value)};
        return slot.value;
    }

    /// Doubles the slots and enters everything again. It copies the values: if memory runs out on
    /// the way, the old table is still complete.
    void grow() {
        AddressTable grown;
        grown._slots.resize(_slots.empty() ? initialSlots : 2 * _slots.size());
        forEach([&](u32 address, const Value& value) { grown.enter(address, Value(value)); });
        grown._size = _size;
        swap(grown);
    }

    void swap(AddressTable& other) noexcept {
        _slots.swap(other._slots);
        _overflow.swap(other._overflow);
        std::swap(_size, other._size);
    }

    std::vector<Slot> _slots;       ///< none, or a power of two
    std::map<u32, Value> _overflow; ///< entries without a free slot near their hash
    std::size_t _size = 0;          ///< all entries, at most half the number of slots
};

} // namespace tolvarin::ondrel
