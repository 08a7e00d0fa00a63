#include "apps/json/reply_json.h"

#include "apps/json/many_replies.h"

#include <ondrel/adsb_airborne_velocity_message.h>

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <cstddef>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace tolvarin::ondrel::client {

namespace {

using nlohmann::json;

std::string lineOf(const DecodedReply& decoded, const ReplyJsonExtras& extras = {}) {
    std::string text;
    appendReplyJson(text, decoded, extras);
    return text;
}

TEST(ReplyJson, IsOneLine) {
    EXPECT_EQ(lineOf(decodedLast({"1.5," + oneBitWrong}), {GeoPoint{52.25, -3.5}}),
              R"({"schema":1,"stamp_ms":1500,"format":"DF-17","refused":false,)"
              R"("received":"8D40621D59C382D690C8AC2863A7","address":"40621D",)"
              R"("confidence":"High","repaired":true,"data":"8D40621D58C382D690C8AC2863A7",)"
              R"("capability":5,"me":"58C382D690C8AC","type":"POS_AIR","type_code":11,)"
              R"("mops_version":0,"altitude_ft":38000,"altitude_step_ft":25,)"
              R"("altitude_source":"baro","single_antenna":false,"utc_synchronised":false,)"
              R"("cpr_format":"even","cpr_latitude":93000,"cpr_longitude":51372,)"
              R"("latitude":52.25,"longitude":-3.5})"
              "\n");
    EXPECT_EQ(lineOf(decodedLast({"999999999999.999," + beyondRepair}), {GeoPoint{1, 2}, true}),
              R"({"schema":1,"stamp_ms":999999999999999,"format":"DF-17","refused":true,)"
              R"("received":"8D40621D58C382D690C8AC2863A6"})"
              "\n");
}

TEST(ReplyJson, HasTheBitFieldsIfTheyAreWanted) {
    const auto form = json::parse(lineOf(decodedLast({squitter(announcement(2))}), {{}, true}));
    EXPECT_EQ(form["fields"], json::parse(R"([
        {"name": "CA", "pos": 5, "bits": 3, "value": 5, "text": "5"},
        {"name": "AA", "pos": 8, "bits": 24, "value": 4735190, "text": "4840D6"},
        {"name": "ME", "pos": 32, "bits": 56, "text": "F8030000004000"},
        {"name": "PI", "pos": 88, "bits": 24, "value": 4579015, "text": "45DEC7"}
    ])"));
    EXPECT_EQ(form["payload_fields"], json::parse(R"([
        {"name": "TYPE", "pos": 0, "bits": 5, "value": 31, "text": "OP_STATUS"},
        {"name": "TYPE_CODE", "pos": 0, "bits": 5, "value": 31, "text": "31"},
        {"name": "VER_NUM", "pos": 40, "bits": 3, "value": 2, "text": "2"},
        {"name": "NIC_SUPP_A", "pos": 43, "bits": 1, "value": 0, "text": "0"}
    ])"));
}

std::string bytesOf(const std::string& digits) {
    std::string bytes;
    readHexBytes(digits, bytes);
    return bytes;
}

/// Keys that are there, and keys that are not since the message does not tell the value.
TEST(ReplyJson, HasWhatTheMessageTells) {
    using namespace simulator;
    const auto velocity = [](int east, int north, int rate) {
        VelocityFields fields;
        fields.verticalRateFtMin = rate;
        return groundVelocity(fields, east, north, false);
    };
    const auto cleared = [](std::string field, std::size_t byte, unsigned mask) {
        field[byte] = static_cast<char>(static_cast<u8>(field[byte]) & ~mask);
        return field;
    };
    std::string noEast = cleared(velocity(1, 500, 640), 1, 0x03);
    noEast = cleared(noEast, 2, 0xFF);
    std::string noRate = cleared(velocity(300, 400, 640), 4, 0x07);
    noRate = cleared(noRate, 5, 0xFC);
    std::string metres = df4(address, {}, 1000);
    metres[3] = static_cast<char>(metres[3] | 0x40);
    SurfacePosition parked;
    parked.trackValid = false;
    const std::string noMovement = cleared(cleared(surfacePosition(parked), 0, 0x07), 1, 0xF0);

    const struct {
        std::string frame;
        std::string has; ///< an object with some of its keys
        std::vector<std::string> lacks;
        MOPSVersion version = MOPSVersion0;
    } rows[] = {
        // altitude: a good one, one in steps of 100 ft, none, in metres
        {df4(address, {1}, 1000),
         R"({"altitude_ft":1000,"altitude_step_ft":25,
             "altitude_source":"baro","ground_status":"ground","alert":false,"spi":false})",
         {}},
        {bytesOf("20001708000000"), R"({"altitude_ft":147000,"altitude_step_ft":100})", {}},
        {bytesOf("20000000000000"), "{}", {"altitude_ft", "altitude_step_ft", "altitude_source"}},
        {metres, R"({"confidence":"None"})", {"altitude_ft", "altitude_step_ft"}},
        // flight status
        {df4(address, {3}, 0), R"({"ground_status":"ground","alert":true,"spi":false})", {}},
        {df4(address, {4}, 0), R"({"alert":true,"spi":true})", {"ground_status"}},
        {df4(address, {5}, 0), R"({"alert":false,"spi":true})", {"ground_status"}},
        {df4(address, {6}, 0), "{}", {"ground_status", "alert", "spi"}},
        {df5(address, {}, 07600), R"({"squawk":"7600","emergency":"radio failure"})", {}},
        {df5(address, {}, 01200), R"({"squawk":"1200"})", {"emergency"}},
        // interrogators: 79 is the last one
        {df11(address, 5, 79), R"({"interrogator":79,"capability":5})", {}},
        {df11(address, 5, 80), "{}", {"interrogator"}},
        // a DF-19 of another application
        {df19(address, 0, noRate), R"({"address":"4840D6","application_field":0})", {}},
        {df19(address, 3, noRate),
         R"({"application_field":3,"confidence":"Low"})",
         {"address", "me", "type"}},
        // velocity: all, at rest, without a component, without a rate
        {df17(address, 5, velocity(300, 400, 640)),
         R"({"ground_speed_kt":500,"vertical_rate_ft_min":640,"vertical_rate_source":"baro",
             "subtype":1,"nucr":0})",
         {}},
        {df17(address, 5, velocity(0, 0, 0)),
         R"({"ground_speed_kt":0,"vertical_rate_ft_min":0})",
         {"track_deg"}},
        {df17(address, 5, noEast),
         R"({"vertical_rate_ft_min":640})",
         {"ground_speed_kt", "track_deg", "nucr"},
         MOPSVersion1},
        {df17(address, 5, noRate),
         R"({"ground_speed_kt":500})",
         {"vertical_rate_ft_min", "vertical_rate_source"}},
        {df17(address, 5, airSpeed),
         R"({"type":"AIR_VEL","payload_refused":"air speed"})",
         {"subtype", "ground_speed_kt"}},
        // on the ground
        {df17(address, 5, noMovement), R"({"type":"POS_GND"})", {"ground_speed_kt", "track_deg"}},
        // identification
        {df17(address, 5, identification(4, 3, "KLM1023")),
         R"({"callsign":"KLM1023","category":"A3"})",
         {}},
        {df17(address, 5, identification(1, 7, "")), R"({"category":"D7"})", {"callsign"}},
        // emergency states
        {df17(address, 5, emergencyStatus(0, 01234)),
         R"({"subtype":1,"squawk":"1234"})",
         {"emergency"},
         MOPSVersion2},
        {df17(address, 5, emergencyStatus(6, 0)), R"({"emergency":"downed aircraft"})", {"squawk"}},
        {df17(address, 5, advisoryStatus({})), R"({"subtype":2})", {"emergency"}},
        {df17(address, 5, testMessage(1, 0xABCDEF)),
         R"({"subtype":1,"test_data":"000000ABCDEF"})",
         {}},
    };
    for (const auto& row : rows) {
        const auto form = json::parse(lineOf(decodedLast({hexBytes(row.frame)}, row.version)));
        const json has = json::parse(row.has);
        for (const auto& item : has.items()) {
            EXPECT_EQ(form.value(item.key(), json()), item.value()) << item.key() << " " << form;
        }
        for (const std::string& key : row.lacks) {
            EXPECT_FALSE(form.contains(key)) << key << " " << form;
        }
    }
}

