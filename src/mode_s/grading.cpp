#include "grading.h"

namespace tolvarin::ondrel {

namespace {

using Seconds = Grading::Seconds;

constexpr Seconds addressTimeout = 600;
constexpr Seconds interrogatorTimeout = 60;
constexpr u32 interrogatorThreshold = 10; // replies that make an interrogator reliable

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

    const bool vouchedFor = interrogatorRecent && known->second.hitCount >= interrogatorThreshold;
    if (!addressRecent && !vouchedFor) {
        return ModeSMessage::None;
    }
    if (proved != nullptr) {
        *proved = now;
    } else {
        refresh(address, now);
    }
    InterrogatorRecord& record = _interrogators[interrogator];
    record.lastSeen = now;
    if (!interrogatorRecent) {
        record.hitCount = 1;
        return ModeSMessage::Low;
    }
    ++record.hitCount;
    const bool reliable = record.hitCount >= interrogatorThreshold || interrogator == 0;
    return !addressRecent || reliable ? ModeSMessage::High : ModeSMessage::Medium;
}

} // namespace tolvarin::ondrel
