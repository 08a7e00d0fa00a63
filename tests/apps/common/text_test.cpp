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
    EXPECT_EQ(timeText(4102444800000), "2100-01-01T00:00:00.000Z"); // no seconds of 32 bits
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
    const std::string plain = "a b~\nK\u00F6ln \u00C2\u00A0\u015B\u0800\u201B\U0001F6EB\U0010FFFD";
    EXPECT_EQ(safeText(plain), plain);
    EXPECT_EQ(safeText("\x1B[2J\r\x7F\u009B\u0080"), "\\x1B[2J\\x0D\\x7F\\x9B\\x80");
    EXPECT_EQ(safeText(std::string(1, '\0')), "\\x00");
}

TEST(Text, IsSafeWithoutBytesThatAreNoUtf8) {
    const struct {
        std::string text;
        std::string safe;
    } rows[] = {
        {"\x9B"
         "2J",
         "\\x9B2J"},
        {"\xC2", "\\xC2"},
        {"\xC2\n", "\\xC2\n"},
        {"\xE2\x80", "\\xE2\\x80"},
        {"\xE2\x80"
         "a",
         "\\xE2\\x80"
         "a"},
        {"\xC1\x9B", "\\xC1\\x9B"}, // too long
        {"\xE0\x82\x9B", "\\xE0\\x82\\x9B"},
        {"\xF0\x80\x82\x9B", "\\xF0\\x80\\x82\\x9B"},
        {"\xF5\x80\x80\x80", "\\xF5\\x80\\x80\\x80"},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(safeText(row.text), row.safe);
    }
}

TEST(Text, OfANameIsOneLine) {
    EXPECT_EQ(shownName("a\nb\n\x1B"), "a\\x0Ab\\x0A\\x1B");
    EXPECT_EQ(shownName("K\u00F6ln.txt"), "K\u00F6ln.txt");
}

TEST(Text, OfAListNamesItsLastWordDifferently) {
    EXPECT_EQ(listText({}, "or"), "");
    EXPECT_EQ(listText({"a"}, "or"), "a");
    EXPECT_EQ(listText({"a", "b"}, "or"), "a or b");
    EXPECT_EQ(listText({"a", "b", "c"}, "and"), "a, b and c");
}

} // namespace

} // namespace tolvarin::ondrel::client