struct FieldText {
    std::string name;
    std::string text;
};

/// The keys of fields whose text is the value.
const std::map<std::string, std::string> wordKeys = {
    {"ID", "squawk"}, {"MODE_A", "squawk"}, {"ME", "me"},
    {"MB", "mb"},     {"MV", "mv"},         {"DATA", "test_data"},
};
/// The same in lower case.
const std::map<std::string, std::string> lowerCaseKeys = {
    {"ALT_SRC", "altitude_source"}, {"VR_SRC", "vertical_rate_source"}, {"CPR_FMT", "cpr_format"}};
/// The keys of fields whose text is a number, with or without a unit.
const std::map<std::string, std::string> numberKeys = {
    {"AC", "altitude_ft"},
    {"AF", "application_field"},
    {"CA", "capability"},
    {"CF", "control_field"},
    {"TYPE_CODE", "type_code"},
    {"GND_SPD", "ground_speed_kt"},
    {"ALT", "altitude_ft"},
    {"ALT_RES", "altitude_step_ft"},
    {"CPR_LAT", "cpr_latitude"},
    {"CPR_LON", "cpr_longitude"},
    {"NUC_R", "nucr"},
    {"NAC_P", "nacp"},
    {"SIL", "sil"},
    {"VER_NUM", "announced_mops_version"},
};
/// The keys of single bits.
const std::map<std::string, std::string> flagKeys = {
    {"SAF", "single_antenna"},          {"T", "utc_synchronised"},
    {"NIC_BARO", "nic_baro"},           {"SIL_SUPP", "sil_supplement"},
    {"NIC_SUPP_A", "nic_supplement_a"}, {"NIC_SUPP_B", "nic_supplement_b"},
};

