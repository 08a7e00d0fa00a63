#include "apps/json/aircraft_json.h"

#include "apps/display/aircraft_data.h"
#include "apps/tracked_lines.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace tolvarin::ondrel::client {

namespace {

TEST(AircraftJson, HasAllThatIsKnown) {
    const TrackedLines tracked(threeAircraft());
    const auto form =
        aircraftJson(tracked.tracking.aircraft().at(1), {tracked.tracking.now() + 1500, 7}, true);
    EXPECT_EQ(
        form.dump(),
        R"({"schema":1,"showing":7,"time_ms":6800,"address":"4840D6","track_number":2,)"
        R"("killed":true,"seen":1.5,"last_update_ms":5300,"callsign":"KLM1023","category":"A0",)"
        R"("squawk":"0123","seen_squawk":1.5,"ground_status":"ground","spi":false,"alert":false,)"
        R"("mops_version":0,"mops_version_confirmed":false,)"
        R"("updated_ms":{"callsign":3500,"category":3500,"squawk":5300,"ground_status":5300,)"
        R"("spi":5300,"alert":5300},)"
        R"("changed_ms":{"callsign":3500,"category":3500,"squawk":5300,"ground_status":5300,)"
        R"("spi":5300,"alert":5300},)"
        R"("messages":2,"messages_by_format":{"DF-5":1,"DF-17":1},"messages_by_type":{"ACID":1}})");
}

/// A position, and its age apart from that of the aircraft.
TEST(AircraftJson, DatesPositionAltitudeAndSpeed) {
    std::vector<std::string> lines = threeAircraft();
    const auto one = [&lines](u64 timeMs, const std::string& address) {
        const TrackedLines tracked(lines);
        for (const TrackedAircraft& aircraft : tracked.tracking.aircraft()) {
            auto form = aircraftJson(aircraft, {timeMs}, false);
            if (form["address"] == address) {
                return form;
            }
        }
        return nlohmann::ordered_json();
    };
    const auto placed = one(10000, "40621D");
    EXPECT_EQ(placed["seen_pos"], 8.0);
    EXPECT_EQ(placed["seen_altitude"], 8.0);
    EXPECT_FALSE(placed.contains("seen_speed"));
    EXPECT_NEAR(placed["latitude"].get<double>(), 52.2572, 0.001);
    EXPECT_EQ(placed["updated_ms"]["longitude"], 2000);
    EXPECT_EQ(one(10000, "485020")["seen_speed"], 6.0);
    // the stamp goes back
    EXPECT_EQ(one(1000, "40621D")["seen"], 0.0);

    // A status that is sent on the ground and in the air makes the ground status unknown.
    EXPECT_TRUE(one(10000, "4840D6").contains("ground_status"));
    lines.push_back("9.000," + hexBytes(simulator::df5(0x4840D6, {5}, 07600)));
    const auto unknown = one(10000, "4840D6");
    EXPECT_FALSE(unknown.contains("ground_status"));
    EXPECT_FALSE(unknown["updated_ms"].contains("ground_status"));
    EXPECT_EQ(unknown["emergency"], "radio failure");
}

} // namespace

} // namespace tolvarin::ondrel::client
