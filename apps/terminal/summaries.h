#pragma once

#include "apps/decoding/decoded_reply.h"
#include "apps/tracking/reported_sky.h"
#include "apps/tracking/tracking.h"

#include <ondrel/types.h>

#include <array>
#include <string>

/// The tables of counts that are printed at the end of a run: several lines, the last one without
/// its end.
namespace tolvarin::ondrel::client {

/// What an input holds beside replies.
struct LeftOut {
    u64 unreadable = 0;     ///< pieces that should hold a reply but cannot be read
    u64 notShown = 0;       ///< of these, the ones whose report was not shown
    u64 modeAC = 0;         ///< Mode A/C replies
    u64 heardElsewhere = 0; ///< replies that another site had too
    u64 ahead = 0;          ///< replies of sites whose clock is wrong
};

/// Counts what a run has decoded.
class DecodeSummary {
public:
    /// `shown`: whether the user sees the reply.
    void count(const DecodedReply& decoded, bool shown = true);

    /// Lists only the formats that occurred, and replies that are not shown only if there are any.
    std::string text(const LeftOut& leftOut) const;

private:
    u64 _replies = 0;
    u64 _notShown = 0;
    u64 _refused = 0;
    u64 _repaired = 0;
    u64 _payloads = 0;
    u64 _payloadsRefused = 0;
    std::array<u64, 25> _byFormat{};    ///< of decoded replies, by DFMessage::DownlinkFormat
    std::array<u64, 4> _byConfidence{}; ///< of decoded replies, by ModeSMessage::Confidence
};

/// What a run of `ondrel track` counted.
struct TrackRunCounts {
    TrackingCounts tracking;
    u64 hidden;        ///< aircraft of the table that were not shown
    u64 doubtedStamps; ///< that were not believed
    u64 refusedStamps; ///< of the other kind than the first one
    u64 unusedStamps;  ///< since the clock stamps
    u64 unstamped;     ///< replies without a stamp in a recording with stamps
    u64 duplicates;    ///< replies that another source had too
    u64 late;          ///< replies that are older than others of their aircraft
    u64 ofOtherParts;  ///< replies of aircraft that another worker tracks
    LeftOut leftOut;
};

std::string trackSummary(const TrackRunCounts& counts);

/// What a run of `ondrel feed` counted.
struct FeedRunCounts {
    u64 replies = 0;    ///< read
    u64 refused = 0;    ///< by the decoder
    u64 ungraded = 0;   ///< of grade None
    u64 duplicates = 0; ///< replies that another source had too
    u64 sent = 0;
    u64 batches = 0; ///< in which they went
    u64 dropped = 0; ///< since the backlog was full
    u64 notSent = 0; ///< until the end
    LeftOut leftOut;
};

std::string feedSummary(const FeedRunCounts& counts);

/// What a run of `ondrel track --view` counted.
struct ViewRunCounts {
    ReportCounts reports;
    u64 aircraft;
    u64 hidden;     ///< aircraft that were not shown
    u64 unreadable; ///< messages that are no reports
};

std::string viewSummary(const ViewRunCounts& counts);

} // namespace tolvarin::ondrel::client
