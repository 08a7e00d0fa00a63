#pragma once

#include "apps/common/reply.h"
#include "apps/input/replay.h"
#include "apps/tracking/geo_point.h"
#include "apps/tracking/tracking.h"

#include <ondrel/df_messages.h>

#include <optional>
#include <string>

namespace tolvarin::ondrel::client {

/// Solves positions from the replies of a run, in the time of their stamps. For each reply, call
/// stamp(), decode it, and call take().
class ReplyPositions {
public:
    /// `report` is called when something first happens that users should know.
    explicit ReplyPositions(const Stamping::Report& report)
        : _report([report](const std::string& message) { report("positions: " + message); }),
          _stamping(_report), _tracking(std::nullopt) {}

    /// Gives the reply the stamp with which it is to be decoded.
    void stamp(Reply& reply) {
        _stamped = _stamping.stamp(reply);
        _tracking.moveTo(_stamping.now());
    }

    /// Where the message says that its aircraft is, if it completes a pair and the aircraft can
    /// have flown there. Null for a refused reply.
    std::optional<GeoPoint> take(const DFMessage* message);

private:
    Stamping::Report _report;
    Stamping _stamping;
    Tracking _tracking;
    bool _stamped = false;
    bool _saidClock = false;
};

} // namespace tolvarin::ondrel::client
