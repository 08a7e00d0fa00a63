#pragma once

#include "apps/tracking/position_check.h"

#include <ondrel/adsb_target.h>

#include <optional>
#include <utility>

namespace tolvarin::ondrel::client {

/// An aircraft of the tracker, and the position that the client believes. The target's own one may
/// be false: show `position` in its place.
struct TrackedAircraft : ADSBTarget {
    TrackedAircraft(ADSBTarget target, const std::optional<Position>& accepted)
        : ADSBTarget(std::move(target)), position(accepted) {}

    std::optional<Position> position;
};

} // namespace tolvarin::ondrel::client
