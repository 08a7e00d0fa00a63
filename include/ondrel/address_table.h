/// @file
/// The table inside decoder and tracker.
#pragma once

#include <ondrel/types.h>

#include <cstddef>
#include <utility>
#include <vector>

namespace tolvarin::ondrel {

/// Values by address, made for far more look-ups than new entries: one row of slots, in which an
/// entry stands where its address hashes to, or close behind. Among thousands of aircraft a look-up
/// is a wait for memory, and here it waits once.
///
/// A value lives, and stays where it is, until the next new entry or removal.
template <class Value>
class AddressTable {
public:
    std::size_t size() const { return _size; }

    /// Null for an address that has no entry.
    Value* find(u32 address) {
        if (_slots.empty()) {
            return nullptr;
        }
        Slot& slot = _slots[placeOf(address)];
        return slot.used ? &slot.value : nullptr;
    }
    const Value* find(u32 address) const { return const_cast<AddressTable*>(this)->find(address); }

    /// The value of the address, which gets an entry if it has none.
    Value& operator[](u32 address) {
        if (Value* known = find(address)) {
            return *known;
        }
        if (2 * (_size + 1) > _slots.size()) {
            refill(_slots.empty() ? fewestSlots : 2 * _slots.size(),
                   [](const Value&) { return true; });
        }
        return enter({address, true, Value{}});
    }

    /// Calls `visit` with each address and its value, in no particular order.
    template <class Visit>
    void forEach(Visit visit) const {
        for (const Slot& slot : _slots) {
            if (slot.used) {
                visit(slot.address, slot.value);
            }
        }
    }

    /// Removes the entries whose value satisfies the condition.
    template <class Condition>
    void removeIf(Condition condition) {
        refill(_slots.size(), [&](const Value& value) { return !condition(value); });
    }

private:
    struct Slot {
        u32 address = 0;
        bool used = false;
        Value value{};
    };

    static constexpr std::size_t fewestSlots = 16;

    /// Where the address stands, or the free slot where it would.
    std::size_t placeOf(u32 address) const {
        constexpr u32 goldenRatio = 0x9E3779B1; // of 2^32; spreads neighbouring addresses
        const u32 hash = address * goldenRatio;
        std::size_t place = hash * _slots.size() >> 32;
        while (_slots[place].used && _slots[place].address != address) {
            place = (place + 1) & (_slots.size() - 1);
        }
        return place;
    }

    Value& enter(Slot&& entry) {
        Slot& slot = _slots[placeOf(entry.address)];
        slot = std::move(entry);
        ++_size;
        return slot.value;
    }

    /// Enters what is to be kept into a new row of so many slots.
    template <class Keep>
    void refill(std::size_t slots, Keep keep) {
        std::vector<Slot> old(slots);
        old.swap(_slots);
        _size = 0;
        for (Slot& slot : old) {
            if (slot.used && keep(slot.value)) {
                enter(std::move(slot));
            }
        }
    }

    std::vector<Slot> _slots; ///< a power of two of them, at most half of them used
    std::size_t _size = 0;
};

} // namespace tolvarin::ondrel
