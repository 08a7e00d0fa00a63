#include "apps/json/aircraft_json.h"

#include "apps/display/aircraft_data.h"
#include "apps/tracked_lines.h"

#include <gtest/gtest.h>

namespace tolvarin::ondrel::client {

namespace {

TEST(AircraftJson, HasAllThatIsKnown) {
    const TrackedLines tracked(threeAircraft());
    const auto form =
        aircraftJson(tracked.tracking.aircraft().at(1), {tracked.tracking.now()}, true);
    const auto expected = nlohmann::ordered_json::parse(R"({
        "time_ms": 5300, "address": "4840D6", "track_number": 2, "killed": true,
        "last_update_ms": 5300, "age_ms": 0})");
    for (const auto& item : expected.items()) {
        EXPECT_EQ(form[item.key()], item.value()) << item.key();
    }
    const auto& data = form["data"];
    EXPECT_EQ(data.size(),
              dataOf(tracked.tracking.aircraft().at(1), {tracked.tracking.now()}).size());
    for (const auto& datum : data) {
        EXPECT_EQ(datum["value"].is_null(), !datum["valid"].get<bool>()) << datum;
    }
    EXPECT_EQ(data["callsign"].dump(), R"({"value":"KLM1023","valid":true,)"
                                       R"("last_update_ms":3500,"last_change_ms":3500})");
    EXPECT_EQ(data["squawk"]["value"], "0123");
    EXPECT_EQ(data["ground_status"]["value"], "ground");
    EXPECT_EQ(data["altitude_ft"].dump(), R"({"value":null,"valid":false,"last_update_ms":null})");
    EXPECT_EQ(form["statistics"].dump(),
              R"({"messages":2,"by_format":{"DF-5":1,"DF-17":1},"by_type":{"ACID":1},)"
              R"("last_update_ms":5300})");
}

} // namespace

} // namespace tolvarin::ondrel::client
