#include "apps/json/report_json.h"

#include "apps/commands/reply_positions.h"
#include "apps/json/aircraft_json.h"
#include "apps/json/map_json.h"
#include "apps/pages/aircraft_page.h"
#include "apps/pages/index_page.h"
#include "apps/terminal/aircraft_text.h"

#include "apps/json/many_replies.h"
#include "apps/json/page_types.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <memory>
#include <random>
#include <string>
#include <string_view>
#include <vector>

namespace tolvarin::ondrel::client {

namespace {

using nlohmann::json;

/// What each getter gives.
std::string everythingOf(const TrackedAircraft& t) {
    const Position position = t.position.value_or(Position{});
    const std::vector<json> lists = {
        {t.icaoAddress(), t.icaoAddressValid(), t.trackId(), t.lastUpdate()},
        {t.callsign(), t.callsignValid(), t.callsignLastUpdate(), t.callsignLastChange()},
        {t.emitterCategory(), t.emitterCategoryValid(), t.emitterCategoryLastUpdate(),
         t.emitterCategoryLastChange()},
        {t.squawk(), t.squawkValid(), t.squawkLastUpdate(), t.squawkLastChange()},
        {t.groundStatus(), t.groundStatusValid(), t.groundStatusLastUpdate(),
         t.groundStatusLastChange()},
        {t.spiStatus(), t.spiStatusValid(), t.spiStatusLastUpdate(), t.spiStatusLastChange()},
        {t.alertStatus(), t.alertStatusValid(), t.alertStatusLastUpdate(),
         t.alertStatusLastChange()},
        {t.capability.value, t.capability.lastUpdate},
        {t.mopsVersion(), t.mopsVersionConfirmed(), t.mopsVersionLastUpdate(),
         t.mopsVersionLastChange()},
        {t.latitude(), t.longitude(), t.positionValid(), t.positionLastUpdate()},
        {t.position.has_value(), position.place.latitude, position.place.longitude,
         position.stampMs},
        {t.altitudeBaro(), t.altitudeBaroValid(), t.altitudeBaroLastUpdate()},
        {t.groundSpeed(), t.groundSpeedValid(), t.groundSpeedLastUpdate()},
        {t.heading(), t.headingValid(), t.headingLastUpdate()},
        {t.verticalRateBaro(), t.verticalRateBaroValid(), t.verticalRateBaroLastUpdate()},
        {t.signalAmplitude(), t.signalAmplitudeValid(), t.signalAmplitudeLastUpdate()},
        {t.notes.identityTypeCode, t.notes.altitudeSource, t.notes.sites, t.notes.altitudeTold,
         t.notes.velocityTold, t.notes.verticalRateTold, t.groundStatusTold},
        {t.nucp(), t.nucpValid(), t.nucpLastUpdate(), t.nucpLastChange()},
        {t.nucr(), t.nucrValid(), t.nucrLastUpdate(), t.nucrLastChange()},
        {t.nic(), t.nicValid(), t.nicLastUpdate(), t.nicLastChange()},
        {t.nicSuppA(), t.nicSuppAValid(), t.nicSuppALastUpdate()},
        {t.nicSuppB(), t.nicSuppBValid(), t.nicSuppBLastUpdate()},
        {t.nicSuppC(), t.nicSuppCValid(), t.nicSuppCLastUpdate()},
        {t.pic(), t.picValid(), t.picLastUpdate(), t.picLastChange()},
        {t.nacp(), t.nacpValid(), t.nacpLastUpdate(), t.nacpLastChange()},
        {t.sil(), t.silValid(), t.silLastUpdate(), t.silLastChange()},
        t.messagesByFormat,
        t.messagesByType,
    };
    std::string text;
    for (const json& list : lists) {
        text += list.dump() + '\n';
    }
    return text;
}

/// Every key, with flags that are not those of the setters, and numbers at the ends of their types.
const std::string everything =
    R"({"schema":1,"address":"4840D6","track_number":4294967295,"last_update_ms":1,)"
    R"("callsign":["KLM 10?3",false,2,3],"category":[7,false,4,5],"identity_type_code":4,)"
    R"("squawk":[4095,false,6,7],"ground_status":[true,false,8,9],"spi":[true,true,10,11],)"
    R"("alert":[true,true,12,13],"capability":[7,14],"mops_version":[2,true,15,16],)"
    R"("position":[269.1,-0.1,true,17],"accepted_position":[-90.0,180.0,18],)"
    R"("altitude_ft":[-2147483648,false,19],"altitude_source":1,"sites":3,)"
    R"("ground_speed_kt":[0.30000000000000004,false,20],"track_deg":[359.9,false,21],)"
    R"("vertical_rate_ft_min":[2147483647,false,22],"signal_amplitude":[200,false,23],)"
    R"("told":[true,false,true,true],"nucp":[9,true,24,25],"nucr":[7,true,26,27],)"
    R"("nic":[11,true,28,29],"nic_supplement_a":[true,true,30],)"
    R"("nic_supplement_b":[false,true,31],"nic_supplement_c":[true,false,32],)"
    R"("pic":[14,true,33,34],"nacp":[10,true,35,36],"sil":[3,true,37,18446744073709551615],)"
    R"("messages_by_format":[1,0,0,0,2],"messages_by_type":[0,0,0,0,0,0,0,0,4294967295]})";

const std::string everythingOfIt = R"([4735190,true,4294967295,1]
["KLM 10?3",false,2,3]
[7,false,4,5]
[4095,false,6,7]
[true,false,8,9]
[true,true,10,11]
[true,true,12,13]
[7,14]
[2,true,15,16]
[269.1,-0.1,true,17]
[true,-90.0,180.0,18]
[-2147483648,false,19]
[0.30000000000000004,false,20]
[359.9,false,21]
[2147483647,false,22]
[200,false,23]
[4,1,3,true,false,true,true]
[9,true,24,25]
[7,true,26,27]
[11,true,28,29]
[true,true,30]
[false,true,31]
[true,false,32]
[14,true,33,34]
[10,true,35,36]
[3,true,37,18446744073709551615]
[1,0,0,0,2,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0]
[0,0,0,0,0,0,0,0,4294967295]
)";

TEST(ReportMessage, CarriesEveryDatum) {
    const auto aircraft = reportFromMessage(everything);
    ASSERT_TRUE(aircraft);
    EXPECT_EQ(everythingOf(*aircraft), everythingOfIt);
    EXPECT_EQ(json::parse(reportMessage(*aircraft)), json::parse(everything));
}

TEST(ReportMessage, LeavesOutWhatIsNotKnown) {
    const TrackedAircraft aircraft{ADSBTarget(0x4840D6)};
    EXPECT_EQ(reportMessage(aircraft), R"({"address":"4840D6","schema":1})");
    const auto read = reportFromMessage(R"({"schema":1,"address":"4840d6","other":[[{}]]})");
    ASSERT_TRUE(read);
    EXPECT_EQ(everythingOf(*read), everythingOf(aircraft));
}

TEST(ReportMessage, CarriesTrackedAircraftWithTheKeysOfThePage) {
    const QuietLog quiet;
    Types page = typesOfPage("reports.md")["Keys"];
    const json all = json::parse(everything);
    Types types;
    for (const auto& item : all.items()) {
        types[item.key()] = item.value().is_array()    ? "list"
                            : item.value().is_string() ? "text"
                                                       : "number";
    }
    EXPECT_EQ(page, types);

    ModeSDecoder decoder;
    Stamping stamping([](const std::string&) {});
    Tracking tracking(std::nullopt);
    std::size_t carried = 0;
    u64 count = 0;
    for (Reply& reply : manyReplies()) {
        stamping.stamp(reply);
        tracking.moveTo(stamping.now());
        tracking.take(decodeReply(decoder, reply).get());
        if (++count % 1000 != 0) {
            continue;
        }
        for (const TrackedAircraft& aircraft : tracking.aircraft()) {
            const std::string message = reportMessage(aircraft);
            const auto read = reportFromMessage(message);
            ASSERT_TRUE(read) << message;
            EXPECT_EQ(everythingOf(*read), everythingOf(aircraft)) << message;
            const json form = json::parse(message);
            for (const auto& item : form.items()) {
                EXPECT_EQ(page.count(item.key()), 1U) << item.key();
            }
            ++carried;
        }
    }
    EXPECT_GT(carried, 500U);
}

/// A message with this behind its address.
std::string with(const std::string& members) {
    return R"({"schema":1,"address":"4840D6",)" + members + "}";
}

TEST(ReportMessage, GivesNothingOfAnythingElse) {
    ASSERT_TRUE(reportFromMessage(with(R"("nic":[1,true,2,3])")));
    const std::string digits(400, '9');
    const std::string messages[] = {
        "",
        "null",
        "[]",
        R"("text")",
        std::string(8192, '['),
        "{\"\xFF\":1}",
        R"({"address":"4840D6"})",
        R"({"schema":2,"address":"4840D6"})",
        R"({"schema":"1","address":"4840D6"})",
        R"({"schema":1})",
        R"({"schema":1,"address":4735190})",
        R"({"schema":1,"address":"4840D"})",
        R"({"schema":1,"address":"4840D6 "})",
        R"({"schema":1,"address":"4840DG"})",
        R"({"schema":1,"address":"-840D6"})",
        R"({"schema":1,"address":"000000"})",
        with(R"("track_number":4294967296)"),
        with(R"("last_update_ms":-1)"),
        with(R"("last_update_ms":18446744073709551616)"),
        with(R"("last_update_ms":1.5)"),
        with(R"("nic":1)"),
        with(R"("nic":[1,true,2])"),
        with(R"("nic":[1,true,2,3,4])"),
        with(R"("nic":{"0":1,"1":true,"2":2,"3":3})"),
        with(R"("nic":[256,true,2,3])"),
        with(R"("nic":[-1,true,2,3])"),
        with(R"("nic":[1,1,2,3])"),
        with(R"("nic":[[1],true,2,3])"),
        with(R"("altitude_ft":[2147483648,true,1])"),
        with(R"("altitude_ft":[-2147483649,true,1])"),
        with(R"("altitude_ft":[9223372036854775808,true,1])"),
        with(R"("ground_speed_kt":[null,true,1])"),
        with(R"("ground_speed_kt":[1e999,true,1])"),
        with(R"("ground_speed_kt":[)" + digits + ",true,1]"),
        with(R"("callsign":["KLM102345",true,1,1])"),
        with(R"("callsign":["<b>",true,1,1])"),
        with(R"("callsign":["\u001b[2J",true,1,1])"),
        with(R"("callsign":["\u0000",true,1,1])"),
        with(R"("mops_version":[4,true,1,1])"),
        with(R"("mops_version":[-1,true,1,1])"),
        with(R"("altitude_source":2)"),
        with(R"("identity_type_code":5)"),
        with(R"("category":[8,true,1,1])"),
        with(R"("accepted_position":[90.1,0,1])"),
        with(R"("accepted_position":[0,-180.1,1])"),
        with(R"("accepted_position":[0,0])"),
        with(R"("messages_by_type":[1,1,1,1,1,1,1,1,1,1])"),
        with(R"("messages_by_type":[true])"),
        with("\"other\":\"" + std::string(8192, ' ') + '"'),
    };
    for (const std::string& message : messages) {
        EXPECT_FALSE(reportFromMessage(message)) << message.substr(0, 100);
    }
    for (std::size_t size = 0; size < everything.size(); ++size) {
        EXPECT_FALSE(reportFromMessage(everything.substr(0, size))) << size;
    }
}

TEST(ReportMessage, CanBeShownHoweverItIsDamaged) {
    std::mt19937 random(1); // NOLINT(cert-msc32-c,cert-msc51-cpp): the same damage in every run
    const Showing showing = {1000, 1, GeoPoint{50, 8}};
    const TrackHistory history;
    std::size_t read = 0;
    for (int i = 0; i < 1000; ++i) {
        std::string message = everything;
        for (auto changes = random() % 3 + 1; changes > 0; --changes) {
            message[random() % message.size()] = "0123456789-.,eE\"[]{}tn "[random() % 23];
        }
        if (const auto aircraft = reportFromMessage(message)) {
            ++read;
            const auto again = reportFromMessage(reportMessage(*aircraft));
            ASSERT_TRUE(again) << message;
            EXPECT_EQ(everythingOf(*again), everythingOf(*aircraft)) << message;
            const std::vector<TrackedAircraft> alone = {*aircraft};
            EXPECT_NE(aircraftReport(*aircraft, showing, TextStyle{}), "");
            EXPECT_NE(aircraftTable(alone, showing, TextStyle{}), "");
            EXPECT_NE(aircraftJson(*aircraft, showing, false).dump(), "");
            EXPECT_NE(aircraftMapJson(alone, showing, 1), "");
            EXPECT_NE(indexPage({"", showing, alone, history}).body, "");
            EXPECT_NE(aircraftPage(*aircraft, showing, history).body, "");
            EXPECT_NE(aircraft->toHtml(""), "");
        }
    }
    EXPECT_GT(read, 100U);
}

} // namespace

} // namespace tolvarin::ondrel::client
