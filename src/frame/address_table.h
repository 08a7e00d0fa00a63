/// @file
/// The table inside decoder and tracker; not for applications.
#pragma once

#include <ondrel/types.h>

#include <cstddef>
#include <map>
#include <utility>
#include <vector>

namespace tolvarin::ondrel {

/// Values by address, made for far more look-ups than new entries: one row of slots, in which an
/// entry stands where its address hashes to, or close behind. Among thousands of aircraft a look-up
/// is a wait for memory, and here it waits once. An entry that finds no free slot near, because
/// somebody chose addresses that hash alike, goes into an ordered map, so that no choice of
/// addresses makes a look-up long.
///
/// Entries are never removed. A value stays where it is until the next new entry.
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

    /// Null for an address that has no entry.
    Value* find(u32 address) { return const_cast<Value*>(std::as_const(*this).find(address)); }
    const Value* find(u32 address) const {
        if (_slots.empty()) {
            return nullptr;
        }
        const Slot& slot = _slots[placeOf(address)];
        if (!slot.used) {
            return nullptr;
        }
        if (slot.address == address) {
            return &slot.value;
        }
        const auto entry = _crowded.find(address);
        return entry != _crowded.end() ? &entry->second : nullptr;
    }

    /// The value of the address, which gets an entry if it has none.
    Value& operator[](u32 address) {
        if (Value* known = find(address)) {
            return *known;
        }
        if (2 * (_size + 1) > _slots.size()) {
            grow();
        }
        Value& value = enter(address, Value{});
        ++_size;
        return value;
    }

    /// Calls `visit` with each address and its value, in no particular order.
    template <class Visit>
    void forEach(Visit visit) const {
        for (const Slot& slot : _slots) {
            if (slot.used) {
                visit(slot.address, slot.value);
            }
        }
        for (const auto& [address, value] : _crowded) {
            visit(address, value);
        }
    }

private:
    struct Slot {
        u32 address = 0;
        bool used = false;
        Value value{};
    };

    static constexpr std::size_t fewestSlots = 16;
    static constexpr std::size_t longestWay = 32; // slots that an entry may stand behind its place

    /// Where the address stands, or the free slot where it would; the slot of another address when
    /// all near ones are taken.
    std::size_t placeOf(u32 address) const {
        constexpr u32 goldenRatio = 0x9E3779B1; // of 2^32; spreads neighbouring addresses
        const u64 hash = u32{address * goldenRatio};
        auto place = static_cast<std::size_t>(hash * _slots.size() >> 32);
        for (std::size_t way = 0; way < longestWay; ++way) {
            if (!_slots[place].used || _slots[place].address == address) {
                break;
            }
            place = (place + 1) & (_slots.size() - 1);
        }
        return place;
    }

    Value& enter(u32 address, Value&& value) {
        Slot& slot = _slots[placeOf(address)];
        if (slot.used) {
            return _crowded.emplace(address, std::move(value)).first->second;
        }
        slot = {address, true, std::move(value)};
        return slot.value;
    }

    /// Enters all into a row of twice the slots. Nothing changes if memory runs out.
    void grow() {
        AddressTable grown;
        grown._slots.resize(_slots.empty() ? fewestSlots : 2 * _slots.size());
        forEach([&](u32 address, const Value& value) { grown.enter(address, Value(value)); });
        grown._size = _size;
        swap(grown);
    }

    void swap(AddressTable& other) noexcept {
        _slots.swap(other._slots);
        _crowded.swap(other._crowded);
        std::swap(_size, other._size);
    }

    std::vector<Slot> _slots; ///< a power of two of them
    std::map<u32, Value> _crowded;
    std::size_t _size = 0; ///< at most half as many as slots
};

} // namespace tolvarin::ondrel
