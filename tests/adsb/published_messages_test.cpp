#include <ondrel/adsb_decoder.h>
#include <ondrel/df_messages.h>
#include <ondrel/mode_s_decoder.h>

#include "support/bytes.h"
#include "support/captured_log.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>

namespace tolvarin::ondrel {
namespace {

using test::operator""_hex;

/// What the seven bytes say of an aircraft of a version; empty if they are refused.
std::string described(MOPSVersion version, const std::string& payload) {
    const std::unique_ptr<ADSBMessage> message(ADSBDecoder().decode(version, payload));
    return message != nullptr ? message->description() : "";
}

/// Squitters received off the air, whole, and what they are published to say.
TEST(ADSBPublishedMessages, SayWhatIsPublished) {
    struct Row {
        std::string frame;
        MOPSVersion version;
        std::string description;
    };
    const Row rows[] = {
        // J. Sun, The 1090 Megahertz Riddle, 2nd edition, aircraft identification: KLM1023.
        {"8D4840D6 202CC371C32CE0 576098"_hex, MOPSVersion0, "TC=ACID, EC=0, CS=KLM1023 "},
        // The same, airborne position: 38000 ft, CPR 93000 51372 (even) and 74158 50194 (odd).
        {"8D40621D 58C382D690C8AC 2863A7"_hex, MOPSVersion0,
         "TC=POS_AIR, AT=BARO, ALT=38000, CPR=EVEN, LAT=93000, LON=51372"},
        {"8D40621D 58C386435CC412 692AD6"_hex, MOPSVersion2,
         "TC=POS_AIR, AT=BARO, ALT=38000, CPR=ODD, LAT=74158, LON=50194"},
        // The same, airborne velocity: 159.20 kt, 182.88 degrees, -832 ft/min.
        {"8D485020 99440994083817 5B284F"_hex, MOPSVersion0,
         "TC=AIR_VEL, ST=GS, GS=159.201, HDG=182.88, VR=-832, NUCr=0"},
        // The same, an air speed (375 kt), which is refused.
        {"8DA05F21 9B06B6AF189400 CBC33F"_hex, MOPSVersion1, ""},
        // The same, surface position: 17 kt, 92.8125 degrees.
        {"8C484175 3A9A153237AEF0 F275BE"_hex, MOPSVersion2,
         "TC=POS_GND, SPD=17, HDG=92.8125, CPR=ODD, LAT=39195, LON=110320"},
        // The same, target state and status: NACp 9, barometric altitude cross-checked, SIL 3.
        {"8DA05629 EA21485CBF3F8C ADAEEB"_hex, MOPSVersion2,
         "TC=TG_STATUS, ST=1, NACp=9, NICbaro=1, SIL=3, SILsupp=0"},
        // Recorded traffic: a squawk of 6513 without emergency, and an operational status of
        // version 2 with NIC supplement A.
        {"8DA2C1B6 E112B600000000 760759"_hex, MOPSVersion2,
         "TC=AC_STATUS, ST=EMG, EMG=0, MA=6513"},
        {"8D0D097E F8230007005AB8 547268"_hex, MOPSVersion0, "TC=OP_STAT, VN=2, NICsa=1"},
    };
    const test::CapturedLog log;
    ModeSDecoder replies;
    for (const Row& row : rows) {
        const std::unique_ptr<ModeSMessage> reply(
            replies.decode(ModeSMessage::Downlink, row.frame));
        ASSERT_NE(reply, nullptr) << row.description;
        ASSERT_EQ(reply->data(), row.frame) << "repaired";
        const auto& squitter = dynamic_cast<const DF17Message&>(*reply);
        EXPECT_EQ(described(row.version, squitter.constFieldME().data()), row.description);
    }
}

/// Payloads worked out by hand, as each version reads them; zeros behind the last byte given. What
/// is refused has no description.
TEST(ADSBPublishedMessages, SayWhatTheirTablesTell) {
    struct Row {
        std::string payload;
        int version;
        std::string description;
        std::string log; ///< apart from its label
    };
    const std::string still = ", CPR=EVEN, LAT=0, LON=0";
    const Row rows[] = {
        {"00"_hex, 2, "", "[ADSBDecoder] Unsupported type code = 0 (Reserved)."},
        // Codes 0, 27, 31, 33, 47, 58 and 63 stand for no character.
        {"0F 01 B7 E1 BE FF DA"_hex, 3, "TC=ACID, EC=7, CS=???????Z", ""},
        // Movement codes 0, 2, 8, 124 and 125.
        {"28 07 F0"_hex, 3, "TC=POS_GND, SPD=0, HDG=0" + still, ""},
        {"28 2F F0"_hex, 0, "TC=POS_GND, SPD=0.125, HDG=357.188" + still, ""},
        {"28 80"_hex, 0, "TC=POS_GND, SPD=0.854167, HDG=0" + still, ""},
        {"2F C0"_hex, 0, "TC=POS_GND, SPD=175, HDG=0" + still, ""},
        {"2F D0"_hex, 0, "TC=POS_GND, SPD=0, HDG=0" + still,
         "[ADSBGndPosMsg] Reserved Movement Code: 125."},
        // Altitude count 1040 in steps of 25 and of 100 ft, and count 0.
        {"90 83"_hex, 0, "TC=POS_AIR, AT=BARO, ALT=25000" + still, ""},
        {"A0 82"_hex, 2, "TC=POS_AIR, AT=GNSS, ALT=103000" + still, ""},
        {"48 01"_hex, 1, "TC=POS_AIR, AT=BARO, ALT=-1000" + still, ""},
        {"48 01"_hex, 3, "", ""},
        // East-west not available; due north, south and west, and south in steps of four.
        {"99 00 00 0C 80"_hex, 1, "TC=AIR_VEL, ST=GS, GS=0, HDG=0, VR=0", ""},
        {"99 00 01 00 48 04"_hex, 1, "TC=AIR_VEL, ST=GS, GS=1, HDG=0, VR=0", ""},
        {"99 00 01 80 48 08"_hex, 1, "TC=AIR_VEL, ST=GS, GS=1, HDG=180, VR=-64", ""},
        {"99 04 02 00 27 FC"_hex, 2, "TC=AIR_VEL, ST=GS, GS=1, HDG=270, VR=32640", ""},
        {"9A 28 01 80 50"_hex, 0, "TC=AIR_VEL, ST=GS_SS, GS=4, HDG=180, VR=0, NUCr=5", ""},
        {"98"_hex, 0, "", "[ADSBAirVelMsg] Unknown Subtype=0."},
        {"BB"_hex, 3, "TC=TEST, ST=3", "[ADSBTestMsg] Unknown Subtype=3."},
        {"E1 20"_hex, 1, "TC=AC_STATUS, ST=EMG, EMG=1", ""},
        {"E1 EA AA"_hex, 2, "TC=AC_STATUS, ST=EMG, EMG=7, MA=7700", ""},
        {"E0"_hex, 2, "TC=AC_STATUS, MA=0000", "[ADSBAcStatMsg] Unsupported subtype 0 detected."},
        {"E2"_hex, 0, "TC=AC_STATUS", "[ADSBAcStatMsg] Unsupported subtype 2 detected."},
        {"E2"_hex, 2, "", "[ADSBAcStatMsg] Unsupported TCAS RA message detected."},
        {"E8 00 00 00 01 B8"_hex, 0, "", ""},
        {"E8 00 00 00 01 B8"_hex, 1, "TC=TG_STATUS, ST=0, NACp=13, NICbaro=1, SIL=2", ""},
        {"E8 00 00 00 01 B8"_hex, 2, "", ""},
        {"EB 00 00 00 01 B8"_hex, 2, "TC=TG_STATUS, ST=1, NACp=13, NICbaro=1, SIL=2, SILsupp=1",
         ""},
        {"F8 00 00 00 00 20"_hex, 0, "TC=OP_STAT, VN=1, NICsa=0", ""},
        {"FF 00 00 00 00 5F"_hex, 2, "TC=OP_STAT, VN=2, NICsa=1", ""},
        {"F8 00 00 00 00 10"_hex, 2, "", "[ADSBOpStatMsg] MOPS Version 0 detected."},
        {"F8 00 00 00 00 60"_hex, 2, "TC=OP_STAT, VN=3, NICsa=0",
         "[ADSBOpStatMsg] Unsupported MOPS Version 3 detected."},
    };
    test::CapturedLog log(Log::Warning);
    for (const Row& row : rows) {
        const std::string payload = row.payload + std::string(7 - row.payload.size(), '\0');
        EXPECT_EQ(described(static_cast<MOPSVersion>(row.version), payload), row.description);
        const test::Lines lines = log.take();
        EXPECT_EQ(lines.empty() ? "" : lines.back().substr(10), row.log) << row.description;
    }
}

} // namespace
} // namespace tolvarin::ondrel
