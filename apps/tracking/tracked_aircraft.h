#pragma once

#include "apps/tracking/position_check.h"

#include <ondrel/adsb_target.h>
#include <ondrel/types.h>

#include <optional>
#include <utility>

namespace tolvarin::ondrel::client {

/// What the messages of an aircraft told beside what its target keeps.
struct MessageNotes {
    /// The type code of the last identification, 1 to 4, which emitterCategory() is a part of; 0
    /// before the first.
    u8 identityTypeCode = 0;

    // Whether the last altitude, ground velocity and vertical rate were told. A code of 0 tells
    // nothing; the target has -1000 ft, 0 kt and 0 ft/min of it.
    bool altitudeTold = false;
    bool velocityTold = false;
    bool verticalRateTold = false;

    AltitudeSource altitudeSource = Baro; ///< of the last altitude
};

/// An aircraft of the tracker, and what the client knows beside it.
struct TrackedAircraft : ADSBTarget {
    TrackedAircraft(ADSBTarget target, const std::optional<Position>& accepted)
        : ADSBTarget(std::move(target)), position(accepted) {}

    /// The position that the client believes. The target's own one may be false: show this one in
    /// its place.
    std::optional<Position> position;

    MessageNotes notes;

    /// An aircraft that stands still has no track.
    bool hasTrack() const { return notes.velocityTold && groundSpeed() > 0; }
};

} // namespace tolvarin::ondrel::client
