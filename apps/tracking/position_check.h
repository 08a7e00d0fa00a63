#pragma once

#include "apps/tracking/geo_point.h"

#include <ondrel/types.h>

#include <optional>
#include <vector>

namespace tolvarin::ondrel::client {

/// Where an aircraft was, and when.
struct Position {
    GeoPoint place;
    u64 stampMs;
};

struct PositionCounts {
    u64 checked;
    u64 refused;     ///< of these
    u64 unconfirmed; ///< aircraft whose only position waits for a second one
};

/// Accepts the positions that an aircraft can have flown to. Two positions agree if they are apart
/// by no more than one nautical mile and the way that the greatest speed allows in the time between
/// them, of which at most ten minutes count.
///
/// A position is accepted if it agrees with the last accepted one, or if it is the third in a row
/// that do not, but agree with each other. The first position of an aircraft waits for a second one
/// that agrees. Latitudes beyond the poles are refused.
///
/// A false position comes from a pair of messages of which one is old or damaged. The next message
/// of the same format, even or odd, makes a pair with the same old message, which is false in the
/// same way. So positions confirm each other only if their formats alternate.
class PositionCheck {
public:
    static constexpr double usualKnots = 2000;

    enum class Verdict {
        Waiting,   ///< the first one, which waits for others
        Refused,   ///< it does not agree
        Accepted,  ///< it does
        Overruled, ///< it is accepted, and those accepted before were false
    };

    explicit PositionCheck(double greatestKnots = usualKnots) : _greatestKnots(greatestKnots) {}

    /// Checks the next position of an aircraft; `odd` is the format of its newer message.
    Verdict check(u32 trackNumber, const Position& position, bool odd);

    /// The last accepted position.
    std::optional<Position> positionOf(u32 trackNumber) const;

    /// For an aircraft that is removed: its number will be that of another one.
    void forget(u32 trackNumber);

    PositionCounts counts() const;

private:
    /// Positions that agree with each other but were not accepted yet.
    struct Candidate {
        Position last;
        bool odd;
        unsigned agreeing;
    };
    struct Record {
        std::optional<Position> accepted;
        std::optional<Candidate> candidate;
    };

    bool agree(const Position& one, const Position& other) const;
    Verdict judge(Record& record, const Position& position, bool odd) const;

    double _greatestKnots;
    std::vector<Record> _records; ///< by track number
    u64 _checked = 0;
    u64 _refused = 0;
};

} // namespace tolvarin::ondrel::client
