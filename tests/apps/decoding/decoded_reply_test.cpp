#include "apps/decoded_lines.h"

#include <gtest/gtest.h>

#include <optional>
#include <string>
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

} // namespace

} // namespace tolvarin::ondrel::client
