#include "apps/tracking/tracked_aircraft.h"

#include <cstddef>
#include <numeric>

namespace tolvarin::ondrel::client {

TrackedAircraft::TrackedAircraft(const ADSBTarget& target)
    : ADSBTargetReport(target.report()),
      groundStatusTold(target.groundStatusValid() &&
                       target.groundStatus() != ADSBTarget::GroundStatusUnknown),
      capability{target.transponderCommCapability(), target.transponderCommCapabilityLastUpdate()} {
    for (std::size_t i = 0; i < messagesByFormat.size(); ++i) {
        messagesByFormat[i] = target.statisticDfMsgCount(static_cast<DFMessage::DownlinkFormat>(i));
    }
    for (std::size_t i = 0; i < messagesByType.size(); ++i) {
        messagesByType[i] =
            target.statisticADSBMsgCount(static_cast<ADSBMessage::ADSBMessageType>(i));
    }
}

u32 TrackedAircraft::messages() const {
    return std::accumulate(messagesByFormat.begin(), messagesByFormat.end(), u32{0});
}

} // namespace tolvarin::ondrel::client
