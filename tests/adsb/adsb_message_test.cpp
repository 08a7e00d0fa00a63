#include <ondrel/adsb_airborne_velocity_message.h>
#include <ondrel/adsb_decoder.h>
#include <ondrel/adsb_identity_message.h>
#include <ondrel/adsb_surface_position_message.h>

#include "support/bytes.h"
#include "support/captured_log.h"
#include "support/movable_clock.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <clocale>
#include <locale>
#include <memory>
#include <new>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

namespace tolvarin::ondrel {
namespace {

using test::operator""_hex;
using Field = ADSBMessageField;

/// A message that adds fields in no order, one of them when it is made. It refuses a payload unless
/// the last bit is set.
class DisorderedMessage final : public ADSBMessage {
public:
    DisorderedMessage() : ADSBMessage(TEST) { add(9, "z"); }

    void add(u8 pos, const char* value) { addField({Field::DATA, pos, 1, value}); }

protected:
    bool decodeImpl() override {
        for (const auto& [pos, value] : std::vector<std::pair<u8, const char*>>{
                 {40, "a"}, {0, "b"}, {8, "c"}, {40, "d"}, {7, "e"}, {8, "f"}, {55, "g"}}) {
            addField({Field::DATA, pos, 1, value});
        }
        return (static_cast<u8>(data().back()) & 1U) != 0;
    }
};

std::string listed(const ADSBMessage& message) {
    std::string values;
    for (const Field& field : message.fields()) {
        values += field.description() + ' ';
    }
    return values;
}

TEST(ADSBMessage, ListsFieldsByPositionThenInTheOrderOfAdding) {
    DisorderedMessage message;
    EXPECT_TRUE(message.decode("B8 00 00 00 00 00 01"_hex));
    EXPECT_EQ(listed(message), "TEST 23 b e c f z a d g ");
    EXPECT_FALSE(message.decode("B8 00 00 00 00 00 00"_hex));
    EXPECT_EQ(listed(message), "TEST 23 b TEST 23 b e e c f c f z a d a d g g ");
    EXPECT_EQ(message.ADSBMessage::description(), "ADS-B Type-23 TEST Message");
}

TEST(ADSBMessage, ListsLaterFieldsLastUntilTheNextDecode) {
    DisorderedMessage message;
    EXPECT_EQ(listed(message), "z ");
    ASSERT_TRUE(message.decode("B8 00 00 00 00 00 01"_hex));
    message.add(3, "x");
    message.add(1, "y");
    EXPECT_EQ(listed(message), "TEST 23 b e c f z a d g x y ");
    DisorderedMessage copy = message;
    DisorderedMessage moved = std::move(message);
    EXPECT_EQ(listed(copy), listed(moved));
    EXPECT_EQ(listed(message), "");
    ASSERT_TRUE(copy.decode("B8 00 00 00 00 00 01"_hex));
    EXPECT_EQ(listed(copy), "TEST 23 b TEST 23 b y x e e c f c f z a d a d g g ");
    moved = copy;
    EXPECT_EQ(listed(moved), listed(copy));
    message.add(1, "new");
    EXPECT_EQ(listed(message), "new ");
}

TEST(ADSBMessage, SortsItsFieldsInTheNextDecodeAfterAnException) {
    struct Thrower final : LogHandler {
        void writeLine(const std::string& /*line*/) override { throw std::bad_alloc(); }
    } thrower;
    ADSBSurfacePositionMessage message;
    ASSERT_TRUE(message.decode("38 10 00 00 00 00 00"_hex));
    Log::setLogHandler(&thrower);
    EXPECT_THROW(message.decode("3F F0 00 00 00 00 00"_hex), std::bad_alloc);
    Log::setLogHandler(nullptr);
    ASSERT_TRUE(message.decode("38 10 00 00 00 00 00"_hex));
    const std::vector<Field> fields = message.fields();
    EXPECT_TRUE(std::is_sorted(fields.begin(), fields.end(),
                               [](const Field& a, const Field& b) { return a.pos() < b.pos(); }));
}

TEST(ADSBMessage, TakesSevenBytesAndNoFewer) {
    test::CapturedLog log;
    const std::string payload = "20 2C C3 71 C3 2C E0"_hex;
    ADSBIdentityMessage message;
    for (std::size_t size = 0; size < payload.size(); ++size) {
        EXPECT_FALSE(message.decode(payload.substr(0, size)));
        EXPECT_FALSE(message.decode(payload.data(), size));
    }
    EXPECT_FALSE(message.decode(nullptr, 7));
    EXPECT_FALSE(message.valid());
    EXPECT_EQ(message.dataHexString() + listed(message), "");
    EXPECT_TRUE(message.decode(payload));
    EXPECT_FALSE(message.decode(""));
    EXPECT_TRUE(message.valid());
    EXPECT_EQ(message.dataHexString(), "202CC371C32CE0");

    ADSBIdentityMessage longer;
    EXPECT_TRUE(longer.decode((payload + '\x57').data(), 8));
    EXPECT_EQ(longer.data(), payload);
    EXPECT_EQ(listed(longer), listed(message));
    EXPECT_EQ(log.take(), test::Lines{});
}

TEST(ADSBMessage, KeepsStampAndAmplitudeWhenItDecodes) {
    test::MovableClock clock(1'234'567'890);
    ADSBIdentityMessage message;
    EXPECT_EQ(message.timeStamp(), 1'234'567'890'000U);
    EXPECT_EQ(message.signalAmplitude(), 0);
    message.setTimeStamp(77);
    message.setSignalAmplitude(200);
    clock.advance(5);
    ASSERT_TRUE(message.decode("20 2C C3 71 C3 2C E0"_hex));
    ADSBIdentityMessage copy;
    copy = message;
    const ADSBIdentityMessage moved(std::move(message));
    for (const ADSBIdentityMessage* taken : {&std::as_const(copy), &moved}) {
        EXPECT_EQ(taken->timeStamp(), 77U);
        EXPECT_EQ(taken->signalAmplitude(), 200);
        EXPECT_EQ(taken->callsign(), "KLM1023 ");
        EXPECT_EQ(listed(*taken), "ACID 4 0 K L M 1 0 2 3   ");
    }
}

TEST(ADSBMessage, TellsTheTypeOfEachTypeCode) {
    const std::string types = "80000111122222222223222488885687";
    for (unsigned code = 0; code < 256; ++code) {
        EXPECT_EQ(ADSBMessage::typeByCode(static_cast<u8>(code)),
                  code < 32 ? types[code] - '0' : ADSBMessage::RESERVED)
            << code;
    }
}

TEST(ADSBMessage, NamesTypesAndDesignators) {
    for (const int value : {-1, 8, 9}) {
        const auto type = static_cast<ADSBMessage::ADSBMessageType>(value);
        EXPECT_EQ(ADSBMessage::typeName(type), "RESERVED");
        EXPECT_EQ(ADSBMessage::typeFullName(type), "Reserved");
    }
    EXPECT_EQ(ADSBIdentityMessage().typeFullName(), "Aircraft Identification");
    EXPECT_EQ(ADSBMessage::typeFullName(ADSBMessage::TG_STATUS),
              "Target State and Status Information");
    const std::tuple<int, const char*, const char*> rows[] = {
        {Field::TYPE, "TYPE", "Type"},
        {Field::TYPE_CODE, "TYPE_CODE", "TYPE_CODE"},
        {Field::EMT_SET, "EMT_SET", "EMT_SET"},
        {Field::SUB_TYPE_OP_STATUS, "SUB_TYPE", "SUB_TYPE"},
        {46, "NIC_SUPP_A", "NIC_SUPP_A"},
        {47, "--", "--"},
        {48, "--", "--"},
        {-1, "--", "--"},
    };
    for (const auto& [value, name, fullName] : rows) {
        const Field field(static_cast<Field::Designator>(value), 0, 1, "");
        EXPECT_EQ(field.name(), name);
        EXPECT_EQ(field.fullName(), fullName);
    }
}

TEST(ADSBMessageField, IsValidWithAWidthAndADesignator) {
    EXPECT_TRUE(Field(Field::TYPE, 0, 1, "x").valid());
    EXPECT_FALSE(Field(Field::TYPE, 0, 0, "x").valid());
    EXPECT_FALSE(Field(Field::UNKNOWN_FIELD, 0, 1, "x").valid());
    const Field field(Field::DATA, 8, 48, "");
    EXPECT_EQ(field.designator(), Field::DATA);
    EXPECT_EQ(field.pos(), 8);
    EXPECT_EQ(field.bits(), 48);
    EXPECT_EQ(field.description(), "NO_DESCRIPTION");
}

/// Sets a locale with a decimal comma for the process until it is destroyed.
class DecimalComma {
public:
    DecimalComma() { std::setlocale(LC_ALL, "de_DE.UTF-8"); } // if the system has it
    DecimalComma(const DecimalComma&) = delete;
    DecimalComma& operator=(const DecimalComma&) = delete;
    ~DecimalComma() {
        std::locale::global(_before);
        std::setlocale(LC_ALL, "C");
    }

private:
    struct Punctuation final : std::numpunct<char> {
        char do_decimal_point() const override { return ','; }
        char do_thousands_sep() const override { return '.'; }
        std::string do_grouping() const override { return "\3"; }
    };
    std::locale _before = std::locale::global(std::locale(std::locale::classic(), new Punctuation));
};

TEST(ADSBMessage, WritesNumbersAsInTheCLocaleInAnyLocale) {
    const DecimalComma comma;
    const ADSBDecoder decoder;
    const std::unique_ptr<ADSBMessage> velocity(
        decoder.decode(MOPSVersion2, "99 44 09 94 08 38 17"_hex));
    EXPECT_EQ(velocity->description(), "TC=AIR_VEL, ST=GS, GS=159.201, HDG=182.88, VR=-832");
    const std::unique_ptr<ADSBMessage> surface(
        decoder.decode(MOPSVersion2, "3A 9A 15 32 37 AE F0"_hex));
    EXPECT_EQ(listed(*surface), "POS_GND 7 41 17.000000 1 92.812500 0 ODD 39195 110320 ");
    EXPECT_EQ(surface->description(),
              "TC=POS_GND, SPD=17, HDG=92.8125, CPR=ODD, LAT=39195, LON=110320");
}

} // namespace
} // namespace tolvarin::ondrel
