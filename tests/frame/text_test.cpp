#include "text.h"

#include "support/bytes.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <limits>
#include <string>

namespace tolvarin::ondrel {
namespace {

using test::operator""_hex;

TEST(Text, WritesBytesWithTwoDigitsEach) {
    EXPECT_EQ(text::hexBytes(""), "");
    EXPECT_EQ(text::hexBytes("8D 0A 00 FF 10"_hex), "8D0A00FF10");
}

TEST(Text, WritesAtLeastTwoHexadecimalOrFourOctalDigits) {
    const struct {
        u32 value;
        const char* hex;
        const char* octal;
    } rows[] = {
        {0, "00", "0000"},
        {5, "05", "0005"},
        {8, "08", "0010"},
        {0xFF, "FF", "0377"},
        {0x100, "100", "0400"},
        {0xFFF, "FFF", "7777"},
        {0x1000, "1000", "10000"},
        {0xABCDEF, "ABCDEF", "52746757"},
        {0x654321, "654321", "31241441"},
        {0xFFFFFFFF, "FFFFFFFF", "37777777777"},
    };
    for (const auto& [value, hex, octal] : rows) {
        EXPECT_EQ(text::hex(value), hex);
        EXPECT_EQ(text::octal(value), octal);
    }
}

TEST(Text, PutsWordsAndNumbersTogether) {
    const std::string line = text::Line() << "i32 " << std::numeric_limits<i32>::min() << ", u32 "
                                          << ~u32{0} << ", u8 " << u8{7} << std::string(", end");
    EXPECT_EQ(line, "i32 -2147483648, u32 4294967295, u8 7, end");
    EXPECT_EQ(std::string(text::Line()), "");
}

TEST(Text, WritesNumbersWithSixSignificantDigits) {
    const struct {
        double value;
        const char* text;
    } rows[] = {
        {0, "0"},
        {357.1875, "357.188"},
        {175, "175"},
        {0.125, "0.125"},
        {1234567, "1.23457e+06"},
        {-std::numeric_limits<double>::max(), "-1.79769e+308"},
        {-std::numeric_limits<double>::denorm_min(), "-4.94066e-324"},
    };
    for (const auto& [value, expected] : rows) {
        EXPECT_EQ(std::string(text::Line() << value), expected);
    }
}

TEST(Text, MayHaveAnyLength) {
    for (std::size_t length = 0; length < 300; ++length) {
        const std::string words(length, 'w');
        text::Line line;
        line << words << -1 << words;
        line.hexBytes(words).octal(0xFFFFFFFF) << words << 0.5;
        EXPECT_EQ(std::string(line),
                  words + "-1" + words + text::hexBytes(words) + "37777777777" + words + "0.5");
    }
}

TEST(Text, TakesBytesByPointerAndSize) {
    const std::string bytes = "00 0A FF"_hex;
    EXPECT_EQ(text::bytes(bytes.data(), 3), bytes);
    EXPECT_EQ(text::bytes(bytes.data(), 1), std::string(1, '\0'));
    EXPECT_EQ(text::bytes(nullptr, 0), "");
    EXPECT_EQ(text::bytes(nullptr, 14), "");
}

} // namespace
} // namespace tolvarin::ondrel
