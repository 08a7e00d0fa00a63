#include "apps/decoded_lines.h"

#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tolvarin::ondrel::client {

namespace {

const std::string velocity = simulator::groundVelocity({}, 5, 12, false);
const std::string targetState = simulator::targetStateV2({});
const std::string reserved(7, '\0');

const std::string heading1 = "TC=AIR_VEL, ST=GS, GS=13, HDG=22.6199, VR=0";
const std::string heading0 = heading1 + ", NUCr=0";

TEST(Payload, IsReadInTheVersionOfItsAircraft) {
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
        {{squitter(reserved)},
         "TC=RESERVED, not decoded: reserved type code (type code 0, MOPS version 0)",
         {}},
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

TEST(Payload, ThatIsNotDecodedSaysWhy) {
    const struct {
        u8 typeCode;
        u8 subtype; ///< the three bits behind the type code
        MOPSVersion version;
        std::string_view refusal;
    } rows[] = {
        {0, 0, MOPSVersion0, "reserved type code"},
        {30, 0, MOPSVersion2, "reserved type code"},
        {19, 0, MOPSVersion0, "reserved subtype"},
        {19, 3, MOPSVersion0, "air speed"},
        {19, 4, MOPSVersion2, "air speed"},
        {19, 5, MOPSVersion1, "reserved subtype"},
        {28, 2, MOPSVersion2, "resolution advisory"},
        {28, 3, MOPSVersion2, "reserved subtype"},
        {29, 0, MOPSVersion0, "not of this MOPS version"},
        {29, 4, MOPSVersion0, "not of this MOPS version"},
        {29, 1, MOPSVersion2, "not of this MOPS version"}, // the last bit is none of the subtype
        {29, 4, MOPSVersion1, "reserved subtype"},
        {29, 6, MOPSVersion2, "reserved subtype"},
        {31, 0, MOPSVersion1, "announces MOPS version 0"},
    };
    for (const auto& row : rows) {
        std::string field(7, '\0');
        field[0] = static_cast<char>(row.typeCode << 3U | row.subtype);
        const DecodedReply decoded = decodedLast({squitter(field)}, row.version);
        EXPECT_EQ(decoded.payload->message, nullptr);
        EXPECT_EQ(decoded.payload->refusal, row.refusal)
            << int{row.typeCode} << " " << int{row.subtype} << " " << row.version;
    }
}

} // namespace

} // namespace tolvarin::ondrel::client
