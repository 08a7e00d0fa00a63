#include "apps/sbs/sbs_line.h"

#include "apps/decoded_lines.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <optional>
#include <string>
#include <vector>

namespace tolvarin::ondrel::client {

namespace {

using namespace simulator;

constexpr u64 nowMs = 1700000001007;
const std::optional<Position> noPosition;

std::string lineOf(const std::string& frame, const std::optional<Position>& position = noPosition,
                   const std::string& stamp = "1700000000.250") {
    const DecodedReply decoded = decodedLast({stamp + "," + hexBytes(frame)});
    std::string text = "before|";
    appendSbsLine(text, *decoded.message,
                  decoded.payload ? decoded.payload->message.get() : nullptr, position, nowMs);
    return text.substr(7);
}

/// Numbered from 1, as the page does.
std::string column(const std::string& line, unsigned number) {
    std::size_t begin = 0;
    for (unsigned i = 1; i < number; ++i) {
        begin = line.find(',', begin) + 1;
    }
    return line.substr(begin, line.find_first_of(",\r", begin) - begin);
}

std::string velocity(int eastKt, int northKt, int rateFtMin) {
    VelocityFields fields;
    fields.verticalRateFtMin = rateFtMin;
    return df17(address, 5, groundVelocity(fields, eastKt, northKt, false));
}

std::string position(unsigned status, unsigned typeCode = 11, int altitudeFt = 38000) {
    AirbornePosition fields;
    fields.surveillanceStatus = status;
    fields.typeCode = typeCode;
    fields.altitudeFt = altitudeFt;
    return df17(address, 5, airbornePosition(fields));
}

// Each kind of line, whole.
TEST(SbsLine, HasAllColumns) {
    const std::string head = ",1,1,4840D6,1,2023/11/14,22:13:20.250,2023/11/14,22:13:21.007,";
    const std::optional<Position> place = Position{{-5.123456, -0.000001}, 1700000000250};
    EXPECT_EQ(lineOf(df17(address, 5, identification(4, 3, "KLM1023"))),
              "MSG,1" + head + "KLM1023,,,,,,,,,,,\r\n");
    EXPECT_EQ(lineOf(position(0), place),
              "MSG,3" + head + ",38000,,,-5.12346,0.00000,,,0,0,0,0\r\n");
    EXPECT_EQ(lineOf(position(0)), "MSG,3" + head + ",38000,,,,,,,0,0,0,0\r\n");
    EXPECT_EQ(lineOf(velocity(300, -400, -832)), "MSG,4" + head + ",,500.0,143.1,,,-832,,,,,\r\n");
    EXPECT_EQ(lineOf(df4(address, {0}, 3025)), "MSG,5" + head + ",3025,,,,,,,0,,0,0\r\n");
    EXPECT_EQ(lineOf(df5(address, {1}, 0123)), "MSG,6" + head + ",,,,,,,0123,0,0,0,-1\r\n");
    EXPECT_EQ(lineOf(df11(address, 5, 0)), "MSG,8" + head + ",,,,,,,,,,,0\r\n");
    EXPECT_EQ(lineOf(df20(address, {0}, 3025, "")), lineOf(df4(address, {0}, 3025)));
    EXPECT_EQ(lineOf(df21(address, {1}, 0123, "")), lineOf(df5(address, {1}, 0123)));
}

// What a value or a flag of a message does to the column that has its meaning.
TEST(SbsLine, TellsWhatTheMessageTells) {
    const struct {
        unsigned number;
        const char* meaning;
        std::string frame;
        const char* content;
    } rows[] = {
        {11, "callsign without blanks", df17(address, 5, identification(2, 0, "")), ""},
        {12, "altitude below zero", df4(address, {0}, -975), "-975"},
        {12, "altitude code 0", df4(address, {0}, -1000), "-1000"},
        {12, "a GNSS height is no barometric altitude", position(0, 20), ""},
        {13, "speed not available", df17(address, 5, std::string("\x99\0\0\0\0\0\0", 7)), ""},
        {13, "at a standstill", velocity(0, 0, 0), "0.0"},
        {14, "no direction at a standstill", velocity(0, 0, 0), ""},
        {14, "as near to north as can be, below 360", velocity(-1, 1021, 0), "359.9"},
        {17, "level flight", velocity(1, 1, 0), "0"},
        {17, "rate not available", df17(address, 5, std::string("\x99\0\0\0\0\0\0", 7)), ""},
        {18, "leading zeros", df5(address, {0}, 7), "0007"},
        {19, "alert, in the air", df4(address, {2}, 0), "-1"},
        {19, "alert, on the ground", df5(address, {3}, 0), "-1"},
        {19, "alert and SPI", df4(address, {4}, 0), "-1"},
        {19, "SPI alone", df4(address, {5}, 0), "0"},
        {19, "status that is reserved", df4(address, {6}, 0), ""},
        {19, "emergency in a position", position(1), "-1"},
        {19, "changed squawk in a position", position(2), "-1"},
        {19, "SPI in a position", position(3), "0"},
        {20, "hijack", df5(address, {2}, 07500), "-1"},
        {20, "radio failure", df5(address, {2}, 07600), "-1"},
        {20, "emergency", df5(address, {2}, 07700), "-1"},
        {20, "alert without emergency", df5(address, {2}, 07000), "0"},
        {20, "an altitude reply does not tell", df4(address, {2}, 0), ""},
        {20, "emergency in a position", position(1), "-1"},
        {20, "changed squawk in a position", position(2), "0"},
        {21, "SPI", df4(address, {5}, 0), "-1"},
        {21, "alert and SPI", df5(address, {4}, 0), "-1"},
        {21, "alert alone", df4(address, {2}, 0), "0"},
        {21, "SPI in a position", position(3), "-1"},
        {22, "on the ground", df4(address, {1}, 0), "-1"},
        {22, "on the ground with alert", df4(address, {3}, 0), "-1"},
        {22, "in the air with alert", df5(address, {2}, 0), "0"},
        {22, "SPI is sent everywhere", df5(address, {5}, 0), ""},
        {22, "transponder on the ground", df11(address, 4, 0), "-1"},
        {22, "transponder in the air", df11(address, 5, 0), "0"},
        {22, "transponder that does not tell", df11(address, 6, 0), ""},
    };
    for (const auto& row : rows) {
        const std::string line = lineOf(row.frame);
        EXPECT_EQ(std::count(line.begin(), line.end(), ','), 21) << line;
        EXPECT_EQ(column(line, row.number), row.content) << row.meaning << ": " << line;
    }
}

TEST(SbsLine, HasNoneForOtherMessages) {
    for (const std::string& frame :
         {df0(address, {}), df16(address, {}, ""), df18(address, 0, identification(4, 0, "A")),
          df17(address, 5, airSpeed), df17(address, 5, surfacePosition({})),
          df17(address, 5, emergencyStatus(1, 07700))}) {
        EXPECT_EQ(lineOf(frame), "") << hexBytes(frame);
    }
}

// The counter of a receiver, or no stamp at all.
TEST(SbsLine, HasNoDateThatIsNotKnown) {
    const std::string line = lineOf(df11(address, 5, 0), noPosition, "12.5");
    EXPECT_EQ(line, "MSG,8,1,1,4840D6,1,,,2023/11/14,22:13:21.007,,,,,,,,,,,,0\r\n");
}

TEST(SbsLine, HasTheColumnsOfThePage) {
    std::ifstream page(ONDREL_DOCS "/outputs.md");
    std::string line;
    unsigned next = 1;
    while (std::getline(page, line)) {
        next += line.rfind("| " + std::to_string(next) + " | ", 0) == 0 ? 1U : 0U;
    }
    const std::string sent = lineOf(df11(address, 5, 0));
    EXPECT_EQ(next - 1, 1 + std::count(sent.begin(), sent.end(), ','));
}

} // namespace

} // namespace tolvarin::ondrel::client