std::string lowerCase(std::string text) {
    std::transform(text.begin(), text.end(), text.begin(),
                   [](char letter) { return static_cast<char>(letter | 0x20); });
    return text;
}

/// Compares the value of a field with that of its key, if the object has it, and counts that.
void expectField(const json& form, const FieldText& field, std::map<std::string, int>& compared) {
    const auto valueIn = [&](const std::map<std::string, std::string>& keys) -> const json* {
        const auto key = keys.find(field.name);
        if (key == keys.end() || !form.contains(key->second)) {
            return nullptr;
        }
        ++compared[field.name];
        return &form[key->second];
    };
    if (const json* value = valueIn(wordKeys)) {
        EXPECT_EQ(*value, field.text) << field.name;
    } else if ((value = valueIn(lowerCaseKeys)) != nullptr) {
        EXPECT_EQ(*value, lowerCase(field.text)) << field.name;
    } else if ((value = valueIn(numberKeys)) != nullptr) {
        EXPECT_NEAR(value->get<double>(), std::stod(field.text), 1e-6) << field.name;
    } else if ((value = valueIn(flagKeys)) != nullptr) {
        EXPECT_EQ(*value, field.text == "1") << field.name;
    }
}

std::vector<FieldText> fieldsOf(const DecodedReply& decoded) {
    std::vector<FieldText> fields;
    for (const ModeSMessageField* field : decoded.message->fields()) {
        fields.push_back({field->name(), field->description()});
    }
    if (decoded.payload && decoded.payload->message) {
        for (const ADSBMessageField& field : decoded.payload->message->fields()) {
            fields.push_back({field.name(), field.description()});
        }
    }
    return fields;
}

TEST(ReplyJson, OfEveryReplyReadsAsItsMessage) {
    const QuietLog quiet;
    ModeSDecoder decoder;
    PayloadDecoder payloads(std::nullopt);
    std::map<std::string, int> compared;
    DecodedReply decoded;
    for (const Reply& reply : manyReplies()) {
        decoded.reply = reply;
        decoded.message = decodeReply(decoder, decoded.reply);
        decoded.payload = payloads.decode(decoded.message.get());
        const std::string line = lineOf(decoded, {std::nullopt, true});
        ASSERT_EQ(line.find('\n'), line.size() - 1);
        const json form = json::parse(line);
        EXPECT_EQ(form["received"], hexBytes(reply.bytes));
        EXPECT_EQ(form["refused"], decoded.refused());
        EXPECT_EQ(form.contains("stamp_ms"), reply.stampMs.has_value());
        if (decoded.refused()) {
            EXPECT_EQ(form.size(), 4U + (reply.stampMs ? 1 : 0) + (reply.source != 0 ? 2 : 0))
                << form;
            continue;
        }
        EXPECT_EQ(form["data"], decoded.message->dataHexString());
        EXPECT_EQ(form.value("address", "000000"), hex24(decoded.message->icaoAddress()));
        EXPECT_EQ(form["fields"].size(), decoded.message->fields().size());
        EXPECT_EQ(form.contains("payload_refused"), decoded.payload && !decoded.payload->message);
        for (const FieldText& field : fieldsOf(decoded)) {
            expectField(form, field, compared);
        }
        const auto* velocity = dynamic_cast<const ADSBAirborneVelocityMessage*>(
            decoded.payload ? decoded.payload->message.get() : nullptr);
        if (velocity != nullptr) {
            EXPECT_EQ(form.value("ground_speed_kt", 0.0), velocity->groundSpeed());
            EXPECT_EQ(form.value("track_deg", 0.0), velocity->heading());
            EXPECT_EQ(form.value("vertical_rate_ft_min", 0), velocity->verticalRate());
        }
    }
    EXPECT_EQ(compared.size(),
              wordKeys.size() + lowerCaseKeys.size() + numberKeys.size() + flagKeys.size());
}

} // namespace

} // namespace tolvarin::ondrel::client
