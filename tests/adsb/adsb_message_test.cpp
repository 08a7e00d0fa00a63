#include <ondrel/adsb_airborne_velocity_message.h>
#include <ondrel/adsb_decoder.h>
#include <ondrel/adsb_identity_message.h>

#include "support/bytes.h"
#include "support/captured_log.h"
#include "support/movable_clock.h"

#include <gtest/gtest.h>

#include <clocale>
#include <locale>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace tolvarin::ondrel {
namespace {

using test::operator""_hex;
using Field = ADSBMessageField;

/// A message with fields in no order; it understands what has the last bit set.
class DisorderedMessage final : public ADSBMessage {
public:
    DisorderedMessage() : ADSBMessage(TEST) {}

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

TEST(ADSBMessage, ListsFieldsByPositionAndThenAsAdded) {
    DisorderedMessage message;
    EXPECT_TRUE(message.decode("B8 00 00 00 00 00 01"_hex));
    EXPECT_EQ(listed(message), "TEST 23 b e c f a d g ");
    EXPECT_FALSE(message.decode("B8 00 00 00 00 00 00"_hex));
    EXPECT_EQ(listed(message), "TEST 23 b TEST 23 b e e c f c f a d a d g g ");
    EXPECT_EQ(message.ADSBMessage::description(), "ADS-B Type-23 TEST Message");
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

TEST(ADSBMessage, LeavesStampAndAmplitudeToItsOwner) {
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

TEST(ADSBMessage, NamesEveryType) {
    const std::vector<std::pair<const char*, const char*>> names = {
        {"ACID", "Aircraft Identification"},
        {"POS_GND", "Surface Position"},
        {"POS_AIR", "Airborne Position"},
        {"AIR_VEL", "Airborne Velocities"},
        {"TEST", "Test"},
        {"AC_STATUS", "Aircraft Status"},
        {"TG_STATUS", "Target State and Status Information"},
        {"OP_STATUS", "Aircraft Operation Status"},
        {"RESERVED", "Reserved"},
    };
    for (int value = -1; value < 12; ++value) {
        const auto type = static_cast<ADSBMessage::ADSBMessageType>(value);
        const auto& [name, fullName] = names[value >= 0 && value < 8 ? static_cast<u8>(value) : 8];
        EXPECT_EQ(ADSBMessage::typeName(type), name);
        EXPECT_EQ(ADSBMessage::typeFullName(type), fullName);
    }
    const std::string byCode = "80000111122222222223222488885687";
    for (unsigned code = 0; code < 256; ++code) {
        EXPECT_EQ(ADSBMessage::typeByCode(static_cast<u8>(code)),
                  code < 32 ? byCode[code] - '0' : ADSBMessage::RESERVED)
            << code;
    }
    EXPECT_EQ(ADSBIdentityMessage().typeName(), "ACID");
    EXPECT_EQ(ADSBIdentityMessage().typeFullName(), "Aircraft Identification");
}

TEST(ADSBMessageField, NamesEveryDesignator) {
    const std::vector<std::string> names = {
        "TYPE",      "TYPE_CODE", "EMT_SET",   "EMT_CAT",    "CHAR_1",    "CHAR_2",   "CHAR_3",
        "CHAR_4",    "CHAR_5",    "CHAR_6",    "CHAR_7",     "CHAR_8",    "MOV_CODE", "GND_SPD",
        "HDG_STATE", "HDG",       "SAF",       "NIC_SUPP_B", "ALT_SRC",   "ALT_RES",  "ALT",
        "T",         "CPR_FMT",   "CPR_LAT",   "CPR_LON",    "SUB_TYPE",  "NUC_R",    "DIR_EW",
        "DIR_NS",    "VEL_EW",    "VEL_NS",    "VR_SRC",     "VR_SIGN",   "VR",       "SUB_TYPE",
        "DATA",      "SUB_TYPE",  "EMG_STATE", "MODE_A",     "SUB_TYPE",  "NAC_P",    "NIC_BARO",
        "SIL",       "SIL_SUPP",  "SUB_TYPE",  "VER_NUM",    "NIC_SUPP_A"};
    for (int value = -1; value < 50; ++value) {
        const auto designator = static_cast<Field::Designator>(value);
        const bool known = value >= 0 && value < 47;
        const std::string name = known ? names[static_cast<u8>(value)] : "--";
        EXPECT_EQ(Field::designatorName(designator), name);
        EXPECT_EQ(Field::designatorFullName(designator), value == 0 ? "Type" : name);
        EXPECT_EQ(Field(designator, 0, 1, "").name(), name);
        EXPECT_EQ(Field(designator, 0, 1, "").fullName(), value == 0 ? "Type" : name);
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

    struct OpenField : Field {
        using Field::Field, Field::setBits, Field::setDescription, Field::setPos, Field::setValid;
    };
    OpenField open(Field::DATA, 8, 48, "x");
    open.setBits(0);
    EXPECT_TRUE(open.valid()) << "judged once";
    open.setValid(false);
    open.setPos(3);
    open.setDescription("y");
    EXPECT_EQ(open.pos() + open.bits() + (open.valid() ? 1 : 0), 3);
    EXPECT_EQ(open.description(), "y");
}

/// Makes a decimal comma the rule of the process as long as it lives.
class DecimalComma {
public:
    DecimalComma() { std::setlocale(LC_ALL, "de_DE.UTF-8"); } // where the system has it
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

TEST(ADSBMessage, WritesNumbersAsInTheCLocaleWhateverTheProcessHasSet) {
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
