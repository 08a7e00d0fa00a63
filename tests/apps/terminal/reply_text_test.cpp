#include "apps/terminal/reply_text.h"

#include "apps/decoded_lines.h"

#include <gtest/gtest.h>

#include <string>

namespace tolvarin::ondrel::client {

namespace {

const std::string text = "DF-17  40621D  High     CA: 5; AA: 40621D; ME: 58C382D690C8AC"
                         " | TC=POS_AIR, AT=BARO, ALT=38000, CPR=EVEN, LAT=93000, LON=51372";

std::string replyText(const DecodedReply& decoded) {
    std::string line;
    appendReply(line, decoded);
    return line;
}

std::string fieldsText(const DecodedReply& decoded) {
    std::string lines;
    appendFields(lines, decoded);
    return lines;
}

TEST(ReplyText, IsOneLineInColumns) {
    const struct {
        std::string line;
        std::string text;
    } rows[] = {
        // stamps wider than the column push it to the right
        {"999999999999.999," + good, "999999999999.999  " + text},
        // beyond repair, a format without a class, cut short
        {beyondRepair, "             -  DF-17  ------  refused  8D40621D58C382D690C8AC2863A6"},
        {"08", "             -  DF-1   ------  refused  08"},
        {"8D40621D58C3", "             -  DF-17  ------  refused  8D40621D58C3"},
        // a frame with bytes behind it counts as it is
        {good + "FF", "             -  " + text},
        // a DF-19 of another application tells no address
        {hexBytes(simulator::df19(address, 1, airSpeed)),
         "             -  DF-19  ------  Low      AF: 1; AA: 00; ME: "},
        // an all-zero reply: the address has six digits
        {"00000000000000", "             -  DF-0   000000  Low      VS: AIR; AC: -1000"},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(replyText(decodedLast({row.line})), row.text + "\n");
    }
}

TEST(FieldsText, HasTheFieldsOfTheReplyAndThoseOfItsPayload) {
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

} // namespace

} // namespace tolvarin::ondrel::client
