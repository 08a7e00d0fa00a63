#include "tracked_lines.h"

#include "apps/common/text.h"
#include "apps/display/aircraft_columns.h"
#include "apps/json/aircraft_json.h"
#include "apps/terminal/aircraft_text.h"
#include "apps/terminal/summaries.h"

#include "simulator/frame_encoder.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace tolvarin::ondrel::client {

namespace {

// Examples that the public literature on Mode S prints: a position in two messages, an
// identification and a velocity. Then what only an aircraft known before can say.
const std::vector<std::string> lines = {
    "1.000,8D40621D58C386435CC412692AD6",
    "2.000,8D40621D58C382D690C8AC2863A7",
    "3.500,8D4840D6202CC371C32CE0576098",
    "4.000,8D485020994409940838175B284F",
    "5.300," + hexBytes(simulator::df5(0x4840D6, {1}, 0123)),
};

TEST(AircraftTable, showsWhatIsKnown) {
    const TrackedLines tracked(lines);
    const u64 now = tracked.tracking.now();
    EXPECT_EQ(aircraftTable(tracked.tracking.aircraft(), now), std::string(R"(
address  callsign  squawk  altitude  speed  heading  vertical  latitude  longitude  status  MOPS  NIC  PIC  messages  age
                                 ft     kt      deg    ft/min       deg        deg                                      s
40621D   -         -          38000      -        -         -  52.25720    3.91937  air     0?      8   11         2  3.3
4840D6   KLM1023   0123           -      -        -         -         -          -  ground  0?      -    -         2  0.0
485020   -         -              -    159      183      -832         -          -  -       0?      -    -         1  1.3
)")
                                                                   .substr(1));
}

TEST(AircraftColumns, sortWithTheInvalidOnesLast) {
    struct Row {
        std::string key;
        bool descending;
        std::vector<u32> order;
    };
    const TrackedLines tracked(lines);
    for (const Row& row : std::vector<Row>{
             {"address", true, {0x485020, 0x4840D6, 0x40621D}},
             {"callsign", false, {0x4840D6, 0x40621D, 0x485020}},
             {"callsign", true, {0x4840D6, 0x40621D, 0x485020}},
             {"rate", true, {0x485020, 0x40621D, 0x4840D6}},
             {"status", true, {0x4840D6, 0x40621D, 0x485020}},
             {"messages", false, {0x485020, 0x40621D, 0x4840D6}},
             {"age", false, {0x4840D6, 0x485020, 0x40621D}},
         }) {
        auto aircraft = tracked.tracking.aircraft();
        sortAircraft(aircraft, tracked.tracking.now(), aircraftColumn(row.key), row.descending);
        std::vector<u32> order;
        for (const ADSBTarget& one : aircraft) {
            order.push_back(one.icaoAddr());
        }
        EXPECT_EQ(order, row.order) << row.key << row.descending;
    }
}

TEST(AircraftJson, hasAllThatIsKnown) {
    const TrackedLines tracked(lines);
    const auto form = aircraftJson(tracked.tracking.aircraft().at(1), tracked.tracking.now(), true);
    const auto expected = nlohmann::ordered_json::parse(R"({
        "time_ms": 5300, "address": "4840D6", "track_number": 2, "killed": true,
        "last_update_ms": 5300, "age_ms": 0})");
    for (const auto& item : expected.items()) {
        EXPECT_EQ(form[item.key()], item.value()) << item.key();
    }
    const auto& data = form["data"];
    EXPECT_EQ(data.size(), 25U);
    for (const auto& datum : data) {
        EXPECT_EQ(datum["value"].is_null(), !datum["valid"].get<bool>()) << datum;
    }
    EXPECT_EQ(data["callsign"].dump(), R"({"value":"KLM1023","valid":true,)"
                                       R"("last_update_ms":3500,"last_change_ms":3500})");
    EXPECT_EQ(data["squawk"]["value"], "0123");
    EXPECT_EQ(data["ground_status"]["value"], "ground");
    EXPECT_EQ(data["altitude"].dump(), R"({"value":null,"valid":false,"last_update_ms":null})");
    EXPECT_EQ(form["statistics"].dump(),
              R"({"messages":2,"by_format":{"DF-5":1,"DF-17":1},"by_type":{"ACID":1},)"
              R"("last_update_ms":5300})");
}

TEST(Tracking, countsAndKills) {
    TrackedLines tracked(lines);
    EXPECT_TRUE(tracked.tracking.killSilentFor(3301).empty());
    EXPECT_TRUE(tracked.tracking.killSilentFor(100000).empty()); // longer than the recording
    const auto killed = tracked.tracking.killSilentFor(3300);
    ASSERT_EQ(killed.size(), 1U);
    EXPECT_EQ(killed.front().icaoAddr(), 0x40621DU);
    tracked.tracking.moveTo(1); // time does not go back
    EXPECT_EQ(tracked.tracking.now(), 5300U);
    EXPECT_EQ(trackSummary(tracked.tracking.counts(), 3),
              "replies read                  5\n"
              "  tracked                     5  100.0 %\n"
              "aircraft                      2\n"
              "killed                        1\n"
              "lines not readable            3");
}

TEST(Numbers, haveNoNegativeZeroAndTellTheTime) {
    EXPECT_EQ(decimalText(-0.04, 1), "0.0");
    EXPECT_EQ(decimalText(-0.06, 1), "-0.1");
    EXPECT_EQ(decimalText(-0.0, 0), "0");
    EXPECT_EQ(timeText(1641427457080), "2022-01-06T00:04:17.080Z");
    EXPECT_EQ(timeText(23456248059), "23456248.059"); // as far as the counter goes
    EXPECT_EQ(timeText(23456248060), "1970-09-29T11:37:28.060Z");
    EXPECT_NE(timeText(~u64{0}), "");
}

} // namespace

} // namespace tolvarin::ondrel::client
