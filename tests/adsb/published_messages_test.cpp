#include <ondrel/adsb_decoder.h>
#include <ondrel/df_messages.h>
#include <ondrel/mode_s_decoder.h>

#include "support/bytes.h"
#include "support/captured_log.h"
#include "text.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>

namespace tolvarin::ondrel {
namespace {

using test::Lines;
using test::operator""_hex;

/// The description of a payload of an aircraft of a version; empty if it is refused.
std::string described(const ADSBDecoder& decoder, int version, const std::string& payload) {
    const std::unique_ptr<ADSBMessage> message(
        decoder.decode(static_cast<MOPSVersion>(version), payload));
    return message != nullptr ? message->description() : "";
}

/// Squitters that were received, and what literature says about them.
TEST(ADSBPublishedMessages, HaveTheirPublishedValues) {
    struct Row {
        std::string frame;
        int version;
        std::string description;
    };
    const Row rows[] = {
        // J. Sun, The 1090 Megahertz Riddle, 2nd edition, aircraft identification: KLM1023.
        {"8D4840D6 202CC371C32CE0 576098"_hex, 0, "TC=ACID, EC=0, CS=KLM1023 "},
        // The same, airborne position: 38000 ft, CPR 93000 51372 (even) and 74158 50194 (odd).
        {"8D40621D 58C382D690C8AC 2863A7"_hex, 0,
         "TC=POS_AIR, AT=BARO, ALT=38000, CPR=EVEN, LAT=93000, LON=51372"},
        {"8D40621D 58C386435CC412 692AD6"_hex, 2,
         "TC=POS_AIR, AT=BARO, ALT=38000, CPR=ODD, LAT=74158, LON=50194"},
        // The same, airborne velocity: 159.20 kt, 182.88 degrees, -832 ft/min.
        {"8D485020 99440994083817 5B284F"_hex, 0,
         "TC=AIR_VEL, ST=GS, GS=159.201, HDG=182.88, VR=-832, NUCr=0"},
        // The same, an air speed (375 kt), which is refused.
        {"8DA05F21 9B06B6AF189400 CBC33F"_hex, 1, ""},
        // The same, surface position: 17 kt, 92.8125 degrees.
        {"8C484175 3A9A153237AEF0 F275BE"_hex, 2,
         "TC=POS_GND, SPD=17, HDG=92.8125, CPR=ODD, LAT=39195, LON=110320"},
        // The same, target state and status: NACp 9, barometric altitude cross-checked, SIL 3.
        {"8DA05629 EA21485CBF3F8C ADAEEB"_hex, 2,
         "TC=TG_STATUS, ST=1, NACp=9, NICbaro=1, SIL=3, SILsupp=0"},
        // Recorded traffic: a squawk of 6513 without emergency, and an operational status of
        // version 2 with NIC supplement A.
        {"8DA2C1B6 E112B600000000 760759"_hex, 2, "TC=AC_STATUS, ST=EMG, EMG=0, MA=6513"},
        {"8D0D097E F8230007005AB8 547268"_hex, 0, "TC=OP_STAT, VN=2, NICsa=1"},
    };
    const test::CapturedLog log;
    const ADSBDecoder decoder;
    ModeSDecoder replies;
    for (const Row& row : rows) {
        const std::unique_ptr<ModeSMessage> reply(
            replies.decode(ModeSMessage::Downlink, row.frame));
        ASSERT_NE(reply, nullptr) << row.description;
        ASSERT_EQ(reply->data(), row.frame) << "repaired";
        const auto& squitter = dynamic_cast<const DF17Message&>(*reply);
        EXPECT_EQ(described(decoder, row.version, squitter.constFieldME().data()), row.description);
    }
}

/// Payloads worked out by hand, with zeros behind the last byte given. A refused one has no
/// description.
TEST(ADSBPublishedMessages, HaveTheDescriptionsAndLogLinesOfTheirBoundaryValues) {
    struct Row {
        std::string payload;
        int version;
        std::string description;
        Lines log;
    };
    const std::string still = ", CPR=EVEN, LAT=0, LON=0";
    const std::string status = "[CRITICAL][ADSBAcStatMsg] ";
    const std::string airSpeed = "[WARNING ][ADSBAirVelMsg] Unsupported AIR_SPD message detected.";
    const Row rows[] = {
        {"00"_hex, 2, "", {"[WARNING ][ADSBDecoder] Unsupported type code = 0 (Reserved)."}},
        {"F0"_hex, 2, "", {"[WARNING ][ADSBDecoder] Unsupported type code = 30 (Reserved)."}},
        {"0F 01 B7 E1 BE FF DA"_hex, 3, "TC=ACID, EC=7, CS=???????Z", {}},
        {"28 2F F0"_hex, 0, "TC=POS_GND, SPD=0.125, HDG=357.188" + still, {}},
        {"28 80"_hex, 3, "TC=POS_GND, SPD=0.854167, HDG=0" + still, {}},
        // Altitude count 1040 in steps of 25 and of 100 ft, count 0, and the highest count.
        {"90 83"_hex, 0, "TC=POS_AIR, AT=BARO, ALT=25000" + still, {}},
        {"A0 82"_hex, 2, "TC=POS_AIR, AT=GNSS, ALT=103000" + still, {}},
        {"48 01"_hex, 1, "TC=POS_AIR, AT=BARO, ALT=-1000" + still, {}},
        {"B0 FE F0"_hex, 1, "TC=POS_AIR, AT=GNSS, ALT=203700" + still, {}},
        {"48 01"_hex, 3, "", {}},
        // East-west not available; due north, south and west, and south in steps of four.
        {"99 00 00 0C 80"_hex, 1, "TC=AIR_VEL, ST=GS, GS=0, HDG=0, VR=0", {}},
        {"99 00 01 00 48 04"_hex, 1, "TC=AIR_VEL, ST=GS, GS=1, HDG=0, VR=0", {}},
        {"99 00 01 80 48 08"_hex, 1, "TC=AIR_VEL, ST=GS, GS=1, HDG=180, VR=-64", {}},
        {"99 04 02 00 27 FC"_hex, 2, "TC=AIR_VEL, ST=GS, GS=1, HDG=270, VR=32640", {}},
        {"9A 28 01 80 50"_hex, 0, "TC=AIR_VEL, ST=GS_SS, GS=4, HDG=180, VR=0, NUCr=5", {}},
        {"98"_hex, 0, "", {"[CRITICAL][ADSBAirVelMsg] Unknown Subtype=0."}},
        {"9B"_hex, 0, "", {airSpeed}},
        {"9C"_hex, 1, "", {airSpeed}},
        {"9D"_hex, 2, "", {"[CRITICAL][ADSBAirVelMsg] Unknown Subtype=5."}},
        {"9F"_hex, 2, "", {"[CRITICAL][ADSBAirVelMsg] Unknown Subtype=7."}},
        {"B8"_hex, 0, "TC=TEST, ST=0", {}},
        {"B9"_hex, 1, "TC=TEST, ST=1", {"[CRITICAL][ADSBTestMsg] Unknown Subtype=1."}},
        {"BF"_hex, 3, "TC=TEST, ST=7", {"[CRITICAL][ADSBTestMsg] Unknown Subtype=7."}},
        {"E1 20"_hex, 1, "TC=AC_STATUS, ST=EMG, EMG=1", {}},
        {"E1 EA AA"_hex, 2, "TC=AC_STATUS, ST=EMG, EMG=7, MA=7700", {}},
        {"E0"_hex, 1, "TC=AC_STATUS", {status + "Unsupported subtype 0 detected."}},
        {"E0"_hex, 2, "TC=AC_STATUS, MA=0000", {status + "Unsupported subtype 0 detected."}},
        {"E2"_hex, 0, "TC=AC_STATUS", {status + "Unsupported subtype 2 detected."}},
        {"E2"_hex,
         2,
         "",
         {status + "Unsupported subtype 2 detected.",
          "[WARNING ][ADSBAcStatMsg] Unsupported TCAS RA message detected."}},
        {"E3"_hex, 0, "", {status + "Unknown Subtype=3."}},
        {"E7"_hex, 2, "", {status + "Unknown Subtype=7."}},
        {"E8 00 00 00 01 B8"_hex, 0, "", {}},
        {"E8 00 00 00 01 B8"_hex, 1, "TC=TG_STATUS, ST=0, NACp=13, NICbaro=1, SIL=2", {}},
        {"E8 00 00 00 01 B8"_hex, 2, "", {}},
        {"EB 00 00 00 01 B8"_hex,
         2,
         "TC=TG_STATUS, ST=1, NACp=13, NICbaro=1, SIL=2, SILsupp=1",
         {}},
        {"EA 00 00 00 00 04"_hex, 2, "TC=TG_STATUS, ST=1, NACp=0, NICbaro=0, SIL=1, SILsupp=0", {}},
        {"EC"_hex, 1, "", {"[CRITICAL][ADSBTgStatMsg] Unknown Subtype=2."}},
        {"EE"_hex, 2, "", {"[CRITICAL][ADSBTgStatMsg] Unknown Subtype=3."}},
        {"F8 00 00 00 00 20"_hex, 0, "TC=OP_STAT, VN=1, NICsa=0", {}},
        {"FF 00 00 00 00 5F"_hex, 2, "TC=OP_STAT, VN=2, NICsa=1", {}},
        {"F8 00 00 00 00 10"_hex, 2, "", {"[CRITICAL][ADSBOpStatMsg] MOPS Version 0 detected."}},
        {"F8 00 00 00 00 E0"_hex,
         2,
         "TC=OP_STAT, VN=7, NICsa=0",
         {"[CRITICAL][ADSBOpStatMsg] Unsupported MOPS Version 7 detected."}},
    };
    const ADSBDecoder decoder;
    test::CapturedLog log;
    for (const Row& row : rows) {
        const std::string payload = row.payload + std::string(7 - row.payload.size(), '\0');
        EXPECT_EQ(described(decoder, row.version, payload), row.description);
        EXPECT_EQ(log.take(), row.log) << row.description << text::hexBytes(row.payload);
    }
}

} // namespace
} // namespace tolvarin::ondrel
