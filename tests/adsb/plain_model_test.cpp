/// @file
/// Every payload against a slow, plain model, to the character.
#include <ondrel/adsb_airborne_position_message.h>
#include <ondrel/adsb_aircraft_operational_status_message.h>
#include <ondrel/adsb_decoder.h>
#include <ondrel/adsb_identity_message.h>
#include <ondrel/adsb_surface_position_message.h>
#include <ondrel/adsb_target_status_message.h>
#include <ondrel/adsb_test_message.h>

#include "adsb/plain_message.h"
#include "adsb_airborne_velocity_message_v2.h"
#include "adsb_aircraft_status_message_v0.h"
#include "support/captured_log.h"

#include <gtest/gtest.h>

#include <bitset>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <random>
#include <string>
#include <type_traits>
#include <typeinfo>
#include <utility>
#include <vector>

namespace tolvarin::ondrel {
namespace {

using plain::Bits;

void put(Bits& bits, unsigned first, unsigned last, unsigned value) {
    const unsigned width = last - first + 1;
    bits.replace(first - 1, width, std::bitset<32>(value).to_string().substr(32 - width));
}

template <class Message>
std::unique_ptr<ADSBMessage> make() {
    return std::make_unique<Message>();
}

// By kind and version; a kind that stands alone has one class for every version there may be.
const std::map<std::string, std::unique_ptr<ADSBMessage> (*)()> classes = {
    {"I", make<ADSBIdentityMessage>},
    {"S", make<ADSBSurfacePositionMessage>},
    {"P0", make<ADSBAirbornePositionMessageV0>},
    {"P1", make<ADSBAirbornePositionMessageV1>},
    {"P2", make<ADSBAirbornePositionMessageV2>},
    {"V0", make<ADSBAirborneVelocityMessageV0>},
    {"V1", make<ADSBAirborneVelocityMessageV1>},
    {"V2", make<ADSBAirborneVelocityMessageV2>},
    {"T", make<ADSBTestMessage>},
    {"A0", make<ADSBAircraftStatusMessageV0>},
    {"A1", make<ADSBAircraftStatusMessageV0>},
    {"A2", make<ADSBAircraftStatusMessageV2>},
    {"G1", make<ADSBTargetStatusMessageV1>},
    {"G2", make<ADSBTargetStatusMessageV2>},
    {"O0", make<ADSBAircraftOperationalStatusMessage>},
    {"O1", make<ADSBAircraftOperationalStatusMessage>},
    {"O2", make<ADSBAircraftOperationalStatusMessage>},
};

/// An empty message of the library; null where there is no class.
std::unique_ptr<ADSBMessage> makeMessage(char kind, int version) {
    const auto ofVersion = classes.find(kind + std::to_string(version));
    const auto ofAny = classes.find(std::string(1, kind));
    return ofVersion != classes.end() ? ofVersion->second()
           : ofAny != classes.end()   ? ofAny->second()
                                      : nullptr;
}

/// What an accessor of class `Message` gives as text; nothing for a message of another class.
template <class Message, class Value>
auto from(Value (Message::*accessor)() const, const plain::Tokens& tokens = {}) {
    return [=](const ADSBMessage& message) -> std::optional<std::string> {
        const auto* typed = dynamic_cast<const Message*>(&message);
        if (typed == nullptr) {
            return std::nullopt;
        }
        if constexpr (std::is_convertible_v<Value, std::string>) {
            return (typed->*accessor)();
        } else {
            const auto value = static_cast<double>((typed->*accessor)());
            return tokens.empty() ? plain::exact(value) : tokens.at(static_cast<u8>(value));
        }
    };
}

struct Accessor {
    std::string text; ///< of the model
    std::function<std::optional<std::string>(const ADSBMessage&)> read;
};

const std::vector<Accessor> accessors = {
    {"TYPE", from(&ADSBMessage::type, plain::typeNames)},
    {"TYPE_CODE", from(&ADSBMessage::typeCode)},
    {"EMT_CAT", from(&ADSBIdentityMessage::emitterCategory)},
    {"callsign", from(&ADSBIdentityMessage::callsign)},
    {"MOV_CODE", from(&ADSBSurfacePositionMessage::movementCode)},
    {"movement", from(&ADSBSurfacePositionMessage::movement)},
    {"speed", from(&ADSBSurfacePositionMessage::groundSpeed)},
    {"HDG_STATE", from(&ADSBSurfacePositionMessage::headingValid)},
    {"heading", from(&ADSBSurfacePositionMessage::heading)},
    {"T", from(&ADSBSurfacePositionMessage::timeApplicability)},
    {"CPR_FMT", from(&ADSBSurfacePositionMessage::cprFormat, {"ODD", "EVEN"})},
    {"CPR_LAT", from(&ADSBSurfacePositionMessage::cprLatitude)},
    {"CPR_LON", from(&ADSBSurfacePositionMessage::cprLongitude)},
    {"ALT_SRC", from(&ADSBAirbornePositionMessage::altitudeSource, {"BARO", "GNSS"})},
    {"step", from(&ADSBAirbornePositionMessage::altResolution)},
    {"feet", from(&ADSBAirbornePositionMessage::altitude)},
    {"T", from(&ADSBAirbornePositionMessage::timeApplicability)},
    {"CPR_FMT", from(&ADSBAirbornePositionMessage::cprFormat, {"ODD", "EVEN"})},
    {"CPR_LAT", from(&ADSBAirbornePositionMessage::cprLatitude)},
    {"CPR_LON", from(&ADSBAirbornePositionMessage::cprLongitude)},
    {"SAF", from(&ADSBAirbornePositionMessageV0::singalAntena)},
    {"SAF", from(&ADSBAirbornePositionMessageV1::singalAntena)},
    {"NIC_SUPP_B", from(&ADSBAirbornePositionMessageV2::nicSupplementB)},
    {"subtype", from(&ADSBAirborneVelocityMessage::velocityType)},
    {"speed", from(&ADSBAirborneVelocityMessage::groundSpeed)},
    {"heading", from(&ADSBAirborneVelocityMessage::heading)},
    {"VR_SRC", from(&ADSBAirborneVelocityMessage::verticalRateSource, {"BARO", "GNSS"})},
    {"rate", from(&ADSBAirborneVelocityMessage::verticalRate)},
    {"NUC_R", from(&ADSBAirborneVelocityMessageV0::nucr)},
    {"SUB_TYPE", from(&ADSBTestMessage::subtype)},
    {"bytes", from(&ADSBTestMessage::testData)},
    {"subtype", from(&ADSBAircraftStatusMessage::subtype)},
    {"state", from(&ADSBAircraftStatusMessage::emergencyState)},
    {"code", from(&ADSBAircraftStatusMessageV2::modeACode)},
    {"MODE_A", from(&ADSBAircraftStatusMessageV2::modeAOctString)},
    {"subtype", from(&ADSBTargetStatusMessage::subtype)},
    {"number", from(&ADSBAircraftOperationalStatusMessage::versionNumber)},
    {"version", from(&ADSBAircraftOperationalStatusMessage::version)},
    {"NIC_SUPP_A", from(&ADSBAircraftOperationalStatusMessage::nicSupplementA)},
};

void expectSame(const ADSBMessage& message, const plain::Message& model) {
    std::string text = message.description() + '\n' + message.dataHexString() + '\n';
    for (const ADSBMessageField& field : message.fields()) {
        text += plain::fieldLine(field.pos(), field.bits(), field.name(), field.description());
    }
    ASSERT_EQ(text, model.allText());
    ASSERT_EQ(message.valid(), model.valid);
    for (const Accessor& accessor : accessors) {
        if (const std::optional<std::string> value = accessor.read(message)) {
            ASSERT_EQ(*value, model.text(accessor.text)) << accessor.text << " of\n" << text;
        }
    }
}

class ADSBPayload : public testing::Test {
protected:
    /// The decoder gives the model's message, of the class for kind and version, or none.
    void check(int version, const Bits& bits) {
        const std::unique_ptr<ADSBMessage> message(
            _decoder.decode(static_cast<MOPSVersion>(version), plain::packed(bits)));
        const char kind = plain::kindOf(plain::number(bits, 1, 5));
        const std::unique_ptr<ADSBMessage> sameClass = makeMessage(kind, version);
        plain::Message model(kind, version);
        const bool understood = sameClass != nullptr && model.decode(bits);
        if (kind == '-') {
            model.log.push_back("[WARNING ][ADSBDecoder] Unsupported type code = " +
                                std::to_string(plain::number(bits, 1, 5)) + " (Reserved).");
        }
        ASSERT_EQ(_log.take(), model.log) << bits;
        ASSERT_EQ(message != nullptr, understood) << version << ' ' << bits;
        if (understood) {
            const ADSBMessage& given = *message;
            const ADSBMessage& same = *sameClass;
            ASSERT_EQ(typeid(given), typeid(same)) << version << ' ' << bits;
            expectSame(given, model);
        }
    }

