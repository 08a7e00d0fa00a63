#include "apps/input/foreign_content.h"

#include <gtest/gtest.h>

#include <string>

namespace tolvarin::ondrel::client {

namespace {

using namespace std::string_literals;

TEST(ForeignContent, IsNamedByItsFirstBytes) {
    const struct {
        std::string beginning;
        std::string name; ///< how the sentence begins
    } rows[] = {
        {"\xFF\xFE*\0"s, "UTF-16"},
        {"\xFE\xFF\0*"s, "UTF-16"},
        {"1\0"
         "7\0"
         "0\0"
         "0\0"s,
         "UTF-16"},
        {"\0"
         "1\0"
         "7\0"
         "0\0"
         "0"s,
         "UTF-16"},
        {"\xFF\xFE\0\0*\0\0\0"s, "UTF-32"},
        {"\0\0\xFE\xFF\0\0\0*"s, "UTF-32"},
        {"*\0\0\0A\0\0\0"s, "UTF-32"},
        {"\0\0\0*\0\0\0A"s, "UTF-32"},
        {"# x\r*8D;\r", "text whose lines end with a carriage return"},
        {"PK\x03\x04", "a zip archive"},
        {"\xFD"
         "7zXZ\0"s,
         "xz"},
        {"\x28\xB5\x2F\xFD", "zstd"},
        {"BZh9", "bzip2"},
        {"\x1F\x8B\x08", "gzip"},
        {std::string(257, 'x') + "ustar", "a tar archive"},
        // text, perhaps damaged, or too little of anything
        {"", ""},
        {"*8D;\r", ""},
        {"*8D;\r\n*8D;\r\n", ""},
        {"*8D;\r\x01", ""},
        {"*\0\0\0A\0\0"s, ""},
        {"PK", ""},
        {"xz", ""},
        {"1\0"
         "7\0"
         "0\0"s,
         ""},
        {"1\0"
         "7\0"
         "0\0\0\0"s,
         ""},
        {std::string(8, '\0'), ""},
        {"\xEF\xBB\xBF*8D", ""},
        {std::string(257, 'x') + "usta", ""},
    };
    for (const auto& row : rows) {
        const std::string sentence = foreignContent(row.beginning);
        EXPECT_EQ(sentence.substr(0, row.name.size()), row.name) << row.beginning;
        EXPECT_EQ(sentence.empty(), row.name.empty()) << row.beginning;
    }
}

TEST(ForeignContent, OfGzipDataCanBePiped) {
    const std::string sentence = foreignContent("\x1F\x8B");
    const std::string end = " FILE | ondrel COMMAND -";
    EXPECT_EQ(sentence.substr(sentence.size() - end.size()), end);
}

TEST(ForeignContent, HeaderLinesNameColumns) {
    for (const char* line :
         {"time,hex", "Time;Reply", "\"time stamp\", \"raw\"", "time,raw (hex),dB\r"}) {
        EXPECT_TRUE(isHeaderLine(line)) << line;
    }
    for (const char* line :
         {"", "nonsense", "time,", ",time", "time,8D40", "1.5,hex", "time,,hex", "time,hex\x01",
          "x,A0001838CA3E51F0A8000047A36A", "*8D40;", "{\"time\",1}"}) {
        EXPECT_FALSE(isHeaderLine(line)) << line;
    }
}

} // namespace

} // namespace tolvarin::ondrel::client
