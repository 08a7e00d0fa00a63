#include "apps/json/json_object.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <cstdint>
#include <limits>
#include <string>
#include <vector>

namespace tolvarin::ondrel::client {

namespace {

TEST(JsonObject, HasItsKeysInOrder) {
    std::string text = "before ";
    JsonObject object(text);
    object.whole("a", -5);
    object.flag("b", true);
    object.words("c", "KLM1023");
    object.hex("d", std::string("\x01\xAF", 2));
    object.list("e", std::vector<int>{1, 2},
                [](JsonObject& one, int item) { one.whole("item", item); });
    object.list("f", std::vector<int>{}, [](JsonObject& /*one*/, int /*item*/) {});
    object.end();
    EXPECT_EQ(text, R"(before {"a":-5,"b":true,"c":"KLM1023","d":"01AF",)"
                    R"("e":[{"item":1},{"item":2}],"f":[]})");
}

TEST(JsonObject, EscapesEveryByteThatIsNoPlainCharacter) {
    for (int byte = 0; byte < 256; ++byte) {
        const std::string word = std::string("x") + static_cast<char>(byte) + "y";
        std::string text;
        JsonObject object(text);
        object.words("word", word);
        object.end();
        const std::string expected = byte < 0x80 ? word : "x\xEF\xBF\xBDy"; // U+FFFD
        EXPECT_EQ(nlohmann::json::parse(text)["word"], expected) << text;
        for (const char character : text) {
            EXPECT_TRUE(character >= ' ' && character <= '~') << byte;
        }
    }
}

TEST(JsonObject, WritesNumbersThatReadAsTheSame) {
    using Whole = std::numeric_limits<std::int64_t>;
    using Decimal = std::numeric_limits<double>;
    for (const std::int64_t value : {std::int64_t{0}, Whole::min(), Whole::max()}) {
        std::string text;
        JsonObject object(text);
        object.whole("n", value);
        object.end();
        EXPECT_EQ(nlohmann::json::parse(text)["n"].get<std::int64_t>(), value);
    }
    for (const double value :
         {0.0, -0.5, 52.2572021484375, 1.0 / 3, Decimal::lowest(), Decimal::denorm_min()}) {
        std::string text;
        JsonObject object(text);
        object.decimal("n", value);
        object.end();
        EXPECT_EQ(nlohmann::json::parse(text)["n"].get<double>(), value);
    }
    std::string text;
    JsonObject object(text);
    object.decimal("n", Decimal::infinity());
    object.decimal("n", Decimal::quiet_NaN());
    object.end();
    EXPECT_EQ(text, "{}");
}

} // namespace

} // namespace tolvarin::ondrel::client
