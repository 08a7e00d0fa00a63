#include "apps/input/reply_line.h"

#include "apps/common/text.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <optional>
#include <string>

namespace tolvarin::ondrel::client {

namespace {

using namespace std::string_literals;

TEST(ReplyLine, GivesBytesAndStamp) {
    struct Row {
        std::string line;
        std::string hex;
        std::optional<u64> stampMs;
    };
    const Row rows[] = {
        // the forms
        {"5DA0148814073A", "5DA0148814073A", {}},
        {"@000000002EE05DA0148814073A;", "5DA0148814073A", 1},
        {"1641427457.780,5DA0148814073A", "5DA0148814073A", 1641427457780},
        {"%000000002EE05DA0148814073A;", "5DA0148814073A", 1},
        {"<000000002EE0645DA0148814073A;", "5DA0148814073A", 1},
        {"@FF004D4C41545DA0148814073A;", "5DA0148814073A", {}}, // of multilateration
        // digits of either case, surrounding blanks, other systems' line ends
        {"*5da0AbcDeF073a;", "5DA0ABCDEF073A", {}},
        {" \t5DA0\r", "5DA0", {}},
        {" 1.5 ,\t5DA0 ", "5DA0", 1500},
        // any length from one byte on; a reply of zeros is one
        {"00", "00", {}},
        {"*00000000000000000000000000000000;", "00000000000000000000000000000000", {}},
        // a counter of 12 MHz: below one millisecond, its last tick, and its whole range
        {"@000000002EDF00;", "00", 0},
        {"@00000000000000;", "00", {}}, // no time
        {"@ffffffffffff00;", "00", 23456248059},
        // fractions are cut to milliseconds, not rounded; short ones are filled up
        {"0,00", "00", 0},
        {"7.04,00", "00", 7040},
        {"7.0019999,00", "00", 7001},
        {"0007.9999999999999999999999999999999,00", "00", 7999},
        // the largest stamp; a fraction without the precision of a double
        {"999999999999.999,00", "00", 999999999999999},
        {"9007199254.993,00", "00", 9007199254993},
    };
    ReceiverCounter counter;
    Reply reply;
    std::string error;
    for (const Row& row : rows) {
        EXPECT_EQ(readReplyLine(row.line, counter, reply, error), LineContent::Reply) << row.line;
        EXPECT_EQ(hexBytes(reply.bytes), row.hex) << row.line;
        EXPECT_EQ(reply.stampMs, row.stampMs) << row.line;
    }
}

TEST(ReplyLine, GivesSignalAndSourceOfTheLineAlone) {
    ReceiverCounter counter;
    Reply reply;
    std::string error;
    struct Row {
        const char* line;
        unsigned amplitude;
        unsigned source;
    };
    for (const auto& [line, amplitude, source] :
         {Row{"<000000002EE0FE5DA0148814073A;", 0xFE, 0}, Row{"*5DA0148814073A;", 0, 0},
          Row{"1,5DA0148814073A,255,64", 255, 64}, Row{"1, 5DA0148814073A , 7", 7, 0},
          Row{"1,5DA0148814073A,,3", 0, 3}}) {
        EXPECT_EQ(readReplyLine(line, counter, reply, error), LineContent::Reply);
        EXPECT_EQ(reply.signalAmplitude, amplitude);
        EXPECT_EQ(reply.source, source);
    }
}

TEST(ReplyLine, HasSevenOrFourteenBytes) {
    for (unsigned format = 0; format < 32; ++format) {
        std::string bytes;
        for (std::size_t size = 1; size < 20; ++size) {
            bytes.resize(size);
            bytes.front() = static_cast<char>(static_cast<u8>(format << 3U));
            EXPECT_EQ(lengthFits(bytes), size == (format < 16 ? 7 : 14)) << format;
        }
    }
}

TEST(ReplyLine, SkipsBlankLinesAndComments) {
    ReceiverCounter counter;
    Reply reply;
    std::string error;
    for (const char* line : {"", " ", "\t \r", "#", "# *5DA0;", "  #5DA0"}) {
        EXPECT_EQ(readReplyLine(line, counter, reply, error), LineContent::Nothing) << line;
    }
}

TEST(ReplyLine, TellsWhatIsWrong) {
    struct Row {
        std::string line;
        std::string reason; ///< how it begins
    };
    const Row rows[] = {
        // digits
        {"*5DA;", "the reply has an odd number of hexadecimal digits (3)"},
        {"5D A0", "a blank is not a hexadecimal digit"},
        {"5DA0;", "';' is not a hexadecimal digit"},
        {"*5D;A0;", "';' is not a hexadecimal digit"},
        {"5D\0A0"s, "byte 0x00 is not a hexadecimal digit"},
        {"\x1B[2J", "byte 0x1B is not a hexadecimal digit"},
        // nothing there
        {"*;", "the reply is empty"},
        {"@000000000000;", "the reply is empty"},
        {"1.5,", "the reply is empty"},
        // the frame of a line
        {"*5DA0", "the line does not end with ';'"},
        {"@", "the line does not end with ';'"},
        {"@0000000000005DA0", "the line does not end with ';'"},
        {"@00000000000;", "the counter is too short"},
        {"<0000000000005;", "the counter is too short"},
        {"<000000000000g05DA0;", "'g' is not a hexadecimal digit"},
        {"@00000000000x5DA0;", "'x' is not a hexadecimal digit"},
        // decimal stamps
        {",5DA0", "the time stamp is incomplete"},
        {"5.,5DA0", "the time stamp is incomplete"},
        {"-1,5DA0", "'-' is not a decimal digit"},
        {"1.2.3,5DA0", "'.' is not a decimal digit"},
        {"1,5,5DA0", "the reply has an odd number of hexadecimal digits (1)"},
        {"1,5DA0,256", "the signal amplitude is no whole number from 0 to 255"},
        {"1,5DA0,-1", "the signal amplitude is no whole number"},
        {"1,5DA0,1,65", "the source is no whole number from 0 to 64"},
        {"1,5DA0,1,2,3", "the source is no whole number"},
        {"1000000000000,00",
         "the time stamp is in milliseconds; expected seconds: put a point before "
         "its last 3 digits"},
        {"1641427457780,00", "the time stamp is in milliseconds"},
        {"1641427457780.5,00", "the time stamp is in milliseconds"},
        {"1641427457780123,00", "the time stamp is in microseconds"},
        {"1641427457780123456,00", "the time stamp is in nanoseconds"},
        {"99999999999999999999999999,00", "the time stamp is too large"},
    };
    ReceiverCounter counter;
    Reply reply;
    std::string error;
    for (const Row& row : rows) {
        EXPECT_EQ(readReplyLine(row.line, counter, reply, error), LineContent::Error) << row.line;
        EXPECT_EQ(error.substr(0, row.reason.size()), row.reason) << error;
        EXPECT_NE(error.find("; expected "), std::string::npos) << error;
    }
}

} // namespace

} // namespace tolvarin::ondrel::client
