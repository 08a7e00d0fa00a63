#include "text.h"

#include "support/bytes.h"

#include <gtest/gtest.h>

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

TEST(Text, TakesBytesByPointerAndSize) {
    const std::string bytes = "00 0A FF"_hex;
    EXPECT_EQ(text::bytes(bytes.data(), 3), bytes);
    EXPECT_EQ(text::bytes(bytes.data(), 1), std::string(1, '\0'));
    EXPECT_EQ(text::bytes(nullptr, 0), "");
    EXPECT_EQ(text::bytes(nullptr, 14), "");
}

} // namespace
} // namespace tolvarin::ondrel
