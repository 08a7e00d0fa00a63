// ADS-B payloads through the decoder, and several of them through one message, which is copied and
// moved in between. Every getter and setter of the messages is called.

#include <ondrel/adsb_airborne_position_message.h>
#include <ondrel/adsb_airborne_velocity_message.h>
#include <ondrel/adsb_aircraft_operational_status_message.h>
#include <ondrel/adsb_aircraft_status_message.h>
#include <ondrel/adsb_decoder.h>
#include <ondrel/adsb_identity_message.h>
#include <ondrel/adsb_surface_position_message.h>
#include <ondrel/adsb_target_status_message.h>
#include <ondrel/adsb_test_message.h>

#include "fuzzing.h"
#include "support/bytes.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <string>
#include <utility>
#include <vector>

using namespace tolvarin::ondrel;
using fuzzing::hold;
using fuzzing::Input;

namespace {

constexpr std::size_t payloadBytes = 7;

/// The type of a type code (RTCA DO-260B, table 2-15).
ADSBMessage::ADSBMessageType typeOf(unsigned code) {
    return code == 0    ? ADSBMessage::RESERVED
           : code <= 4  ? ADSBMessage::ACID
           : code <= 8  ? ADSBMessage::POS_GND
           : code == 19 ? ADSBMessage::AIR_VEL
           : code <= 22 ? ADSBMessage::POS_AIR
           : code == 23 ? ADSBMessage::TEST
           : code == 28 ? ADSBMessage::AC_STATUS
           : code == 29 ? ADSBMessage::TG_STATUS
           : code == 31 ? ADSBMessage::OP_STATUS
                        : ADSBMessage::RESERVED;
}

/// The bits of a position are those of the payload, if it was decoded.
bool isCompactPosition(const ADSBMessage& message, i32 latitude, i32 longitude) {
    const auto isAt = [&](unsigned place, i32 value) {
        return value >= 0 && value < 1 << 17 &&
               (!message.valid() || test::bitsOf(message.data(), place, 17) == u64(value));
    };
    return isAt(22, latitude) && isAt(39, longitude);
}

bool isVerticalRate(const ADSBMessage& message, i32 rate) {
    const auto code = static_cast<i32>(test::bitsOf(message.data(), 37, 9));
    const i32 size = code == 0 ? 0 : (code - 1) * 64;
    return !message.valid() || rate == (test::bitOf(message.data(), 36) ? -size : size);
}

void readValues(const ADSBMessage& message) {
    if (const auto* acid = dynamic_cast<const ADSBIdentityMessage*>(&message)) {
        hold(acid->callsign().size() == 8 && acid->emitterCategory() < 8);
    } else if (const auto* gnd = dynamic_cast<const ADSBSurfacePositionMessage*>(&message)) {
        hold(gnd->movementCode() < 128 && gnd->groundSpeed() >= 0 && gnd->groundSpeed() <= 175);
        hold(gnd->movement() || gnd->groundSpeed() <= 0);
        hold(gnd->heading() >= 0 && gnd->heading() < (gnd->headingValid() ? 360 : 1));
        hold(isCompactPosition(message, gnd->cprLatitude(), gnd->cprLongitude()));
    } else if (const auto* air = dynamic_cast<const ADSBAirbornePositionMessage*>(&message)) {
        hold(air->altitude() >= -1000 && air->altitude() <= 203700);
        hold((air->altitude() + 1000) % air->altResolution() == 0);
        hold(isCompactPosition(message, air->cprLatitude(), air->cprLongitude()));
    } else if (const auto* vel = dynamic_cast<const ADSBAirborneVelocityMessage*>(&message)) {
        hold(vel->groundSpeed() >= 0 && vel->groundSpeed() < 5782);
        hold(vel->heading() >= 0 && vel->heading() < 360);
        hold(vel->verticalRate() % 64 == 0 && std::abs(vel->verticalRate()) <= 32640);
        hold(isVerticalRate(message, vel->verticalRate()));
        hold(vel->velocityType() >= 1 && vel->velocityType() <= 4);
    } else if (const auto* test = dynamic_cast<const ADSBTestMessage*>(&message)) {
        hold(test->subtype() < 8 && test->testData() == message.data().substr(1));
    } else if (const auto* status = dynamic_cast<const ADSBAircraftStatusMessageV2*>(&message)) {
        hold(status->modeACode() < 4096 && status->modeAOctString().size() == 4);
    } else if (const auto* target = dynamic_cast<const ADSBTargetStatusMessage*>(&message)) {
        hold(target->subtype() < 4);
    } else if (const auto* op =
                   dynamic_cast<const ADSBAircraftOperationalStatusMessage*>(&message)) {
        hold(op->versionNumber() < 8 && op->version() <= MOPSVersionUnknown);
    }
}

void read(const ADSBMessage& message) {
    hold(message.data().size() == payloadBytes && message.dataHexString().size() == 14);
    hold(message.typeCode() == static_cast<u8>(message.data()[0]) >> 3);
    hold(message.description().rfind("TC=", 0) == 0 && message.typeName() != "RESERVED");
    const std::vector<ADSBMessageField> fields = message.fields();
    hold(fields.size() >= 2 && fields[0].name() == "TYPE");
    hold(std::is_sorted(fields.begin(), fields.end(),
                        [](const auto& a, const auto& b) { return a.pos() < b.pos(); }));
    for (const ADSBMessageField& field : fields) {
        hold(field.valid() && field.pos() + field.bits() <= 56);
        hold(field.name() != "--" && !field.fullName().empty() && !field.description().empty());
    }
}

std::string fieldsOf(const ADSBMessage& message) {
    std::string text;
    for (const ADSBMessageField& field : message.fields()) {
        text += field.name() + field.description() + std::to_string(field.pos()) + ' ' +
                std::to_string(field.bits()) + '\n';
    }
    return text;
}

/// All that a message shows.
std::string shown(const ADSBMessage& message) {
    return message.dataHexString() + (message.valid() ? " valid " : " ") +
           std::to_string(message.typeCode()) + ' ' + message.description() + '\n' +
           std::to_string(message.timeStamp()) + ' ' + std::to_string(message.signalAmplitude()) +
           '\n' + fieldsOf(message);
}

/// Decodes `next` into a message that holds another payload already.
void decodeAgain(ADSBMessage& message, const std::uint8_t* next, std::size_t size) {
    const std::string before = shown(message);
    const std::size_t fieldsBefore = message.fields().size();
    const bool wasValid = message.valid();
    const bool decoded = message.decode(next, size);
    if (size < payloadBytes) {
        hold(!decoded && shown(message) == before);
        return;
    }
    const bool sameType = typeOf(next[0] >> 3U) == message.type();
    hold(sameType || !decoded);
    hold(message.valid() == (sameType ? decoded : wasValid));
    hold((message.fields().size() > fieldsBefore) == sameType);
    read(message);
    if (sameType) {
        readValues(message);
    }
}

/// Copies, moves and assigns the message if it is of the class.
template <class Message>
void copy(ADSBMessage& message) {
    auto* original = dynamic_cast<Message*>(&message);
    if (original == nullptr) {
        return;
    }
    const std::string expected = shown(*original);
    Message copied(*original);
    hold(shown(copied) == expected);
    Message& itself = copied;
    copied = itself;
    hold(shown(copied) == expected);
    Message moved(std::move(copied));
    hold(shown(moved) == expected);
    const bool wasDecoded = moved.valid() && typeOf(moved.typeCode()) == moved.type();
    hold(copied.decode(moved.data()) == wasDecoded); // NOLINT(bugprone-use-after-move)
    Message fresh;
    fresh.decode(moved.data());
    hold(copied.fields().size() == fresh.fields().size());
    copied = std::move(moved);
    hold(shown(copied) == expected);
    moved = copied; // NOLINT(bugprone-use-after-move): it may be used again
    hold(shown(moved) == expected && shown(*original) == expected);
}

template <class... Messages>
void copyAs(ADSBMessage& message) {
    (copy<Messages>(message), ...);
}

void copy(ADSBMessage& message) {
    copyAs<ADSBIdentityMessage, ADSBSurfacePositionMessage, ADSBAirbornePositionMessageV0,
           ADSBAirbornePositionMessageV1, ADSBAirbornePositionMessageV2,
           ADSBAirborneVelocityMessageV0, ADSBAirborneVelocityMessageV1, ADSBTestMessage,
           ADSBAircraftOperationalStatusMessage, ADSBAircraftStatusMessageV2,
           ADSBTargetStatusMessageV1, ADSBTargetStatusMessageV2>(message);
}

/// Values that are no enumerators, log lines of such levels, and fields that stand nowhere.
void readNames(Input& input) {
    const auto designator = input.take<ADSBMessageField::Designator>();
    const u8 pos = input.take<u8>();
    const u8 bits = input.take<u8>();
    const ADSBMessageField field(designator, pos, bits, input.text(3));
    hold(field.designator() == designator && field.pos() == pos && field.bits() == bits);
    hold(field.valid() == (bits > 0 && designator != ADSBMessageField::UNKNOWN_FIELD));
    hold(!field.name().empty() && !field.fullName().empty() && !field.description().empty());
    const auto type = input.take<ADSBMessage::ADSBMessageType>();
    const bool isType = type >= ADSBMessage::ACID && type < ADSBMessage::RESERVED;
    hold((ADSBMessage::typeName(type) != "RESERVED") == isType);
    hold((ADSBMessage::typeFullName(type) != "Reserved") == isType);
    const u8 code = input.take<u8>();
    hold(ADSBMessage::typeByCode(code) == (code < 32 ? typeOf(code) : ADSBMessage::RESERVED));
    Log::setShowLevel(input.take<Log::Level>());
    Log::log(input.take<Log::Level>(), std::string(code, 'm'), "a line of any level");
    Log::log(input.take<Log::Level>(), "module", "%s of any level", "a line");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    fuzzing::checkLog();
    Input input(data, size);
    // The first byte is the version, the others are payloads. The decoder gets the first of them.
    const u8 first = input.take<u8>();
    if (first == 0x7F) {
        readNames(input);
        return 0;
    }
    const int version = first < 0x7F ? first % 4 : static_cast<std::int8_t>(first) * 16777215;
    const std::string payload = input.text(payloadBytes + 1);
    const std::unique_ptr<ADSBMessage> message(
        ADSBDecoder().decode(static_cast<MOPSVersion>(version), payload));
    hold(message == nullptr || payload.size() >= payloadBytes);
    if (message == nullptr) {
        return 0;
    }
    hold(message->valid() && message->type() == typeOf(message->typeCode()));
    hold(message->data() == payload.substr(0, payloadBytes));
    read(*message);
    readValues(*message);
    message->setTimeStamp(~u64{first});
    message->setSignalAmplitude(first);
    hold(message->timeStamp() == ~u64{first} && message->signalAmplitude() == first);
    while (!input.empty()) {
        const std::size_t left = input.left(payloadBytes);
        const std::uint8_t* next = input.bytes(left);
        if (next[0] % 8 == 3) {
            copy(*message);
        }
        decodeAgain(*message, next, left);
    }
    copy(*message);
    return 0;
}
