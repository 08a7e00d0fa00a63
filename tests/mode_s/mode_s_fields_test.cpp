#include <ondrel/mode_s_fields.h>

#include "support/bytes.h"

#include <gtest/gtest.h>

#include <set>
#include <tuple>
#include <utility>

namespace tolvarin::ondrel {
namespace {

using test::operator""_hex;

std::string flightStatus(unsigned bits) {
    const char* names[] = {"AIR",        "GND", "AIR, ALERT", "GND, ALERT",
                           "ALERT, SPI", "SPI", "UNKNOWN",    "UNKNOWN"};
    return names[bits];
}

/// The width of a field and the positions at which it may stand.
template <class FieldType, unsigned FieldBits, unsigned... Positions>
struct Layout {
    using Field = FieldType;
    static constexpr unsigned bits = FieldBits;
    static inline const std::set<unsigned> positions = {Positions...};
};

template <class T>
class ModeSFieldLayout : public testing::Test {};

using Layouts =
    testing::Types<Layout<ModeSMessageFieldAA, 24, 8>, Layout<ModeSMessageFieldAC, 13, 19>,
                   Layout<ModeSMessageFieldAF, 3, 5>, Layout<ModeSMessageFieldAP, 24, 32, 88>,
                   Layout<ModeSMessageFieldCA, 3, 5>, Layout<ModeSMessageFieldCF, 3, 5>,
                   Layout<ModeSMessageFieldFS, 3, 5>, Layout<ModeSMessageFieldID, 13, 19>,
                   Layout<ModeSMessageFieldMB, 56, 32>, Layout<ModeSMessageFieldME, 56, 32>,
                   Layout<ModeSMessageFieldMV, 56, 32>, Layout<ModeSMessageFieldPI, 24, 32, 88>,
                   Layout<ModeSMessageFieldVS, 1, 5>>;

struct InOrder {
    template <class>
    static std::string GetName(int index) {
        return std::to_string(index);
    }
};

TYPED_TEST_SUITE(ModeSFieldLayout, Layouts, InOrder);

TYPED_TEST(ModeSFieldLayout, DecodesOnlyAtItsPositionsAndOnlyWholeFields) {
    for (std::size_t size = 0; size <= 40; ++size) {
        for (unsigned pos = 0; pos <= 0xFF; ++pos) {
            typename TypeParam::Field field;
            ASSERT_EQ(field.bits(), TypeParam::bits);
            const bool whole = pos + TypeParam::bits <= 8 * size;
            const bool good = whole && TypeParam::positions.count(pos) == 1;
            ASSERT_EQ(field.decode(std::string(size, '\xA5'), static_cast<u8>(pos)), good) << pos;
            ASSERT_EQ(field.valid(), good) << pos;
            ASSERT_EQ(field.pos(), whole ? pos : 0);
        }
    }
}

/// Except for the M bit of an altitude and the X bit of an identity, both at position 25.
TYPED_TEST(ModeSFieldLayout, DescriptionChangesWithEachOfItsBitsAndNoOther) {
    for (const unsigned pos : TypeParam::positions) {
        for (unsigned bit = 0; bit < 112; ++bit) {
            typename TypeParam::Field field;
            const std::string frame(14, '\xAA');
            ASSERT_TRUE(field.decode(frame, static_cast<u8>(pos)));
            const std::string before = field.description();
            const std::string other = test::inverted(frame, {bit});
            ASSERT_TRUE(field.decode(other.data(), other.size(), static_cast<u8>(pos)));
            const bool own = bit >= pos && bit < pos + TypeParam::bits;
            const bool shown = own && (TypeParam::bits != 13 || bit != 25);
            ASSERT_EQ(field.description() != before, shown) << bit;
        }
    }
}

TYPED_TEST(ModeSFieldLayout, AShortFrameLeavesItValidAndAWrongPositionDoesNot) {
    typename TypeParam::Field field;
    const auto pos = static_cast<u8>(*TypeParam::positions.begin());
    ASSERT_TRUE(field.decode(std::string(14, '\xFF'), pos));
    EXPECT_FALSE(field.decode("", pos));
    EXPECT_FALSE(field.decode(nullptr, 0, pos));
    EXPECT_TRUE(field.valid());
    typename TypeParam::Field copy(field);
    EXPECT_FALSE(field.decode(std::string(14, '\0'), static_cast<u8>(pos + 1)));
    EXPECT_FALSE(field.valid());
    EXPECT_EQ(field.pos(), pos + 1);
    EXPECT_EQ(field.description(), copy.description()) << "the value stays in either case";
    field = std::move(copy);
    EXPECT_TRUE(field.valid());
    EXPECT_EQ(field.pos(), pos);
}

TEST(ModeSField, NamesDesignators) {
    const std::tuple<int, const char*, const char*> rows[] = {
        {ModeSMessageField::DR, "DR", "Data selector"},
        {ModeSMessageField::UM, "UM", "Utility message"},
        {ModeSMessageField::VS, "VS", "Vertical status"},
        {15, "--", "Unknown field"},
        {16, "--", "Unknown field"},
        {-1, "--", "Unknown field"},
    };
    for (const auto& [value, name, fullName] : rows) {
        const auto designator = static_cast<ModeSMessageField::Designator>(value);
        EXPECT_EQ(ModeSMessageField::designatorName(designator), name);
        EXPECT_EQ(ModeSMessageField::designatorFullName(designator), fullName);
    }
}

TEST(ModeSField, BaseDescriptionConsistsOfTheNames) {
    const ModeSMessageFieldPI field;
    EXPECT_EQ(field.designator(), ModeSMessageField::PI);
    EXPECT_EQ(field.name(), "PI");
    EXPECT_EQ(field.fullName(), "Parity/interrogator identifier");
    EXPECT_EQ(field.ModeSMessageField::description(), "PI:Parity/interrogator identifier");
}

template <class Field>
Field decoded(const std::string& frame, u8 pos) {
    Field field;
    EXPECT_TRUE(field.decode(frame, pos));
    return field;
}

TEST(ModeSField, GettersGiveTheDecodedValue) {
    for (unsigned i = 0; i < 8; ++i) {
        const std::string frame = test::head(31, i, 0xABCDEF);
        EXPECT_EQ(decoded<ModeSMessageFieldAF>(frame, 5).code(), i);
        EXPECT_EQ(decoded<ModeSMessageFieldCA>(frame, 5).capability(), i);
        EXPECT_EQ(decoded<ModeSMessageFieldCF>(frame, 5).code(), i);
        EXPECT_EQ(decoded<ModeSMessageFieldFS>(frame, 5).flightStatus(), static_cast<i32>(i));
        EXPECT_EQ(decoded<ModeSMessageFieldFS>(frame, 5).description(), flightStatus(i));
        EXPECT_EQ(decoded<ModeSMessageFieldVS>(frame, 5).verticalStatus(), i < 4 ? 0 : 1);
        EXPECT_EQ(decoded<ModeSMessageFieldAA>(frame, 8).icaoAddress(), 0xABCDEFU);
    }
    const std::string frame = "00 00 00 00 00 0A 00 FF 10 00 00"_hex;
    EXPECT_EQ(decoded<ModeSMessageFieldMB>(frame, 32).data(), frame.substr(4));
    EXPECT_EQ(decoded<ModeSMessageFieldME>(frame, 32).data(), frame.substr(4));
    EXPECT_EQ(decoded<ModeSMessageFieldMV>(frame, 32).data(), frame.substr(4));
}

TEST(ModeSField, HasDefaultsBeforeItsFirstDecode) {
    EXPECT_EQ(ModeSMessageFieldFS().flightStatus(), ModeSMessageFieldFS::Unknown);
    EXPECT_EQ(ModeSMessageFieldVS().verticalStatus(), ModeSMessageFieldVS::Airborne);
    EXPECT_EQ(ModeSMessageFieldAA().icaoAddress(), 0U);
    EXPECT_EQ(ModeSMessageFieldMB().data() + ModeSMessageFieldME().data(), "");
    EXPECT_FALSE(ModeSMessageFieldPI().valid());
    EXPECT_EQ(ModeSMessageFieldPI().pos(), 0);
}

TEST(ModeSField, AnAltitudeHasAUnitAndAResolution) {
    const auto ac = decoded<ModeSMessageFieldAC>("FF FF 17 18"_hex, 19);
    EXPECT_EQ(ac.altitude(), 36000);
    EXPECT_EQ(ac.altitudeResolution(), Resolution25Ft);
    EXPECT_EQ(ac.altitudeUnit(), Feet);
    const auto metres = decoded<ModeSMessageFieldAC>("FF FF 17 48"_hex, 19);
    EXPECT_EQ(metres.altitude(), 147000) << "as if it were feet";
    EXPECT_EQ(metres.altitudeResolution(), Resolution100Ft);
    EXPECT_EQ(metres.altitudeUnit(), Metres);
    EXPECT_EQ(decoded<ModeSMessageFieldID>("FF FF 0A AA"_hex, 19).identity(), 07700U);
}

TEST(ModeSField, OverlaysAreSplitByParityOrByIdentifier) {
    const std::string frame = "00 00 00 00 12 34 56"_hex;
    ModeSMessageFieldAP ap;
    ap.decode(frame, 32);
    EXPECT_EQ(ap.parity() | ap.icaoAddress(), 0U) << "decoding does not split";
    EXPECT_EQ(ap.setParity(0x0000FF), 0x1234A9U);
    EXPECT_EQ(ap.parity(), 0x0000FFU);
    EXPECT_EQ(ap.icaoAddress(), 0x1234A9U);
    EXPECT_EQ(ap.addressParityHexString(), "123456");

    ModeSMessageFieldPI pi;
    pi.decode(frame, 32);
    EXPECT_EQ(pi.setInterrogatorId(0x000006), 0x123450U);
    EXPECT_EQ(pi.parity(), 0x123450U);
    EXPECT_EQ(pi.interrogatorId(), 6U);
    EXPECT_EQ(pi.setParity(0x123400), 0x56U);
    EXPECT_EQ(pi.parity(), 0x123400U);
    EXPECT_EQ(pi.interrogatorId(), 0x56U);
    EXPECT_EQ(pi.parityInterrogatorIdHexString(), "123456");
}

TEST(ModeSField, InterrogatorIdentifiersRunFrom0To79) {
    ModeSMessageFieldPI pi;
    const auto valid = [&pi](u32 identifier) {
        pi.setInterrogatorId(identifier);
        return pi.interrogatorIdValid();
    };
    for (u32 identifier = 0; identifier < 0x10000; ++identifier) {
        ASSERT_EQ(valid(identifier), identifier <= 79) << identifier;
    }
    for (unsigned bit = 7; bit < 32; ++bit) {
        EXPECT_FALSE(valid(1U << bit)) << bit;
    }
}

} // namespace
} // namespace tolvarin::ondrel
