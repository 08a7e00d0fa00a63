#include "apps/common/text.h"
#include "apps/decoding/decoded_reply.h"
#include "apps/input/reply_line.h"
#include "apps/json/reply_json.h"
#include "apps/terminal/console.h"
#include "apps/terminal/reply_text.h"
#include "apps/terminal/summaries.h"

#include "simulator/frame_encoder.h"
#include "simulator/payload_encoder.h"

#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <utility>
#include <variant>
#include <vector>

namespace tolvarin::ondrel::client {

namespace {

/// Decodes lines one after the other, payloads included; gives what it made of the last.
DecodedReply decodedLast(const std::vector<std::string>& lines,
                         std::optional<MOPSVersion> version = std::nullopt) {
    ModeSDecoder decoder;
    PayloadDecoder payloads(version);
    DecodedReply last;
    for (const std::string& line : lines) {
        last = decodeReply(decoder, std::get<Reply>(parseReplyLine(line)));
        if (!last.refused()) {
            last.payload = payloads.decode(*last.message);
        }
    }
    return last;
}

// A position of 40621D, as the public literature on Mode S prints it. What is wrong within the
// parity field itself cannot be repaired.
const std::string good = "8D40621D58C382D690C8AC2863A7";
const std::string oneBitWrong = "8D40621D59C382D690C8AC2863A7";
const std::string text = "DF-17  40621D  High     CA: 5; AA: 40621D; ME: 58C382D690C8AC"
                         " | TC=POS_AIR, AT=BARO, ALT=38000, CPR=EVEN, LAT=93000, LON=51372";
const std::string beyondRepair = "8D40621D58C382D690C8AC2863A6";

const std::string withoutPayload = hexBytes(simulator::df17(0x40621D, 5, ""));

TEST(TextForm, isOneLineInColumns) {
    const struct {
        std::string line;
        std::string text;
    } rows[] = {
        // stamps wider than the column push it to the right
        {"18446744073709551.615," + good, "18446744073709551.615  " + text},
        // beyond repair, a format without a class, cut short
        {beyondRepair, "             -  DF-17  ------  refused  8D40621D58C382D690C8AC2863A6"},
        {"08", "             -  DF-1   ------  refused  08"},
        {"8D40621D58C3", "             -  DF-17  ------  refused  8D40621D58C3"},
        // a frame with bytes behind it counts as it is
        {good + "FF", "             -  " + text},
        // an all-zero reply: the address has six digits
        {"00000000000000", "             -  DF-0   000000  Low      VS: AIR; AC: -1000"},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(replyText(decodedLast({row.line})), row.text);
    }
}

TEST(JsonForm, hasAllOfADecodedReply) {
    auto form = replyJson(decodedLast({"1.5," + oneBitWrong}));
    const auto expected = nlohmann::ordered_json::parse(R"({
        "stamp_ms": 1500, "format": "DF-17", "address": "40621D", "confidence": "High",
        "description": "CA: 5; AA: 40621D; ME: 58C382D690C8AC",
        "refused": false, "repaired": true,
        "received": "8D40621D59C382D690C8AC2863A7", "data": "8D40621D58C382D690C8AC2863A7",
        "parity": "2863A7",
        "fields": [
            {"name": "CA", "full_name": "Capability", "pos": 5, "bits": 3, "value": "5"},
            {"name": "AA", "full_name": "Address announced", "pos": 8, "bits": 24,
             "value": "40621D"},
            {"name": "ME", "full_name": "Message, extended squitter", "pos": 32, "bits": 56,
             "value": "58C382D690C8AC"},
            {"name": "PI", "full_name": "Parity/interrogator identifier", "pos": 88, "bits": 24,
             "value": "2863A7"}
        ]})");
    form.erase("payload");
    EXPECT_EQ(form.dump(), expected.dump());
}

TEST(JsonForm, ofARefusedReplyHasItsBytes) {
    EXPECT_EQ(replyJson(decodedLast({"18446744073709551.615," + beyondRepair})).dump(),
              R"({"stamp_ms":18446744073709551615,"format":"DF-17","refused":true,)"
              R"("received":"8D40621D58C382D690C8AC2863A6"})");
}

TEST(DecodeSummary, countsEveryReplyOnce) {
    DecodeSummary summary;
    for (const auto& line :
         {good, oneBitWrong, withoutPayload, beyondRepair, std::string("00000000000000")}) {
        summary.count(decodedLast({line}));
    }
    EXPECT_EQ(summary.text(7), "replies read                  5\n"
                               "  decoded                     4   80.0 %\n"
                               "    repaired                  1   20.0 %\n"
                               "  refused                     1   20.0 %\n"
                               "decoded by format\n"
                               "  DF-0                        1   20.0 %\n"
                               "  DF-17                       3   60.0 %\n"
                               "decoded by confidence\n"
                               "  High                        3   60.0 %\n"
                               "  Medium                      0    0.0 %\n"
                               "  Low                         1   20.0 %\n"
                               "  None                        0    0.0 %\n"
                               "ADS-B payloads                3\n"
                               "  not decoded                 1   33.3 %\n"
                               "lines not readable            7");
}

TEST(ProgressBar, isFullOnlyAtTheEnd) {
    const std::string tens(10, '#');
    EXPECT_EQ(progressText(0, 8), "[" + std::string(40, '.') + "]   0 %");
    EXPECT_EQ(progressText(2, 8), "[" + tens + std::string(30, '.') + "]  25 %");
    EXPECT_EQ(progressText(999999, 1000000).substr(39), "#.]  99 %");
    EXPECT_EQ(progressText(8, 8), "[" + tens + tens + tens + tens + "] 100 %");
    EXPECT_EQ(progressText(9, 8), progressText(8, 8)); // a file that grows meanwhile
}

constexpr u32 address = 0x4840D6;

std::string squitter(const std::string& me, u32 sender = address) {
    return hexBytes(simulator::df17(sender, 5, me));
}

/// An operational status that announces a version.
std::string announcement(unsigned version) {
    simulator::OperationalStatus status;
    status.version = version;
    return simulator::operationalStatus(status);
}

const std::string velocity = simulator::groundVelocity({}, 5, 12, false);
const std::string airSpeed = simulator::airVelocity({}, 90, 300, false);
const std::string targetState = simulator::targetStateV2({});
const std::string reserved(7, '\0');

const std::string heading1 = "TC=AIR_VEL, ST=GS, GS=13, HDG=22.6199, VR=0";
const std::string heading0 = heading1 + ", NUCr=0";

const std::string airSpeedRefused = "TC=AIR_VEL, not decoded (type code 19, MOPS version 0)";

TEST(Payload, isReadAsTheAircraftMeansIt) {
    struct Row {
        std::vector<std::string> lines; ///< the last one is looked at
        std::string description;        ///< empty: it has no payload
        std::optional<MOPSVersion> version;
    };
    const Row rows[] = {
        // every format that carries a payload, and none of the others
        {{squitter(velocity)}, heading0, {}},
        {{hexBytes(simulator::df18(address, 1, velocity))}, heading0, {}},
        {{hexBytes(simulator::df19(address, 0, velocity))}, heading0, {}},
        {{hexBytes(simulator::df19(address, 1, velocity))}, "", {}},
        {{hexBytes(simulator::df20(address, {}, 1000, velocity))}, "", {}},
        // what is not decoded
        {{squitter(reserved)}, "TC=RESERVED, not decoded (type code 0, MOPS version 0)", {}},
        {{squitter(airSpeed)}, airSpeedRefused, {}},
        // the version that was announced last, by this aircraft, and not the one asked for
        {{squitter(announcement(1)), squitter(velocity)}, heading1, {}},
        {{squitter(announcement(1), address + 1), squitter(velocity)}, heading0, {}},
        {{squitter(announcement(2)), squitter(announcement(1)), squitter(targetState)},
         "TC=TG_STATUS, ST=1, NACp=0, NICbaro=0, SIL=0",
         {}},
        // one later than the library knows
        {{squitter(announcement(7)), squitter(targetState)},
         "TC=TG_STATUS, ST=1, NACp=0, NICbaro=0, SIL=0, SILsupp=0",
         {}},
        {{squitter(announcement(1)), squitter(velocity)}, heading0, MOPSVersion0},
        {{squitter(velocity)}, heading1, MOPSVersion2},
    };
    for (const Row& row : rows) {
        const DecodedReply decoded = decodedLast(row.lines, row.version);
        EXPECT_EQ(decoded.payload ? decoded.payload->description() : "", row.description)
            << row.lines.back();
    }
}

TEST(FieldsForm, hasTheFieldsOfTheReplyAndThoseOfItsPayload) {
    EXPECT_EQ(fieldsText(decodedLast({"8D485020994409940838175B284F"}, MOPSVersion1)),
              R"(    DF-17
       5   3  CA          5
       8  24  AA          485020
      32  56  ME          99440994083817
      88  24  PI          5B284F
    ME, read as in MOPS version 1
       0   5  TYPE        AIR_VEL
       0   5  TYPE_CODE   19
       5   3  SUB_TYPE    GROUND_SPEED
      13   1  DIR_EW      E->W
      14  10  VEL_EW      9
      24   1  DIR_NS      N->S
      25  10  VEL_NS      160
      35   1  VR_SRC      BARO
      36   1  VR_SIGN     DOWN
      37   9  VR          14
)");
    const std::string refused = fieldsText(decodedLast({squitter(airSpeed)}));
    const std::string end = "\n    ME: " + airSpeedRefused + "\n";
    EXPECT_EQ(refused.substr(refused.size() - end.size()), end);
    EXPECT_EQ(fieldsText(decodedLast({"00000000000000"})), // the parity of zeros is 0
              "    DF-0\n"
              "       5   1  VS          AIR\n"
              "      19  13  AC          -1000\n"
              "      32  24  AP          00\n");
    EXPECT_EQ(fieldsText(decodedLast({"FF"})), "");
}

TEST(JsonForm, hasThePayload) {
    const auto form = replyJson(decodedLast({squitter(announcement(2))}));
    const auto expected = nlohmann::ordered_json::parse(R"({
        "type": "OP_STATUS", "type_code": 31, "version": 0, "refused": false,
        "description": "TC=OP_STAT, VN=2, NICsa=0",
        "fields": [
            {"name": "TYPE", "full_name": "Type", "pos": 0, "bits": 5, "value": "OP_STATUS"},
            {"name": "TYPE_CODE", "full_name": "TYPE_CODE", "pos": 0, "bits": 5, "value": "31"},
            {"name": "VER_NUM", "full_name": "VER_NUM", "pos": 40, "bits": 3, "value": "2"},
            {"name": "NIC_SUPP_A", "full_name": "NIC_SUPP_A", "pos": 43, "bits": 1, "value": "0"}
        ]})");
    EXPECT_EQ(form["payload"].dump(), expected.dump());
    EXPECT_EQ(replyJson(decodedLast({squitter(airSpeed)}))["payload"].dump(),
              R"({"type":"AIR_VEL","type_code":19,"version":0,"refused":true,"description":")" +
                  airSpeedRefused + R"("})");
    EXPECT_FALSE(
        replyJson(decodedLast({hexBytes(simulator::df11(address, 5, 0))})).contains("payload"));
}

} // namespace

} // namespace tolvarin::ondrel::client
