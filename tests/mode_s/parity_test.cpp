#include "parity.h"

#include "support/bytes.h"

#include <ondrel/df_messages.h>

#include <gtest/gtest.h>

#include <map>
#include <optional>
#include <random>
#include <set>

namespace tolvarin::ondrel {
namespace {

using test::inverted;
using test::plainParity;
using test::operator""_hex;

using Pair = std::pair<u8, u8>;

std::string randomBytes(std::mt19937& random, std::size_t size) {
    std::string bytes(size, '\0');
    for (char& byte : bytes) {
        byte = static_cast<char>(random() & 0xFF);
    }
    return bytes;
}

TEST(Parity, DoesNotDependOnTheLast24Bits) {
    const std::string frame = "8D 48 40 D6 20 2C C3 71 C3 2C E0"_hex;
    EXPECT_EQ(parity::sum(frame + "57 60 98"_hex, 112), 0x576098U);
    EXPECT_EQ(parity::sum(frame + "00 FF 55"_hex, 112), 0x576098U);
    EXPECT_EQ(parity::sum("00 00 00 FF 00 00 00"_hex, 24), 0U) << "bytes behind a shorter frame";
}

TEST(Parity, OfASingleBitIsItsPublishedRemainder) {
    EXPECT_EQ(parity::sum("80 00 00 00 00 00 00 00 00 00 00 00 00 00"_hex, 112), 0x3935EAU);
    EXPECT_EQ(parity::sum("40 00 00 00 00 00 00 00 00 00 00 00 00 00"_hex, 112), 0x1C9AF5U);
    EXPECT_EQ(parity::sum("00 00 00 01 00 00 00"_hex, 56), 0xFFF409U);
}

TEST(Parity, OfAnyBytesIsThatOfPolynomialDivision) {
    std::mt19937 random(1);
    for (int i = 0; i < 2000; ++i) {
        const u8 frameBits = i % 2 == 0 ? parity::shortBits : parity::longBits;
        const std::string frame = randomBytes(random, frameBits / 8 + random() % 4);
        ASSERT_EQ(parity::sum(frame, frameBits), plainParity(frame, frameBits));
    }
}

TEST(Parity, TakesMissingBytesAsZeroAndNoBitsAsNoParity) {
    const std::string frame = "8D 48 40"_hex;
    EXPECT_EQ(parity::sum(frame, 112), plainParity(frame + std::string(11, '\0'), 112));
    EXPECT_EQ(parity::sum("", 56), 0U);
    EXPECT_EQ(parity::sum("FF FF FF FF FF FF FF"_hex, 0), 0U);
}

// Repairs: every parity difference that one or two inverted bits make, in both frame lengths

class ParityRepair : public testing::TestWithParam<unsigned> {
protected:
    u8 frameBits() const { return static_cast<u8>(GetParam()); }

    const ModeSMessage& message() const {
        return frameBits() == parity::shortBits ? static_cast<const ModeSMessage&>(_short) : _long;
    }

    u32 difference(const std::vector<unsigned>& positions) const {
        return plainParity(inverted(std::string(frameBits() / 8, '\0'), positions), frameBits());
    }

private:
    DF11Message _short;
    DF17Message _long;
};

TEST_P(ParityRepair, FindsTheLowestBitAndTheLowestPairForEveryDifference) {
    std::map<u32, u8> bits;
    std::map<u32, Pair> pairs;
    for (u8 i = 0; i < frameBits(); ++i) {
        bits.emplace(difference({i}), i); // keeps the first, which is the lowest
        for (u8 j = static_cast<u8>(i + 1); j < frameBits(); ++j) {
            pairs.emplace(difference({i, j}), Pair{i, j});
        }
    }
    const auto check = [&](u32 value) {
        const auto bit = bits.find(value);
        const auto pair = pairs.find(value);
        ASSERT_EQ(parity::findBit(frameBits(), value),
                  bit == bits.end() ? std::nullopt : std::optional(bit->second));
        ASSERT_EQ(parity::findBitPair(frameBits(), value),
                  pair == pairs.end() ? std::nullopt : std::optional(pair->second));
    };
    for (const auto& entry : pairs) {
        check(entry.first);
        check(entry.first | 0x1000000); // no frame has more than 24 bits of parity
        for (unsigned bit = 0; bit < 24; ++bit) {
            check(entry.first ^ 1U << bit);
        }
    }
    for (const auto& entry : bits) {
        check(entry.first);
        check(entry.first | 0x80000000);
    }
}

constexpr u8 untouched = 255;

// Inverts up to five bits. The repair must invert those that the searches above find.
TEST_P(ParityRepair, InvertsTheBitsThatTheSearchFindsAndNoOthers) {
    std::mt19937 random(frameBits());
    unsigned beyondRepair = 0;
    for (unsigned i = 0; i < 2000; ++i) {
        const std::string good = randomBytes(random, frameBits() / 8 + i % 3);
        const u32 wanted = plainParity(good, frameBits());
        std::set<unsigned> flips;
        while (flips.size() < i % 6) {
            flips.insert(static_cast<unsigned>(random() % frameBits()));
        }
        const std::string damaged = inverted(good, {flips.begin(), flips.end()});
        const u32 difference = plainParity(damaged, frameBits()) ^ wanted;

        std::string copy = damaged;
        u8 position = untouched;
        const auto one = parity::findBit(frameBits(), difference);
        ASSERT_EQ(message().fixError1Bit(copy, position, wanted), one.has_value());
        ASSERT_EQ(position, one.value_or(untouched));
        ASSERT_EQ(copy, one ? inverted(damaged, {*one}) : damaged);

        copy = damaged;
        Pair positions{untouched, untouched};
        const auto two = parity::findBitPair(frameBits(), difference);
        ASSERT_EQ(message().fixError2Bits(copy, positions.first, positions.second, wanted),
                  two.has_value());
        ASSERT_EQ(positions, two.value_or(Pair(untouched, untouched)));
        ASSERT_EQ(copy, two ? inverted(damaged, {two->first, two->second}) : damaged);
        beyondRepair += one || two ? 0U : 1U;
    }
    EXPECT_GT(beyondRepair, 20U);
    EXPECT_FALSE(message().valid()) << "the searches change nothing in the message";
}

TEST_P(ParityRepair, RefusesAFrameThatIsTooShort) {
    for (std::size_t size = 0; size < frameBits() / 8; ++size) {
        std::string frame(size, '\0');
        u8 position = untouched;
        EXPECT_FALSE(message().fixError1Bit(frame, position, 0));
        EXPECT_FALSE(message().fixError2Bits(frame, position, position, 0));
        EXPECT_EQ(position, untouched);
    }
}

INSTANTIATE_TEST_SUITE_P(Length, ParityRepair, testing::Values(56U, 112U),
                         testing::PrintToStringParamName());

} // namespace
} // namespace tolvarin::ondrel
