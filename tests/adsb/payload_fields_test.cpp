// The field lists of payloads and the classes that type and version choose.
#include <ondrel/adsb_airborne_position_message.h>
#include <ondrel/adsb_aircraft_operational_status_message.h>
#include <ondrel/adsb_decoder.h>
#include <ondrel/adsb_identity_message.h>
#include <ondrel/adsb_surface_position_message.h>
#include <ondrel/adsb_target_status_message.h>
#include <ondrel/adsb_test_message.h>

#include "support/bytes.h"
#include "support/captured_log.h"
#include "unexported_messages.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <typeinfo>
#include <vector>

namespace tolvarin::ondrel {
namespace {

using test::operator""_hex;
using Message = std::unique_ptr<ADSBMessage>;

Message decoded(int version, const std::string& payload) {
    static const ADSBDecoder decoder;
    return Message(decoder.decode(static_cast<MOPSVersion>(version), payload));
}

/// "NAME@first-last=text" of each field, by ME bits as the standards count them, from 1.
std::string listed(const ADSBMessage& message) {
    std::string text;
    for (const ADSBMessageField& field : message.fields()) {
        text += field.name() + '@' + std::to_string(field.pos() + 1) + '-' +
                std::to_string(field.pos() + field.bits()) + '=' + field.description() + ' ';
    }
    return text;
}

struct Row {
    std::string payload;
    std::string versions; ///< that read it so; 3 stands for every other version
    const std::type_info& type;
    std::string fields;
};

const std::string position =
    "TYPE@1-5=POS_AIR TYPE_CODE@1-5=11 ALT_SRC@1-5=BARO SAF@8-8=1 ALT@9-20=38000FT "
    "ALT_RES@16-16=25FT T@21-21=0 CPR_FMT@22-22=ODD CPR_LAT@23-39=74158 CPR_LON@40-56=50194 ";
const std::string velocity =
    "TYPE@1-5=AIR_VEL TYPE_CODE@1-5=19 SUB_TYPE@6-8=GROUND_SPEED_SUPER_SONIC DIR_EW@14-14=W->E "
    "VEL_EW@15-24=843 DIR_NS@25-25=S->N VEL_NS@26-35=196 VR_SRC@36-36=GNSS VR_SIGN@37-37=UP "
    "VR@38-46=197 ";

const Row rows[] = {
    {"20 2C C3 71 C3 2C E0"_hex, "0123", typeid(ADSBIdentityMessage),
     "TYPE@1-5=ACID TYPE_CODE@1-5=4 EMT_CAT@6-8=0 CHAR_1@9-14=K CHAR_2@15-20=L CHAR_3@21-26=M "
     "CHAR_4@27-32=1 CHAR_5@33-38=0 CHAR_6@39-44=2 CHAR_7@45-50=3 CHAR_8@51-56=  "},
    {"3A 9A 15 32 37 AE F0"_hex, "0123", typeid(ADSBSurfacePositionMessage),
     "TYPE@1-5=POS_GND TYPE_CODE@1-5=7 MOV_CODE@6-12=41 GND_SPD@6-12=17.000000 HDG_STATE@13-13=1 "
     "HDG@14-20=92.812500 T@21-21=0 CPR_FMT@22-22=ODD CPR_LAT@23-39=39195 CPR_LON@40-56=110320 "},
    {"59 C3 86 43 5C C4 12"_hex, "0", typeid(ADSBAirbornePositionMessageV0), position},
    {"59 C3 86 43 5C C4 12"_hex, "1", typeid(ADSBAirbornePositionMessageV1), position},
    {"A1 2A 6B FF FD FF FE"_hex, "2", typeid(ADSBAirbornePositionMessageV2),
     "TYPE@1-5=POS_AIR TYPE_CODE@1-5=20 ALT_SRC@1-5=GNSS NIC_SUPP_B@8-8=1 ALT@9-20=33200FT "
     "ALT_RES@16-16=100FT T@21-21=1 CPR_FMT@22-22=EVEN CPR_LAT@23-39=131070 CPR_LON@40-56=131070 "},
    {"99 6C 09 94 08 38 17"_hex, "0", typeid(ADSBAirborneVelocityMessageV0),
     "TYPE@1-5=AIR_VEL TYPE_CODE@1-5=19 SUB_TYPE@6-8=GROUND_SPEED NUC_R@11-13=5 DIR_EW@14-14=E->W "
     "VEL_EW@15-24=9 DIR_NS@25-25=N->S VEL_NS@26-35=160 VR_SRC@36-36=BARO VR_SIGN@37-37=DOWN "
     "VR@38-46=14 "},
    {"9A 03 4B 18 93 14 00"_hex, "1", typeid(ADSBAirborneVelocityMessageV1), velocity},
    {"9A 03 4B 18 93 14 00"_hex, "2", typeid(ADSBAirborneVelocityMessageV2), velocity},
    {"B8 01 23 45 67 89 AB"_hex, "0123", typeid(ADSBTestMessage),
     "TYPE@1-5=TEST TYPE_CODE@1-5=23 SUB_TYPE@6-8=0 DATA@9-56=0123456789AB "},
    {"E1 4A AA 00 00 00 00"_hex, "01", typeid(ADSBAircraftStatusMessageV0),
     "TYPE@1-5=AC_STATUS TYPE_CODE@1-5=28 SUB_TYPE@6-8=EMERGENCY EMG_STATE@9-11=MEDICAL "},
    {"E1 4A AA 00 00 00 00"_hex, "2", typeid(ADSBAircraftStatusMessageV2),
     "TYPE@1-5=AC_STATUS TYPE_CODE@1-5=28 SUB_TYPE@6-8=EMERGENCY EMG_STATE@9-11=MEDICAL "
     "MODE_A@12-24=7700 "},
    {"E9 00 00 00 01 38 00"_hex, "1", typeid(ADSBTargetStatusMessageV1),
     "TYPE@1-5=TG_STATUS TYPE_CODE@1-5=29 SUB_TYPE@6-7=0 NAC_P@40-43=9 NIC_BARO@44-44=1 "
     "SIL@45-46=2 "},
    {"EB 00 00 00 01 B4 00"_hex, "2", typeid(ADSBTargetStatusMessageV2),
     "TYPE@1-5=TG_STATUS TYPE_CODE@1-5=29 SUB_TYPE@6-7=1 SIL_SUPP@8-8=1 NAC_P@40-43=13 "
     "NIC_BARO@44-44=1 SIL@45-46=1 "},
    {"F8 00 00 00 00 50 00"_hex, "012", typeid(ADSBAircraftOperationalStatusMessage),
     "TYPE@1-5=OP_STATUS TYPE_CODE@1-5=31 VER_NUM@41-43=2 NIC_SUPP_A@44-44=1 "},
};

TEST(ADSBPayloadFields, AreThoseOfTheClassThatTypeAndVersionChoose) {
    for (const Row& row : rows) {
        for (const int version : {0, 1, 2, 3, 4, -1}) {
            const bool isKnownVersion = version >= 0 && version <= 2;
            const Message message = decoded(version, row.payload);
            if (row.versions.find("0123"[isKnownVersion ? version : 3]) != std::string::npos) {
                ASSERT_NE(message, nullptr) << row.fields;
                const ADSBMessage& given = *message;
                EXPECT_EQ(typeid(given), row.type) << row.fields;
                EXPECT_EQ(listed(given), row.fields);
            } else {
                EXPECT_TRUE(isKnownVersion || message == nullptr) << row.fields << version;
            }
        }
    }
    EXPECT_EQ(decoded(0, "E9 00 00 00 01 38 00"_hex), nullptr);
}

TEST(ADSBPayloadFields, ChangeWithEachOfTheirBitsAndWithNoOther) {
    const test::CapturedLog log;
    for (const Row& row : rows) {
        const int version = row.versions.front() - '0';
        const std::vector<ADSBMessageField> before = decoded(version, row.payload)->fields();
        const bool hasSubtype = row.fields.find("SUB_TYPE") != std::string::npos;
        for (unsigned bit = hasSubtype ? 8 : 5; bit < 56; ++bit) {
            const Message message = decoded(version, test::inverted(row.payload, {bit}));
            for (std::size_t i = 0; message != nullptr && i < before.size(); ++i) {
                const ADSBMessageField field = message->fields().at(i);
                const bool own = bit >= field.pos() && bit < unsigned{field.pos()} + field.bits();
                const bool meansNothing = field.name() == "MODE_A" && bit == 17; // X
                const bool isStatusOfHeading = field.name() == "HDG" && bit == 12;
                EXPECT_EQ(field.description() != before[i].description(),
                          (own && !meansNothing) || isStatusOfHeading)
                    << field.name() << " and bit " << bit << " in\n"
                    << row.fields;
            }
        }
    }
}

} // namespace
} // namespace tolvarin::ondrel
