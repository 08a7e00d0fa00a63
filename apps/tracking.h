#pragma once

#include "apps/decoded_reply.h"

#include <ondrel/adsb_target.h>
#include <ondrel/adsb_tracker.h>
#include <ondrel/types.h>

#include <optional>
#include <string>
#include <vector>

namespace tolvarin::ondrel::client {

struct AltitudeCheck {
    u32 seconds;
    u32 feet;
};

/// Takes the replies of a recording into a table of aircraft, counts them, and knows what time it
/// is in the recording.
class Tracking {
public:
    explicit Tracking(const std::optional<AltitudeCheck>& check);

    /// Moves the time on to a stamp, unless it is there already.
    void moveTo(u64 stampMs);

    /// The newest stamp.
    u64 now() const { return _now; }

    /// Takes a reply in; gives the aircraft that it updated, if it is believed, until the next
    /// call.
    const ADSBTarget* take(const DecodedReply& decoded);

    /// Removes the aircraft that have not been heard for so long, and gives them.
    std::vector<ADSBTarget> killSilentFor(u64 milliseconds);

    /// Copies of all, by address.
    std::vector<ADSBTarget> aircraft() const { return _tracker.allTargets(); }

    /// The counts as a table in several lines, the last one without its end.
    std::string summary(u64 unreadableLines) const;

private:
    ADSBTracker _tracker;
    u64 _now = 0;
    u64 _replies = 0;
    u64 _tracked = 0;
    u64 _killed = 0;
};

} // namespace tolvarin::ondrel::client
