/// @file
/// A slow and simple model of the tracker.
#pragma once

#include <ondrel/adsb_target_report.h>
#include <ondrel/df_messages.h>

#include "support/aircraft_model.h"

#include <map>
#include <memory>
#include <vector>

namespace tolvarin::ondrel::test {

/// Copies share their aircraft, as copies of the tracker do.
class TrackerModel {
public:
    using Aircraft = std::shared_ptr<AircraftModel>;

    explicit TrackerModel(ModelRecord& record) : _record(&record) {}

    std::map<u32, Aircraft> aircraft; ///< by address
    AltitudeCheck check;

    /// The aircraft that the reply or the report updates, or null.
    Aircraft take(const DFMessage& message);
    Aircraft take(const ADSBTargetReport& report);

    /// The aircraft whose last update satisfies the condition, in ascending order of address.
    template <class Condition>
    std::vector<Aircraft> those(Condition condition) const {
        std::vector<Aircraft> found;
        for (const auto& entry : aircraft) {
            if (condition(entry.second->data["target"].update)) {
                found.push_back(entry.second);
            }
        }
        return found;
    }

    std::vector<Aircraft> kill(u64 time);
    void reset();

private:
    Aircraft enter(u32 address);

    ModelRecord* _record;
    u32 _nextTrackId = 1;
};

} // namespace tolvarin::ondrel::test
