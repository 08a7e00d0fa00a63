/// @file
/// When each address last proved itself.
#pragma once

#include <ondrel/types.h>

#include "address_table.h"

#include <array>
#include <bitset>
#include <cstddef>
#include <cstdint>
#include <memory>

namespace tolvarin::ondrel {

/// Seconds by address, for all 2^24 addresses. They take at most 153 MiB together.
///
/// Entries are never removed, and noise proves addresses too: over months the table can fill. A
/// hash table alone would then take 515 MB, and every time it doubles, it would copy all entries in
/// one call. So the hash table only takes as many addresses as a full tracker has aircraft. Each
/// later address goes into a page, which it shares with its 15 neighbours. A page is made for its
/// first address and never moves.
///
/// One call allocates at most 256 KiB: it doubles the hash table, or makes a page and a list of
/// pages. The benchmarks ProvedAddresses show what a look-up and a new address cost, beside the
/// hash table alone.
///
/// If memory runs out, the entries stay as they were.
class ProvedAddresses {
public:
    using Seconds = std::int64_t;

    /// The second of the address, which has 24 bits; null if it never proved itself. The pointer is
    /// good until the next new address.
    Seconds* find(u32 address) {
        Seconds* second = _hashed.find(address);
        return second == nullptr && _hashed.size() == mostHashed ? findPaged(address) : second;
    }

    /// Notes the second in which the address proved itself.
    void set(u32 address, Seconds second) {
        if (Seconds* known = find(address)) {
            *known = second;
        } else if (_hashed.size() < mostHashed) {
            _hashed[address] = second;
        } else {
            Page& page = _pages.make(address / addressesOfList).make(pageOf(address));
            page.seconds[address % addressesOfPage] = second;
            page.known.set(address % addressesOfPage);
        }
    }

private:
    static constexpr std::size_t mostHashed = 4096;
    static constexpr u32 addressesOfPage = 16;
    static constexpr u32 pagesOfList = 4096;
    static constexpr u32 addressesOfList = pagesOfList * addressesOfPage;
    static constexpr u32 lists = (1U << 24) / addressesOfList;

    struct Page {
        std::array<Seconds, addressesOfPage> seconds;
        std::bitset<addressesOfPage> known;
    };

    /// Parts that are made when they are first used. A copy copies the parts.
    template <class Part, std::size_t count>
    class Parts {
    public:
        Parts() = default;
        Parts(const Parts& other) {
            for (std::size_t i = 0; i < count; ++i) {
                if (other._parts[i]) {
                    _parts[i] = std::make_unique<Part>(*other._parts[i]);
                }
            }
        }
        Parts& operator=(const Parts&) = delete;
        ~Parts() = default;

        Part* find(std::size_t index) { return _parts[index].get(); }
        Part& make(std::size_t index) {
            if (!_parts[index]) {
                _parts[index] = std::make_unique<Part>();
            }
            return *_parts[index];
        }

    private:
        std::array<std::unique_ptr<Part>, count> _parts;
    };

    static u32 pageOf(u32 address) { return address / addressesOfPage % pagesOfList; }

    Seconds* findPaged(u32 address) {
        auto* list = _pages.find(address / addressesOfList);
        Page* page = list != nullptr ? list->find(pageOf(address)) : nullptr;
        const u32 place = address % addressesOfPage;
        return page != nullptr && page->known[place] ? &page->seconds[place] : nullptr;
    }

    AddressTable<Seconds> _hashed;
    Parts<Parts<Page, pagesOfList>, lists> _pages; ///< empty until the hash table is full
};

} // namespace tolvarin::ondrel