    Bits randomBits() { return std::bitset<56>(_random()).to_string(); }

    /// Random bits of a type code.
    Bits randomBits(unsigned typeCode) {
        Bits bits = randomBits();
        put(bits, 1, 5, typeCode);
        return bits;
    }

    test::CapturedLog _log;

private:
    std::mt19937_64 _random{4096};
    ADSBDecoder _decoder;
    test::Lines _initialized = _log.take();
};

TEST_F(ADSBPayload, OfEveryTypeCodeAndVersion) {
    for (unsigned typeCode = 0; typeCode < 32; ++typeCode) {
        for (const int version : {0, 1, 2, 3, 4, -1}) {
            for (int i = 0; i < 600; ++i) {
                ASSERT_NO_FATAL_FAILURE(check(version, randomBits(typeCode)));
            }
        }
    }
}

TEST_F(ADSBPayload, WithEachBitAlone) {
    for (unsigned i = 0; i < 32 * 51 * 6; ++i) {
        Bits bits(56, i % 2 == 0 ? '0' : '1');
        put(bits, 1, 5, i / 6 / 51);
        put(bits, 6 + i / 6 % 51, 6 + i / 6 % 51, 1 - i % 2);
        ASSERT_NO_FATAL_FAILURE(check(static_cast<int>(i / 2 % 3), bits));
    }
}

/// Every number in some ME bits, the others random but for the subtype where one is given.
TEST_F(ADSBPayload, WithEveryCode) {
    struct Sweep {
        std::vector<unsigned> typeCodes;
        unsigned first;
        unsigned last;
        std::vector<int> versions = {0, 1, 2};
        int subtype = -1;
    };
    const std::vector<Sweep> sweeps = {
        {{19, 23, 28, 29, 31}, 6, 11}, // subtypes
        {{1, 4}, 9, 14},               // characters
        {{2}, 15, 20},
        {{3}, 21, 26},
        {{4}, 27, 32},
        {{1}, 33, 38},
        {{2}, 39, 44},
        {{3}, 45, 50},
        {{4}, 51, 56},
        {{6}, 6, 20, {0}},            // movement and heading
        {{9, 18, 20, 22}, 9, 20},     // altitude
        {{19}, 36, 46, {0, 1, 2}, 1}, // vertical rate
        {{19}, 36, 46, {0, 1, 2}, 2},
        {{28}, 12, 24, {1, 2}, 1}, // squawk; the emergency stands with the subtypes
        {{29}, 40, 46, {1, 2}, 2}, // accuracy and integrity
        {{29}, 40, 46, {1, 2}, 3},
        {{31}, 41, 48}, // version number
    };
    for (const Sweep& sweep : sweeps) {
        for (unsigned code = 0; code < 1U << (sweep.last - sweep.first + 1); ++code) {
            for (const unsigned typeCode : sweep.typeCodes) {
                Bits bits = randomBits(typeCode);
                if (sweep.subtype >= 0) {
                    put(bits, 6, 8, static_cast<unsigned>(sweep.subtype));
                }
                put(bits, sweep.first, sweep.last, code);
                for (const int version : sweep.versions) {
                    ASSERT_NO_FATAL_FAILURE(check(version, bits));
                }
            }
        }
    }
}

TEST_F(ADSBPayload, WithEveryVelocity) {
    for (unsigned code = 0; code < 0x800; ++code) { // the direction bit leads
        for (const unsigned other : {0U, 1U, 2U, 3U, 1023U, 1024U, 1025U, 1026U, 1537U, 2047U}) {
            for (const unsigned place : {14U, 25U}) {
                Bits bits = randomBits(19);
                put(bits, 6, 8, 1 + (code + other) % 2);
                put(bits, place, place + 10, code);
                put(bits, 39 - place, 49 - place, other);
                ASSERT_NO_FATAL_FAILURE(check(static_cast<int>(code % 3), bits));
                put(bits, 6, 8, 2 - (code + other) % 2);
                ASSERT_NO_FATAL_FAILURE(check(static_cast<int>(other % 3), bits));
            }
        }
    }
}

/// What a refused payload does not name stays as the one before left it, and the list grows.
TEST_F(ADSBPayload, DecodedOneAfterTheOtherByOneMessage) {
    for (const auto& [name, makeEmpty] : classes) {
        for (int round = 0; round < 300; ++round) {
            const std::unique_ptr<ADSBMessage> message = makeEmpty();
            plain::Message model(name[0], name.back() - '0');
            ASSERT_NO_FATAL_FAILURE(expectSame(*message, model)) << name;
            for (int i = 0; i < 6; ++i) {
                Bits bits = randomBits();
                if (i != 4) { // which is most often of another kind
                    put(bits, 1, 5,
                        static_cast<unsigned>(i % 2 == 0 ? plain::kindByTypeCode.find(name[0])
                                                         : plain::kindByTypeCode.rfind(name[0])));
                }
                ASSERT_EQ(message->decode(plain::packed(bits)), model.decode(bits)) << name;
                ASSERT_NO_FATAL_FAILURE(expectSame(*message, model)) << name;
                ASSERT_EQ(_log.take(), std::exchange(model.log, {})) << name;
            }
        }
    }
}

} // namespace
} // namespace tolvarin::ondrel
