/// @file
/// A slow and simple model of what a tracker knows of one aircraft.
#pragma once

#include <ondrel/adsb_airborne_position_message.h>
#include <ondrel/adsb_decoder.h>
#include <ondrel/adsb_target_report.h>

#include "cpr.h"
#include "support/captured_log.h"

#include <map>
#include <string>

namespace tolvarin::ondrel::test {

/// The log lines that models expect, and how often each kind of event occurred in them.
struct ModelRecord {
    CapturedLog log; ///< of library and models; holds the lines of one step at a time
    ADSBDecoder decoder;
    Lines lines;
    std::map<std::string, unsigned> events;

    void say(const std::string& line) { lines.push_back(line); }
    void happened(const std::string& event) { ++events[event]; }
};

/// The check of altitudes, as ADSBTracker::setAltituteBaroChecking sets it.
struct AltitudeCheck {
    bool enabled = false;
    u32 seconds = 4;
    u32 limit = 150;
};

class AircraftModel {
public:
    struct Datum {
        double value = 0;
        u64 update = 0; ///< milliseconds, 0 for never; so is the next
        u64 change = 0;
    };

    explicit AircraftModel(ModelRecord& record) : _record(&record) {}

    std::map<std::string, Datum> data; ///< every datum that is a number, by its name
    std::string callsign;
    bool headingSet = false;

    double& value(const std::string& name) { return data[name].value; }
    int version() { return static_cast<int>(value("version")); }

    void takeSurveillance(const std::string& frame, u64 time, const AltitudeCheck& check);
    void takePayload(const std::string& me, u64 time, const AltitudeCheck& check);
    void takeReport(const ADSBTargetReport& report, const AltitudeCheck& check);

private:
    struct Frame {
        cpr::Frame cpr = {0, 0};
        u64 stamp = 0;
    };

    void takeFlightStatus(u64 status, u64 time);
    void takeStatusOfVersion(const std::string& me, u64 time);
    void takePosition(const ADSBAirbornePositionMessage& message, u64 time,
                      const AltitudeCheck& check);
    void solve();
    void judgeVersion0(u64 time);
    void count(const std::string& counter, u64 time);

    void set(const std::string& name, double value, u64 time);
    void setTracked(const std::string& name, double value, u64 time);
    void setAndTell(const std::string& name, const char* line, double value, u64 time);
    void setSquawk(u32 squawk, u64 time);
    void setCallsign(const std::string& newCallsign, u64 time);
    void setCategory(u32 category, u64 time);
    void setGroundStatus(int status, u64 time);
    void setAltitude(i32 altitude, u64 time, const AltitudeCheck& check);
    void setConfirmed(bool confirmed, u64 time);
    void setQuality(u8 typeCode, u64 time);

    ModelRecord* _record;
    Frame _even;
    Frame _odd;
};

} // namespace tolvarin::ondrel::test
