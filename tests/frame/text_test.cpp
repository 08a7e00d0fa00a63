#include "text.h"

#include "support/bytes.h"

#include <gtest/gtest.h>

#include <array>
#include <cstdio>

namespace tolvarin::ondrel {
namespace {

using test::operator""_hex;

/// Prints as the C library does: %.2X or %.4o.
std::string printedHex(u32 value) {
    std::array<char, 16> buffer{};
    std::snprintf(buffer.data(), buffer.size(), "%.2X", value);
    return buffer.data();
}
std::string printedOctal(u32 value) {
    std::array<char, 16> buffer{};
    std::snprintf(buffer.data(), buffer.size(), "%.4o", value);
    return buffer.data();
}

TEST(Text, WritesBytesWithTwoDigitsEach) {
    EXPECT_EQ(text::hexBytes(""), "");
    EXPECT_EQ(text::hexBytes("8D 0A 00 FF 10"_hex), "8D0A00FF10");
}

TEST(Text, WritesHexadecimalLikePrintf) {
    for (const u32 value : {0U, 5U, 0xFU, 0x10U, 0xFFU, 0x100U, 0xABCDU, 0xFFFFFFU, 0xFFFFFFFFU}) {
        EXPECT_EQ(text::hex(value), printedHex(value));
    }
    for (u32 value = 0; value < 0x1000000; value += 997) {
        ASSERT_EQ(text::hex(value), printedHex(value));
    }
}

TEST(Text, WritesEveryIdentityLikePrintf) {
    for (u32 identity = 0; identity < 4096; ++identity) {
        ASSERT_EQ(text::octal(identity), printedOctal(identity));
    }
    EXPECT_EQ(text::octal(0xFFFFFFFF), printedOctal(0xFFFFFFFF));
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
