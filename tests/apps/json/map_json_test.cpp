#include "apps/json/map_json.h"

#include "apps/common/file.h"
#include "apps/json/many_replies.h"
#include "apps/json/page_types.h"
#include "apps/tracked_lines.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <set>
#include <string>
#include <vector>

namespace tolvarin::ondrel::client {

namespace {

using nlohmann::json;

constexpr u64 nowMs = 1700000010500;

std::string at(const std::string& second, const std::string& bytes, int amplitude = 0) {
    return "17000000" + second + "," + hexBytes(bytes) + "," + std::to_string(amplitude);
}

/// The entry of an aircraft that sent these lines; null if it has none.
json entryOf(const std::vector<std::string>& lines, u64 timeMs = nowMs) {
    const TrackedLines tracked(lines);
    const json form = json::parse(aircraftMapJson(tracked.tracking.aircraft(), {timeMs}, 0));
    return form["aircraft"].empty() ? json() : form["aircraft"].front();
}

std::set<std::string> keysOf(const json& form) {
    std::set<std::string> keys;
    for (const auto& item : form.items()) {
        keys.insert(item.key());
    }
    return keys;
}

/// All that an aircraft can tell: a position at 09.0 s, and a squawk after it.
std::vector<std::string> allOfOne() {
    using namespace simulator;
    constexpr u32 sender = 0xABC0DE;
    VelocityFields velocity;
    velocity.verticalRateFtMin = -832;
    const auto position = [&](bool odd) {
        const std::string even("\x58\xC3\x82\xD6\x90\xC8\xAC", 7);
        const std::string other("\x58\xC3\x86\x43\x5C\xC4\x12", 7);
        return df17(sender, 5, odd ? other : even);
    };
    std::vector<std::string> lines = {
        at("00.000", df17(sender, 5, identification(4, 3, "KLM102")), 255),
        at("01.000", df17(sender, 5, groundVelocity(velocity, 300, -400, false))),
        at("08.000", position(false)),
        at("08.500", position(true)),
        at("09.000", position(false), 128),
        at("10.000", df5(sender, {0}, 07421)),
    };
    // Version 0 is confirmed by twenty squitters.
    for (int i = 0; i < 20; ++i) {
        lines.push_back(at("09." + std::to_string(100 + i),
                           df17(sender, 5, identification(4, 3, "KLM102")), 128));
    }
    lines.push_back(lines[5]);
    return lines;
}

// The meaning of each key, for which one aircraft has sent all.
TEST(MapJson, HasEachKeyInTheFormOfTheField) {
    const struct {
        const char* key;
        const char* meaning;
        json value;
    } rows[] = {
        {"hex", "address in six small hexadecimal digits", "abc0de"},
        {"type", "from where the data are: squitters", "adsb_icao"},
        {"flight", "callsign in eight characters", "KLM102  "},
        {"squawk", "Mode A code, four octal digits", "7421"},
        {"category", "emitter category: set A, number 3", "A3"},
        {"alt_baro", "barometric altitude in feet", 38000},
        {"gs", "ground speed in knots: 300 east, 400 south", 500.0},
        {"track", "degrees clockwise from north", 143.1},
        {"baro_rate", "feet per minute, negative downward", -832},
        {"lat", "degrees north of the last position", 52.257202},
        {"lon", "degrees east", 3.919373},
        {"seen_pos", "seconds since the position", 1.5},
        {"nic", "integrity of the position, of type code 11", 8},
        {"nac_p", "accuracy of the position, of type code 11", 8},
        {"sil", "integrity level, of type code 11", 2},
        {"version", "MOPS version, confirmed", 0},
        {"rssi", "decibel of the full scale: 20 log10(128 / 255)", -6.0},
        {"messages", "of this aircraft", 27},
        {"seen", "seconds since the last message", 0.5},
    };
    json entry = entryOf(allOfOne());
    for (const auto& row : rows) {
        EXPECT_EQ(entry[row.key], row.value) << row.key << ": " << row.meaning;
        entry.erase(row.key);
    }
    EXPECT_EQ(entry, json::object());
}

TEST(MapJson, LeavesOutWhatIsOld) {
    EXPECT_EQ(keysOf(entryOf(allOfOne(), nowMs + 60000)),
              (std::set<std::string>{"hex", "type", "flight", "squawk", "category", "version",
                                     "messages", "seen"}));
}

TEST(MapJson, LeavesOutWhatIsNotKnown) {
    const std::string known = at("00.000", simulator::df11(address, 5, 0));
    EXPECT_EQ(entryOf({known}), json()); // no all-call makes an aircraft
    // An altitude code of 0, and a velocity with components of 0, tell nothing.
    const json entry = entryOf({
        at("00.000", simulator::df17(address, 5, simulator::identification(4, 0, ""))),
        at("01.000", simulator::df17(address, 5, std::string("\x58\0\0\0\0\0\0", 7))),
        at("02.000", simulator::df17(address, 5, std::string("\x99\0\0\0\0\0\0", 7))),
    });
    for (const char* key : {"flight", "squawk", "alt_baro", "gs", "track", "baro_rate", "lat"}) {
        EXPECT_FALSE(entry.contains(key)) << key;
    }
    EXPECT_EQ(entry["messages"], 3);
    // The lowest altitude that can be told is told.
    EXPECT_EQ(
        entryOf({at("00.000", simulator::df17(address, 5, simulator::identification(4, 0, ""))),
                 at("01.000", simulator::df4(address, {0}, -1000))})["alt_baro"],
        -1000);
}

TEST(MapJson, TellsAircraftOnTheGround) {
    const std::string known =
        at("00.000", simulator::df17(address, 5, simulator::identification(4, 0, "")));
    EXPECT_EQ(entryOf({known, at("01.000", simulator::df4(address, {1}, 300))})["alt_baro"],
              "ground");
    EXPECT_EQ(entryOf({known, at("01.000", simulator::df4(address, {0}, 300))})["alt_baro"], 300);
}

// One position alone may be false.
TEST(MapJson, HasNoPositionThatIsNotAccepted) {
    std::vector<std::string> lines = threeAircraft();
    lines.resize(2);
    const json waiting = entryOf(lines, 2000);
    EXPECT_FALSE(waiting.contains("lat") || waiting.contains("lon") ||
                 waiting.contains("seen_pos"));
    lines.push_back(threeAircraft()[2]);
    EXPECT_TRUE(entryOf(lines, 2000).contains("lat"));
}

// The address proved itself by a DF-18, which is not tracked.
TEST(MapJson, TellsAircraftWithoutSquitters) {
    ModeSDecoder decoder;
    Tracking tracking(std::nullopt);
    decodeReply(decoder, replyOf(at("00.000", simulator::df18(address, 0, airSpeed))));
    const auto reply =
        decodeReply(decoder, replyOf(at("01.000", simulator::df4(address, {0}, 300))));
    tracking.take(reply.get());
    const json form = json::parse(aircraftMapJson(tracking.aircraft(), {nowMs}, 7));
    ASSERT_EQ(form["aircraft"].size(), 1U);
    EXPECT_EQ(form["aircraft"][0]["type"], "mode_s");
    EXPECT_EQ(form["messages"], 7);
    EXPECT_EQ(form["now"], 1700000010.5);
}

TEST(MapJson, HasTheTimeOfTheClockBeforeTheFirstReply) {
    EXPECT_GT(json::parse(aircraftMapJson({}, {0}, 0))["now"], 1.7e9);
}

TEST(MapJson, TellsOfTheReceiver) {
    json form = json::parse(receiverMapJson(GeoPoint{-33.5, 151.25}));
    EXPECT_EQ(form["version"].get<std::string>().substr(0, 7), "ondrel ");
    form.erase("version");
    EXPECT_EQ(form, (json{{"refresh", 1000}, {"history", 0}, {"lat", -33.5}, {"lon", 151.25}}));
    form = json::parse(receiverMapJson(std::nullopt));
    EXPECT_FALSE(form.contains("lat") || form.contains("lon"));
}

TEST(MapJson, HasTheKeysOfThePage) {
    auto page = typesOfPage("outputs.md");
    const auto keysOfPage = [&page](const std::string& heading) {
        std::set<std::string> keys;
        for (const auto& row : page[heading]) {
            keys.insert(row.first);
        }
        return keys;
    };
    const json form = json::parse(aircraftMapJson({}, {nowMs}, 0));
    EXPECT_EQ(keysOf(form), keysOfPage("aircraft.json"));
    EXPECT_EQ(keysOf(entryOf(allOfOne())), keysOfPage("Each aircraft"));
    EXPECT_EQ(keysOf(json::parse(receiverMapJson(GeoPoint{}))), keysOfPage("receiver.json"));
}

} // namespace

} // namespace tolvarin::ondrel::client
