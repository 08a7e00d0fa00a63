#include "apps/common/text.h"

#include <gtest/gtest.h>

#include <cctype>
#include <cstddef>
#include <string>

namespace tolvarin::ondrel::client {

namespace {

TEST(Text, OfHexadecimalDigitsIsReadInFullOrNotAtAll) {
    std::string bytes = "as before";
    EXPECT_TRUE(readHexBytes("00fFa5", bytes));
    EXPECT_EQ(hexBytes(bytes), "00FFA5");
    for (int character = 0; character < 256; ++character) {
        const auto digit = static_cast<char>(character);
        const bool known = std::isxdigit(character) != 0;
        EXPECT_EQ(readHexBytes(std::string{'0', digit, '1', '2'}, bytes), known) << character;
        EXPECT_EQ(readHexBytes(std::string{'1', '2', digit, '0'}, bytes), known) << character;
        EXPECT_EQ(hexDigit(digit).has_value(), known) << character;
    }
    EXPECT_FALSE(readHexBytes("123", bytes));
}

TEST(Text, OfNumbersHasNoNegativeZeroAndTellsTheTime) {
    EXPECT_EQ(decimalText(-0.04, 1), "0.0");
    EXPECT_EQ(decimalText(-0.06, 1), "-0.1");
    EXPECT_EQ(decimalText(-0.0, 0), "0");
    EXPECT_EQ(secondsText(5), "0.005");
    EXPECT_EQ(secondsText(1700000000020), "1700000000.020");
    EXPECT_EQ(timeText(1641427457080), "2022-01-06T00:04:17.080Z");
    EXPECT_EQ(timeText(946684799999), "946684799.999"); // no date before 2000
    EXPECT_EQ(timeText(946684800000), "2000-01-01T00:00:00.000Z");
    EXPECT_NE(timeText(~u64{0}), "");
}

TEST(Text, IsBrokenAtBlanksIntoLinesOfItsWidth) {
    const struct {
        std::string text;
        std::size_t width;
        std::string lines;
    } rows[] = {
        {"", 1, ""},
        {"one two", 7, "one two"},
        {"one two", 6, "one\ntwo"},
        {"one two three", 7, "one two\nthree"},
        {"threefold", 5, "three\nfold"},
        {"a threefold", 5, "a\nthree\nfold"},
        {"ab", 1, "a\nb"},
        {"ab", 0, "a\nb"},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(wrapped(row.text, row.width), row.lines);
    }
}

TEST(Text, IsSafeWithoutControlCharacters) {
    EXPECT_EQ(safeText("a b~\nK\u00F6ln \u00C2"), "a b~\nK\u00F6ln \u00C2");
    EXPECT_EQ(safeText("\x1B[2J\r\x7F\u009B"), "\\x1B[2J\\x0D\\x7F\\x9B");
    EXPECT_EQ(safeText("\xC2"), "\xC2");
    EXPECT_EQ(safeText(std::string(1, '\0')), "\\x00");
}

TEST(Text, OfAListNamesItsLastWordDifferently) {
    EXPECT_EQ(listText({}, "or"), "");
    EXPECT_EQ(listText({"a"}, "or"), "a");
    EXPECT_EQ(listText({"a", "b"}, "or"), "a or b");
    EXPECT_EQ(listText({"a", "b", "c"}, "and"), "a, b and c");
}

} // namespace

} // namespace tolvarin::ondrel::client
