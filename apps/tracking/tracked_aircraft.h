#pragma once

#include "apps/tracking/position_check.h"

#include <ondrel/adsb_target.h>
#include <ondrel/types.h>

#include <optional>
#include <utility>

namespace tolvarin::ondrel::client {

/// An aircraft of the tracker, and what the client knows beside it.
struct TrackedAircraft : ADSBTarget {
    TrackedAircraft(ADSBTarget target, const std::optional<Position>& accepted)
        : ADSBTarget(std::move(target)), position(accepted) {}

    /// The position that the client believes. The target's own one may be false: show this one in
    /// its place.
    std::optional<Position> position;

    /// The type code of the last identification, 1 to 4, which emitterCategory() is a part of; 0
    /// before the first.
    u8 identityTypeCode = 0;
};

} // namespace tolvarin::ondrel::client
