/// @file
/// The table of a tracker: its targets by address.
#pragma once

#include <ondrel/adsb_target.h>
#include <ondrel/types.h>

#include "address_table.h"

#include <algorithm>
#include <cstddef>
#include <memory>
#include <utility>
#include <vector>

namespace tolvarin::ondrel {

/// Targets by address. Each target has its own place in memory, so a pointer to a target stays good
/// while the table grows. Targets are never removed one by one, since the table under it has no
/// removal: without() builds a new table.
///
/// A copy of the table shares its targets. A target is destroyed with the last table that holds it.
class TargetTable {
public:
    std::size_t size() const { return _targets.size(); }

    /// The target of the address; null if there is none.
    ADSBTarget* find(u32 address) const {
        const auto* target = _targets.find(address);
        return target != nullptr ? target->get() : nullptr;
    }

    /// Enters a target under its address.
    void enter(std::shared_ptr<ADSBTarget> target) {
        auto& entry = _targets[target->icaoAddr()];
        entry = std::move(target);
    }

    /// Calls `visit` with each target, in no particular order.
    template <class Visit>
    void forEach(Visit visit) const {
        _targets.forEach([&](u32 /*address*/, const auto& target) { visit(*target); });
    }

    /// Copies of the targets for which the condition holds, in ascending order of address: the
    /// order of the table depends on the hash and is of no use to a client.
    template <class Condition>
    std::vector<ADSBTarget> copiesWhere(Condition condition) const {
        std::vector<std::pair<u32, const ADSBTarget*>> selected;
        _targets.forEach([&](u32 address, const auto& target) {
            if (condition(*target)) {
                selected.emplace_back(address, target.get());
            }
        });
        std::sort(selected.begin(), selected.end());
        std::vector<ADSBTarget> copies;
        copies.reserve(selected.size());
        for (const auto& [address, target] : selected) {
            copies.push_back(*target);
        }
        return copies;
    }

    /// A table that shares the targets for which the condition does not hold.
    template <class Condition>
    TargetTable without(Condition condition) const {
        TargetTable kept;
        _targets.forEach([&](u32 /*address*/, const auto& target) {
            if (!condition(*target)) {
                kept.enter(target);
            }
        });
        return kept;
    }

private:
    AddressTable<std::shared_ptr<ADSBTarget>> _targets;
};

} // namespace tolvarin::ondrel
