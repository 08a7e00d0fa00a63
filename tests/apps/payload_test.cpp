#include "decoded_lines.h"

#include "apps/hex.h"
#include "apps/json_form.h"
#include "apps/text_form.h"

#include "simulator/frame_encoder.h"
#include "simulator/payload_encoder.h"

#include <gtest/gtest.h>

#include <ostream>

namespace tolvarin::ondrel::client {

namespace {

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

struct DescriptionRow {
    std::vector<std::string> lines; ///< the last one is looked at
    std::string description;        ///< empty: it has no payload
    std::optional<MOPSVersion> version;
};

std::ostream& operator<<(std::ostream& out, const DescriptionRow& row) {
    return out << testing::PrintToString(row.lines);
}

class PayloadDescription : public testing::TestWithParam<DescriptionRow> {};

TEST_P(PayloadDescription, isReadAsTheAircraftMeansIt) {
    const DecodedReply decoded = decodedLast(GetParam().lines, GetParam().version);
    ASSERT_EQ(decoded.payload.has_value(), !GetParam().description.empty());
    if (decoded.payload) {
        EXPECT_EQ(decoded.payload->description(), GetParam().description);
    }
}

const DescriptionRow descriptionRows[] = {
    // every format that carries a payload, and none of the others
    {{squitter(velocity)}, heading0, {}},
    {{hexBytes(simulator::df18(address, 1, velocity))}, heading0, {}},
    {{hexBytes(simulator::df19(address, 0, velocity))}, heading0, {}},
    {{hexBytes(simulator::df19(address, 1, velocity))}, "", {}},
    {{hexBytes(simulator::df20(address, {}, 1000, velocity))}, "", {}},
    // what is not decoded
    {{squitter(reserved)}, "TC=RESERVED, not decoded (type code 0, MOPS version 0)", {}},
    {{squitter(airSpeed)}, airSpeedRefused, {}},
    {{squitter(targetState)}, "TC=TG_STATUS, not decoded (type code 29, MOPS version 0)", {}},
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
INSTANTIATE_TEST_SUITE_P(Payload, PayloadDescription, testing::ValuesIn(descriptionRows));

/// Fields of a frame of simulator::df17, as the frame's own digits show them.
std::string squitterFields(const std::string& hex) {
    return "    DF-17\n"
           "       5   3  CA          5\n"
           "       8  24  AA          4840D6\n"
           "      32  56  ME          " +
           hex.substr(8, 14) +
           "\n"
           "      88  24  PI          " +
           hex.substr(22) + "\n";
}

TEST(FieldsForm, hasTheFieldsOfTheReplyAndThoseOfItsPayload) {
    EXPECT_EQ(fieldsForm(decodedLast({squitter(velocity)}, MOPSVersion1)),
              squitterFields(squitter(velocity)) + "    ME, read as in MOPS version 1\n"
                                                   "       0   5  TYPE        AIR_VEL\n"
                                                   "       0   5  TYPE_CODE   19\n"
                                                   "       5   3  SUB_TYPE    GROUND_SPEED\n"
                                                   "      13   1  DIR_EW      W->E\n"
                                                   "      14  10  VEL_EW      6\n"
                                                   "      24   1  DIR_NS      S->N\n"
                                                   "      25  10  VEL_NS      13\n"
                                                   "      35   1  VR_SRC      BARO\n"
                                                   "      36   1  VR_SIGN     UP\n"
                                                   "      37   9  VR          1\n");
    EXPECT_EQ(fieldsForm(decodedLast({squitter(airSpeed)})),
              squitterFields(squitter(airSpeed)) + "    ME: " + airSpeedRefused + "\n");
    EXPECT_EQ(fieldsForm(decodedLast({"00000000000000"})), // the parity of zeros is 0
              "    DF-0\n"
              "       5   1  VS          AIR\n"
              "      19  13  AC          -1000\n"
              "      32  24  AP          00\n");
    EXPECT_EQ(fieldsForm(decodedLast({"FF"})), "");
}

TEST(JsonForm, hasThePayload) {
    const auto form = jsonForm(decodedLast({squitter(announcement(2))}));
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
    EXPECT_EQ(jsonForm(decodedLast({squitter(airSpeed)}))["payload"].dump(),
              R"({"type":"AIR_VEL","type_code":19,"version":0,"refused":true,"description":")" +
                  airSpeedRefused + R"("})");
    EXPECT_FALSE(
        jsonForm(decodedLast({hexBytes(simulator::df11(address, 5, 0))})).contains("payload"));
}

} // namespace

} // namespace tolvarin::ondrel::client
