#include "simulator/recording.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <sstream>
#include <string>

using namespace tolvarin::ondrel::simulator;

namespace {

Reply reply(std::uint64_t timeMs) {
    Reply made;
    made.timeMs = timeMs;
    made.bytes = std::string("\x5D\x48\x40\xD6\xF8\x00\x0F", 7);
    return made;
}

TEST(Recording, WritesEachForm) {
    const struct {
        std::uint64_t timeMs;
        LineForm form;
        const char* line;
    } rows[] = {
        {1700000000007, LineForm::Seconds, "1700000000.007,5D4840D6F8000F"},
        {1700000061000, LineForm::Seconds, "1700000061.000,5D4840D6F8000F"},
        {1700000000000, LineForm::Ticks, "@0000000000005D4840D6F8000F;"},
        {1700000001000, LineForm::Ticks, "@000000B71B005D4840D6F8000F;"},
        {1700000000000, LineForm::Frame, "*5D4840D6F8000F;"},
        {1700000000000, LineForm::Bare, "5D4840D6F8000F"},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(recordingLine(reply(row.timeMs), row.form, 1700000000000), row.line);
    }
}

TEST(Recording, HoldsCommentsAndAllReplies) {
    TrafficOptions options;
    options.seconds = 2;
    options.damage.cut = 0.3;
    Traffic traffic(options);
    std::ostringstream out;
    const std::size_t count =
        writeRecording(out, traffic, LineForm::Seconds, options.startMs, {"first", "second"});
    EXPECT_EQ(out.str().rfind("# first\n# second\n1700000000.", 0), 0U);
    EXPECT_EQ(out.str().back(), '\n');

    Traffic again(options);
    std::istringstream lines(out.str());
    std::string line;
    std::size_t replies = 0;
    while (std::getline(lines, line)) {
        if (line[0] != '#') {
            ++replies;
            EXPECT_EQ(line, recordingLine(*again.next(), LineForm::Seconds, options.startMs));
        }
    }
    EXPECT_EQ(replies, count);
    EXPECT_GT(count, 100U);
    EXPECT_FALSE(again.next());
}

} // namespace
