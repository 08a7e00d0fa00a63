/// @file
/// The table of a tracker.
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

/// Targets by address. A copy of the table shares its targets. A target is destroyed when it has
/// left the last table that holds it.
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

    /// Copies of the targets for which the condition holds, in ascending order of address.
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
