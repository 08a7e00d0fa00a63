#include "apps/display/aircraft_data.h"

#include "apps/display/aircraft_columns.h"

#include "simulator/cpr_encoder.h"
#include "simulator/frame_encoder.h"
#include "simulator/payload_encoder.h"

#include <ondrel/adsb_tracker.h>
#include <ondrel/mode_s_decoder.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace tolvarin::ondrel::client {

namespace {

constexpr u32 address = 0x4840D6;

std::string position(bool odd) {
    simulator::AirbornePosition position;
    position.altitudeFt = 31000;
    position.odd = odd;
    position.cpr = simulator::encodeCpr(52.25, -3.5, odd, simulator::CprGrid::Airborne);
    position.supplement = true;
    return simulator::df17(address, 5, simulator::airbornePosition(position));
}

std::string velocity() {
    simulator::VelocityFields fields;
    fields.accuracy = 1;
    fields.verticalRateSourceBit = false;
    fields.verticalRateFtMin = -640;
    return simulator::df17(address, 5, simulator::groundVelocity(fields, 300, 400, false));
}

std::string operationalStatus() {
    simulator::OperationalStatus status;
    status.nicSupplementA = true;
    return simulator::df17(address, 5, simulator::operationalStatus(status));
}

/// Fourteen seconds after the first frame, for a receiver on the meridian of Greenwich.
const Showing showing = {14000, 1, GeoPoint{51.5, 0}};

/// The aircraft with the position of the target, as if it had been confirmed, with the set A of
/// emitter categories, and as if all of its motion had been told.
TrackedAircraft confirmed(const ADSBTarget& target) {
    TrackedAircraft aircraft(target);
    if (target.positionValid()) {
        aircraft.position = {{target.latitude(), target.longitude()}, target.positionLastUpdate()};
    }
    aircraft.notes = {4, target.altitudeBaroValid(), target.groundSpeedValid(),
                      target.verticalRateBaroValid(), Baro};
    return aircraft;
}

/// The aircraft that sent these frames at 1000 ms, 2000 ms and so on.
ADSBTarget aircraftOf(const std::vector<std::string>& frames) {
    ModeSDecoder decoder;
    ADSBTracker tracker;
    u64 stamp = 0;
    for (const std::string& frame : frames) {
        stamp += 1000;
        const std::unique_ptr<ModeSMessage> message(
            decoder.decode(ModeSMessage::Downlink, frame, stamp));
        message->setSignalAmplitude(77);
        tracker.procModeSMsg(message.get());
    }
    return tracker.allTargets().front();
}

/// An aircraft that has sent all data that one aircraft can send.
ADSBTarget heardAircraft() {
    const std::string callsign =
        simulator::df17(address, 5, simulator::identification(4, 3, "KLM1023"));
    const std::string allCall = simulator::df11(address, 5, 0);
    const std::string distress = simulator::df5(address, {4, 0, 0}, 07700); // with alert and SPI
    return aircraftOf({
        callsign,
        velocity(), // its NUCr counts as long as the version is 0
        simulator::df5(address, {0, 0, 0}, 01234),
        allCall,
        allCall, // the first one is not believed
        operationalStatus(),
        velocity(),
        distress,
        distress,
        callsign,
        position(false),
        position(true),
    });
}

TEST(AircraftData, ShowWhatWasSentAndWhen) {
    struct Row {
        std::string_view key;
        std::string_view text; ///< empty: never received
        bool valid;
        u64 lastUpdate;
        std::optional<u64> lastChange; ///< nothing: changes are not kept
    };
    const Row rows[] = {
        {"callsign", "KLM1023", true, 10000, 1000},
        {"category", "A3 large", true, 10000, 1000},
        {"squawk", "7700", true, 9000, 8000},
        {"emergency", "general emergency", true, 9000, {}},
        {"ground_status", "air", true, 12000, 11000},
        {"spi", "yes", true, 9000, 8000},
        {"alert", "yes", true, 9000, 8000},
        {"capability", "5", true, 5000, {}},
        {"mops_version", "2", true, 6000, 6000},
        {"mops_version_confirmed", "yes", true, 6000, 6000},
        {"latitude", "52.249999", true, 12000, {}},
        {"longitude", "-3.500009", true, 12000, {}},
        {"distance_nm", "137.2", true, 12000, {}},
        {"altitude_ft", "31000", true, 12000, {}},
        {"altitude_source", "baro", true, 12000, {}},
        {"ground_speed_kt", "500.0", true, 7000, {}},
        {"track_deg", "36.9", true, 7000, {}},
        {"vertical_rate_ft_min", "-640", true, 7000, {}},
        {"sites", "", false, 0, {}},
        {"signal_amplitude", "77", true, 12000, {}},
        {"nucp", "7", true, 12000, 11000},
        {"nucr", "1", false, 2000, 2000},
        {"nic", "9", true, 12000, 11000},
        {"nic_supplement_a", "yes", true, 6000, {}},
        {"nic_supplement_b", "yes", true, 12000, {}},
        {"pic", "12", true, 12000, 11000},
        {"nacp", "", false, 0, 0},
        {"sil", "", false, 0, 0},
    };
    const std::vector<AircraftDatum> data = dataOf(confirmed(heardAircraft()), showing);
    ASSERT_EQ(data.size(), std::size(rows));
    for (std::size_t i = 0; i < data.size(); ++i) {
        const AircraftDatum& datum = data[i];
        const Row& row = rows[i];
        EXPECT_EQ(datum.key, row.key);
        EXPECT_EQ(datum.known() ? datum.value.text : "", row.text) << row.key;
        EXPECT_EQ(datum.valid, row.valid) << row.key;
        EXPECT_EQ(datum.lastUpdate, row.lastUpdate) << row.key;
        EXPECT_EQ(datum.lastChange, row.lastChange) << row.key;
    }
}

TEST(AircraftData, LeaveOutWhatWasNotTold) {
    TrackedAircraft aircraft = confirmed(heardAircraft());
    const auto unknown = [&aircraft] {
        std::string keys;
        for (const AircraftDatum& datum : dataOf(aircraft, showing)) {
            keys += datum.group == "Motion" && !datum.known() ? std::string(datum.key) + " " : "";
        }
        for (const AircraftColumn& column : aircraftColumns()) {
            keys += column.cell(aircraft, showing) ? "" : "/" + std::string(column.key);
        }
        return keys;
    };
    EXPECT_EQ(unknown(), "");
    aircraft.notes.altitudeTold = false;
    EXPECT_EQ(unknown(), "altitude_ft altitude_source /altitude");
    aircraft.notes = {4, true, false, true, Gnss};
    EXPECT_EQ(unknown(), "ground_speed_kt track_deg /ground_speed/track");
    EXPECT_EQ(dataOf(aircraft, showing)[14].value.text, "gnss");
    aircraft.notes = {4, true, true, false, Gnss};
    EXPECT_EQ(unknown(), "vertical_rate_ft_min /vertical_rate");
}

TEST(AircraftData, TellTheGroundStatusIfItWasTold) {
    struct Row {
        unsigned flightStatus;
        bool told;
        std::string_view text;
    };
    for (const Row& row : {Row{0, true, "air"}, {1, true, "ground"}, {4, false, "unknown"}}) {
        const std::string reply = simulator::df5(address, {row.flightStatus}, 01234);
        const TrackedAircraft aircraft(aircraftOf({operationalStatus(), reply}));
        const AircraftDatum status = dataOf(aircraft, showing)[4];
        EXPECT_EQ(status.known(), row.told);
        EXPECT_EQ(status.value.text, row.text);
        EXPECT_EQ(status.lastUpdate, row.told ? 2000U : 0U);
        EXPECT_EQ(aircraft.groundStatusLastUpdate(), 2000U);
    }
}

/// What another tracker knows of a datum that it got in a report. The interface of
/// ADSBTracker::procTargetReport documents these exceptions.
AircraftDatum expectedAfterReport(const AircraftDatum& sent, const AircraftDatum& unknown,
                                  u64 reportTime) {
    const std::set<std::string_view> notCarried = {"spi", "alert", "capability", "mops_version",
                                                   "mops_version_confirmed"};
    if (sent.group == "Quality" || notCarried.count(sent.key) > 0) {
        return unknown;
    }
    AircraftDatum expected = sent;
    if (sent.key == "squawk") {
        expected.lastChange = 0;
    } else if (sent.key == "ground_status") {
        expected.lastChange = sent.lastUpdate;
    } else if (sent.key == "track_deg") {
        expected.lastUpdate = reportTime;
    }
    return expected;
}

TEST(AircraftData, GoFromOneTrackerToAnotherInAReport) {
    const ADSBTarget sender = heardAircraft();
    const ADSBTargetReport report = sender.report();
    ADSBTracker other;
    const ADSBTarget* receiver = other.procTargetReport(&report);
    ASSERT_NE(receiver, nullptr);
    EXPECT_EQ(receiver->icaoAddr(), address);
    EXPECT_EQ(receiver->lastUpdate(), sender.lastUpdate());
    EXPECT_EQ(receiver->trackId(), sender.trackId());

    const std::vector<AircraftDatum> sent = dataOf(confirmed(sender), showing);
    const std::vector<AircraftDatum> unknown = dataOf(confirmed(ADSBTarget(address)), showing);
    const std::vector<AircraftDatum> received = dataOf(confirmed(*receiver), showing);
    for (std::size_t i = 0; i < sent.size(); ++i) {
        const AircraftDatum expected =
            expectedAfterReport(sent[i], unknown[i], report.lastUpdate());
        EXPECT_EQ(received[i].value.data, expected.value.data) << sent[i].key;
        EXPECT_EQ(received[i].valid, expected.valid) << sent[i].key;
        EXPECT_EQ(received[i].lastUpdate, expected.lastUpdate) << sent[i].key;
        EXPECT_EQ(received[i].lastChange, expected.lastChange) << sent[i].key;
    }
}

} // namespace

} // namespace tolvarin::ondrel::client
