// The rules by which recent replies make the next one believable. Times are seconds of the system
// clock, which the caller reads once for each reply.

#include "grading.h"

namespace tolvarin::ondrel {

namespace {

using Seconds = Grading::Seconds;

// In seconds of the system clock. The time stamps of the replies play no part.
constexpr Seconds addressTimeout = 600;
constexpr Seconds interrogatorTimeout = 60;
constexpr u32 interrogatorThreshold = 10; // replies that make an interrogator reliable

/// Exactly `timeout` seconds later an entry is still recent.
bool isRecent(Seconds second, Seconds timeout, Seconds now) {
    return second + timeout >= now;
}

} // namespace

ModeSMessage::Confidence Grading::gradeByAddress(u32 address, Seconds now) {
    Seconds* proved = _icaoAddresses.find(address);
    if (proved == nullptr || !isRecent(*proved, addressTimeout, now)) {
        return ModeSMessage::Low;
    }
    *proved = now;
    return ModeSMessage::High;
}

ModeSMessage::Confidence Grading::gradeAllCall(u32 address, u32 interrogator, Seconds now) {
    Seconds* proved = _icaoAddresses.find(address);
    const bool addressRecent = proved != nullptr && isRecent(*proved, addressTimeout, now);
    const auto known = _interrogators.find(interrogator);
    const bool interrogatorRecent =
        known != _interrogators.end() && isRecent(known->second.lastSeen, interrogatorTimeout, now);

    // Random bits give a valid identifier in about one reply of 200000, and any address with it. So
    // an unknown address needs an interrogator that is already reliable. Otherwise nothing is
    // learnt, and the run of the interrogator is not extended.
    const bool wasReliable = interrogatorRecent && known->second.hitCount >= interrogatorThreshold;
    if (!addressRecent && !wasReliable) {
        return ModeSMessage::None;
    }
    // A reply makes at most one new entry: an unknown address needs a reliable interrogator, which
    // has one. So if memory runs out, nothing has been learnt.
    InterrogatorRecord& record = _interrogators[interrogator];
    if (proved != nullptr) {
        *proved = now;
    } else {
        refresh(address, now);
    }
    record.lastSeen = now;
    if (!interrogatorRecent) { // a new run begins
        record.hitCount = 1;
        return ModeSMessage::Low;
    }
    ++record.hitCount;
    // Identifier 0 is that of acquisition squitters, which an aircraft sends unasked. It needs no
    // run to give High for a known address.
    const bool isReliable = record.hitCount >= interrogatorThreshold || interrogator == 0;
    return !addressRecent || isReliable ? ModeSMessage::High : ModeSMessage::Medium;
}

} // namespace tolvarin::ondrel
