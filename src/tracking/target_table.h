/// @file
/// The table of a tracker: its targets by address.
#pragma once

#include <ondrel/adsb_target.h>
#include <ondrel/types.h>

#include "address_table.h"
#include "track_numbers.h"

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

    /// Enters a target under its address, which must have none.
    void enter(std::shared_ptr<ADSBTarget> target) {
        const u32 trackId = target->trackId();
        auto& entry = _targets[target->icaoAddr()];
        entry = std::move(target);
        _numbers.add(trackId);
    }

    /// The lowest free track number from `start` on, in the order of TrackNumbers; 0 if the table
    /// is full.
    u32 freeTrackId(u32 start) {
        if (size() >= mostTargets) {
            return 0;
        }
        if (_renumberingsSeen != *_renumberings) { // another table changed a number
            _numbers = {};
            forEach([this](const ADSBTarget& target) { _numbers.add(target.trackId()); });
            _renumberingsSeen = *_renumberings;
        }
        return _numbers.firstFree(start);
    }

    /// To be called when a target of this table gets another number.
    void noteRenumbering(u32 before, u32 after) {
        if (before == after) {
            return;
        }
        const bool numbersAreRight = _renumberingsSeen == *_renumberings;
        ++*_renumberings;
        if (numbersAreRight) {
            _numbers.remove(before);
            _numbers.add(after);
            _renumberingsSeen = *_renumberings;
        }
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
        if (kept.size() > 0) {
            kept._renumberings = _renumberings;
            kept._renumberingsSeen = *_renumberings;
        }
        return kept;
    }

private:
    AddressTable<std::shared_ptr<ADSBTarget>> _targets;
    TrackNumbers _numbers; ///< counted when there had been so many renumberings
    u64 _renumberingsSeen = 0;
    /// How often a target got another number, in this table and in those that share targets with
    /// it.
    std::shared_ptr<u64> _renumberings = std::make_shared<u64>(0);
};

} // namespace tolvarin::ondrel
