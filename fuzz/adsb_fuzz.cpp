// ADS-B payloads through the decoder, and several of them through one message. Every getter of the
// messages is called.

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

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <string>
#include <vector>

using namespace tolvarin::ondrel;
using fuzzing::hold;

namespace {

constexpr std::size_t payloadBytes = 7;

bool isCompactPosition(i32 latitude, i32 longitude) {
    return latitude >= 0 && latitude < 1 << 17 && longitude >= 0 && longitude < 1 << 17;
}

void readValues(const ADSBMessage& message) {
    if (const auto* acid = dynamic_cast<const ADSBIdentityMessage*>(&message)) {
        hold(acid->callsign().size() == 8 && acid->emitterCategory() < 8);
    } else if (const auto* gnd = dynamic_cast<const ADSBSurfacePositionMessage*>(&message)) {
        hold(gnd->movementCode() < 128 && gnd->groundSpeed() >= 0 && gnd->groundSpeed() <= 175);
        hold(gnd->movement() || gnd->groundSpeed() <= 0);
        hold(gnd->heading() >= 0 && gnd->heading() < (gnd->headingValid() ? 360 : 1));
        hold(isCompactPosition(gnd->cprLatitude(), gnd->cprLongitude()));
    } else if (const auto* air = dynamic_cast<const ADSBAirbornePositionMessage*>(&message)) {
        hold(air->altitude() >= -1000 && air->altitude() <= 203700);
        hold((air->altitude() + 1000) % air->altResolution() == 0);
        hold(isCompactPosition(air->cprLatitude(), air->cprLongitude()));
    } else if (const auto* vel = dynamic_cast<const ADSBAirborneVelocityMessage*>(&message)) {
        hold(vel->groundSpeed() >= 0 && vel->groundSpeed() < 5782);
        hold(vel->heading() >= 0 && vel->heading() < 360);
        hold(vel->verticalRate() % 64 == 0 && std::abs(vel->verticalRate()) <= 32640);
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

/// Decodes `next` into a message that holds another payload already.
void decodeAgain(ADSBMessage& message, const std::uint8_t* next, std::size_t size) {
    const std::size_t before = message.fields().size();
    const bool wasValid = message.valid();
    const bool decoded = message.decode(next, size);
    const bool sameType =
        size >= payloadBytes && ADSBMessage::typeByCode(message.typeCode()) == message.type();
    hold(message.valid() == (sameType ? decoded : wasValid));
    hold((message.fields().size() > before) == sameType);
    read(message);
    if (sameType) {
        readValues(message);
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    fuzzing::checkLog();
    if (size == 0) {
        return 0;
    }
    // The first byte is the version, the others are payloads. The decoder gets the first of them.
    const auto version = static_cast<MOPSVersion>(static_cast<std::int8_t>(*data) % 5);
    ++data;
    --size;
    const std::string payload(data, data + std::min(size, payloadBytes + 1));
    const std::unique_ptr<ADSBMessage> message(ADSBDecoder().decode(version, payload));
    if (message == nullptr) {
        return 0;
    }
    hold(message->valid() && message->type() == ADSBMessage::typeByCode(message->typeCode()));
    read(*message);
    readValues(*message);
    decodeAgain(*message, data, std::min(size, payloadBytes));
    while (size > payloadBytes) {
        data += payloadBytes;
        size -= payloadBytes;
        decodeAgain(*message, data, std::min(size, payloadBytes));
    }
    return 0;
}
