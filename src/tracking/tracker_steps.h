/// @file
/// Steps of the tracker that only its own sources use. They stand in a nested class, which may use
/// the private operations of tracker and target.
#pragma once

#include <ondrel/adsb_tracker.h>
#include <ondrel/types.h>

namespace tolvarin::ondrel {

/// `create...` can add a target; `take...`, `set...` and `update...` change the given one.
struct ONDREL_HIDDEN ADSBTracker::Steps {
    // reply_processing.cpp

    /// The target of a reply that is believed, created if there is none. Sets its last update. Null
    /// if the reply is null or not believed, or the table is full.
    static ADSBTarget* createTargetIfBelieved(ADSBTracker& tracker, const DFMessage* message);

    // One step for each pair of formats with the same data: DF-0 and 16, DF-4 and 20, DF-5 and 21.

    template <class Message>
    static const ADSBTarget* takeAirAirReply(ADSBTracker& tracker, const Message* message);
    template <class Message>
    static const ADSBTarget* takeAltitudeReply(ADSBTracker& tracker, const Message* message);
    template <class Message>
    static const ADSBTarget* takeIdentityReply(ADSBTracker& tracker, const Message* message);

    static void setFlightStatus(ADSBTarget& target, const ModeSMessageFieldFS& field, u64 time);

    // squitter_processing.cpp

    /// Gives the payload to the step of its type; a type without a step changes nothing.
    static void takePayload(ADSBTracker& tracker, ADSBTarget* target, const ADSBMessage* message);

    /// Confirms version 0, or sets it back to assumed. Runs before the squitter itself is counted.
    static void updateMOPSVersion0Certainty(ADSBTarget& target, u64 time);

    // report_transfer.cpp

    static void takeIdentity(ADSBTarget& target, const ADSBTargetReport& report);
    static void takeMotion(const ADSBTracker& tracker, ADSBTarget& target,
                           const ADSBTargetReport& report);
};

} // namespace tolvarin::ondrel
