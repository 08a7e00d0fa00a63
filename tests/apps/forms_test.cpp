#include "decoded_lines.h"

#include "apps/decode_summary.h"
#include "apps/hex.h"
#include "apps/json_form.h"
#include "apps/progress.h"
#include "apps/text_form.h"

#include "simulator/frame_encoder.h"

#include <gtest/gtest.h>

#include <ostream>
#include <sstream>
#include <string>
#include <vector>

namespace tolvarin::ondrel::client {

namespace {

// A position of 40621D, as the public literature on Mode S prints it. What is wrong within the
// parity field itself cannot be repaired.
const std::string good = "8D40621D58C382D690C8AC2863A7";
const std::string oneBitWrong = "8D40621D59C382D690C8AC2863A7";
const std::string text = "DF-17  40621D  High     CA: 5; AA: 40621D; ME: 58C382D690C8AC"
                         " | TC=POS_AIR, AT=BARO, ALT=38000, CPR=EVEN, LAT=93000, LON=51372";
const std::string beyondRepair = "8D40621D58C382D690C8AC2863A6";

const std::string withoutPayload = hexBytes(simulator::df17(0x40621D, 5, ""));

struct TextRow {
    std::vector<std::string> lines; ///< the last one is shown
    std::string text;
};

std::ostream& operator<<(std::ostream& out, const TextRow& row) {
    return out << row.lines.back();
}

class TextForm : public testing::TestWithParam<TextRow> {};

TEST_P(TextForm, isOneLineInColumns) {
    EXPECT_EQ(textForm(decodedLast(GetParam().lines)), GetParam().text);
}

const TextRow textRows[] = {
    // stamps: none, of the wall clock, of a counter, wider than the column
    {{good}, "             -  " + text},
    {{"1700000000.05," + good}, "1700000000.050  " + text},
    {{"@000002DC6C00" + good + ";"}, "         4.000  " + text},
    {{"18446744073709551.615," + good}, "18446744073709551.615  " + text},
    // repaired, beyond repair, a format without a class, cut short
    {{oneBitWrong}, "             -  " + text + " [repaired]"},
    {{beyondRepair}, "             -  DF-17  ------  refused  8D40621D58C382D690C8AC2863A6"},
    {{"08"}, "             -  DF-1   ------  refused  08"},
    {{"F8FF"}, "             -  DF-24  ------  refused  F8FF"},
    {{"8D40621D58C3"}, "             -  DF-17  ------  refused  8D40621D58C3"},
    // a frame with bytes behind it counts as it is
    {{good + "FF"}, "             -  " + text},
    // an all-zero reply: the address has six digits
    {{"00000000000000"}, "             -  DF-0   000000  Low      VS: AIR; AC: -1000"},
};
INSTANTIATE_TEST_SUITE_P(Forms, TextForm, testing::ValuesIn(textRows));

TEST(DecodedReply, hasTheStampOfItsLine) {
    const DecodedReply stamped = decodedLast({"1.5," + good});
    EXPECT_EQ(stamped.message->timeStamp(), 1500U);
    EXPECT_EQ(stamped.message->timeSource(), ModeSMessage::External);
    EXPECT_EQ(decodedLast({good}).message->timeSource(), ModeSMessage::Internal);
}

TEST(JsonForm, hasAllOfADecodedReply) {
    auto form = jsonForm(decodedLast({"1.5," + oneBitWrong}));
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
    EXPECT_EQ(jsonForm(decodedLast({beyondRepair})).dump(),
              R"({"stamp_ms":null,"format":"DF-17","refused":true,)"
              R"("received":"8D40621D58C382D690C8AC2863A6"})");
}

TEST(JsonForm, keepsTheLargestStamp) {
    const auto form = jsonForm(decodedLast({"18446744073709551.615," + good}));
    EXPECT_EQ(form["stamp_ms"].dump(), "18446744073709551615");
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

TEST(ProgressBar, leavesNothingBehind) {
    std::ostringstream terminal;
    {
        ProgressBar bar(terminal);
        bar.show(0, 4);
        bar.show(0, 4);
    }
    const std::string whole = progressText(0, 4);
    EXPECT_EQ(terminal.str(), "\r" + whole + "\r" + std::string(whole.size(), ' ') + "\r");
}

} // namespace

} // namespace tolvarin::ondrel::client
