#include "support/tracker_model.h"

#include "support/bytes.h"

#include <algorithm>
#include <string>

namespace tolvarin::ondrel::test {

TrackerModel::Aircraft TrackerModel::take(const DFMessage& message) {
    const std::string& frame = message.data();
    const u64 format = bitsOf(frame, 0, 5);
    if (format == 18 || format == 19) {
        _record->say("[WARNING ][ADSBTracker] Unsupported DF-" + std::to_string(format) +
                     " message detected.");
        return nullptr;
    }
    if (message.confidence() < (format == 17 ? ModeSMessage::High : ModeSMessage::Medium)) {
        return nullptr;
    }
    if (format == 11 && aircraft.count(message.icaoAddress()) == 0) {
        _record->happened("all-call reply of an unknown address");
        return nullptr;
    }
    const Aircraft craft = enter(message.icaoAddress());
    const u64 time = message.timeStamp();
    craft->data["target"].update = time;
    if (format == 17) {
        craft->data["amplitude"] = {static_cast<double>(message.signalAmplitude()), time, 0};
        craft->takePayload(frame.substr(4, 7), time, check);
    } else {
        craft->takeSurveillance(frame, time, check);
    }
    return craft;
}

TrackerModel::Aircraft TrackerModel::take(const ADSBTargetReport& report) {
    if (report.lastUpdate() == 0 || !report.icaoAddressValid()) {
        _record->happened("report that is not valid");
        return nullptr;
    }
    const Aircraft craft = enter(report.icaoAddress());
    craft->takeReport(report, check);
    return craft;
}

std::vector<TrackerModel::Aircraft> TrackerModel::kill(u64 time) {
    const auto killed = those([time](u64 update) { return update <= time; });
    for (const Aircraft& craft : killed) {
        const auto trackId = static_cast<u32>(craft->value("target"));
        _record->say("[DEBUG   ][ADSBTracker] Target #" + std::to_string(trackId) + " killed.");
        aircraft.erase(static_cast<u32>(craft->value("address")));
    }
    return killed;
}

void TrackerModel::reset() {
    aircraft.clear();
    _nextTrackId = 1;
}

/// Makes an aircraft for a new address. It gets the next track number that is free.
TrackerModel::Aircraft TrackerModel::enter(u32 address) {
    if (aircraft.count(address) != 0) {
        return aircraft[address];
    }
    for (bool taken = true; taken; _nextTrackId += taken ? 1 : 0) {
        _nextTrackId = _nextTrackId > 4095 ? 1 : _nextTrackId;
        taken = std::any_of(aircraft.begin(), aircraft.end(), [this](const auto& entry) {
            return entry.second->value("target") == _nextTrackId;
        });
        _record->happened(taken ? "track number in use" : "free track number");
    }
    Aircraft& craft = aircraft[address] = std::make_shared<AircraftModel>(*_record);
    craft->value("address") = address;
    craft->value("target") = _nextTrackId++;
    return craft;
}

} // namespace tolvarin::ondrel::test
