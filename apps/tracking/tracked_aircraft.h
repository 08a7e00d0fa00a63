#pragma once

#include "apps/tracking/position_check.h"

#include <ondrel/adsb_datum.h>
#include <ondrel/adsb_message.h>
#include <ondrel/adsb_target.h>
#include <ondrel/adsb_target_report.h>
#include <ondrel/df_messages.h>
#include <ondrel/types.h>

#include <array>
#include <optional>

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

    u32 sites = 0; ///< of a network that heard the last message; 0: it came from no network
};

/// All that is shown of an aircraft: the report of its target, what the target holds beside its
/// report, and what the client knows beside the target. A plain value, which needs no tracker.
struct TrackedAircraft : ADSBTargetReport {
    /// Nothing is known of it.
    TrackedAircraft() = default;
    explicit TrackedAircraft(const ADSBTarget& target);

    /// Whether the last ground status was told. A flight status of 4 or 5 tells none; the report
    /// has airborne of it.
    bool groundStatusTold = false;

    ADSBDatum<u8> capability; ///< of the transponder, 0 to 7; valid once received

    // How many messages were taken in, by downlink format and by type of payload.
    std::array<u32, DFMessage::DF24 + 1> messagesByFormat{};
    std::array<u32, ADSBMessage::RESERVED + 1> messagesByType{};

    /// The position that the client believes. The report's own one may be false: show this one in
    /// its place.
    std::optional<Position> position;

    MessageNotes notes;

    /// How many messages of all formats were taken in.
    u32 messages() const;

    /// An aircraft that stands still has no track.
    bool hasTrack() const { return notes.velocityTold && groundSpeed() > 0; }
};

} // namespace tolvarin::ondrel::client
