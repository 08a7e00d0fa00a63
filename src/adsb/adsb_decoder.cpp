#include <ondrel/adsb_decoder.h>

#include <ondrel/adsb_airborne_position_message.h>
#include <ondrel/adsb_aircraft_operational_status_message.h>
#include <ondrel/adsb_identity_message.h>
#include <ondrel/adsb_surface_position_message.h>
#include <ondrel/adsb_target_status_message.h>
#include <ondrel/adsb_test_message.h>
#include <ondrel/log.h>

#include "adsb_airborne_velocity_message_v2.h"
#include "adsb_aircraft_status_message_v0.h"
#include "wire_field.h"

#include <algorithm>
#include <array>
#include <memory>

namespace tolvarin::ondrel {

namespace {

const std::string moduleName = "ADSBDecoder";

template <class Message>
ADSBMessage* decodeAs(const std::string& data) {
    auto message = std::make_unique<Message>();
    return message->decode(data) ? message.release() : nullptr;
}

using Decode = ADSBMessage* (*)(const std::string&);

/// What serves a type in MOPS version 0, 1, 2 and above; null where nothing does.
using Row = std::array<Decode, 4>;

template <class Message>
constexpr Row everyVersion = {decodeAs<Message>, decodeAs<Message>, decodeAs<Message>,
                              decodeAs<Message>};

template <class Version0, class Version1, class Version2>
constexpr Row byVersion = {decodeAs<Version0>, decodeAs<Version1>, decodeAs<Version2>, nullptr};

// In the order of ADSBMessage::ADSBMessageType.
constexpr std::array<Row, 8> rows = {
    everyVersion<ADSBIdentityMessage>,
    everyVersion<ADSBSurfacePositionMessage>,
    byVersion<ADSBAirbornePositionMessageV0, ADSBAirbornePositionMessageV1,
              ADSBAirbornePositionMessageV2>,
    byVersion<ADSBAirborneVelocityMessageV0, ADSBAirborneVelocityMessageV1,
              ADSBAirborneVelocityMessageV2>,
    everyVersion<ADSBTestMessage>,
    byVersion<ADSBAircraftStatusMessageV0, ADSBAircraftStatusMessageV0,
              ADSBAircraftStatusMessageV2>,
    Row{nullptr, decodeAs<ADSBTargetStatusMessageV1>, decodeAs<ADSBTargetStatusMessageV2>, nullptr},
    byVersion<ADSBAircraftOperationalStatusMessage, ADSBAircraftOperationalStatusMessage,
              ADSBAircraftOperationalStatusMessage>,
};

} // namespace

ADSBDecoder::ADSBDecoder() {
    Log::log(Log::Info, moduleName, "Initialized.");
}

ADSBMessage* ADSBDecoder::decode(MOPSVersion version, const std::string& data) const {
    if (data.size() < payloadBytes) {
        return nullptr;
    }
    const u32 typeCode = bits::read<0, 5>(data);
    const ADSBMessage::ADSBMessageType type = ADSBMessage::typeByCode(static_cast<u8>(typeCode));
    if (type == ADSBMessage::RESERVED) {
        Log::log(Log::Warning, moduleName, "Unsupported type code = %u (%s).", typeCode,
                 ADSBMessage::typeFullName(type).c_str());
        return nullptr;
    }
    const u32 column = std::min<u32>(static_cast<u32>(version), MOPSVersionUnknown);
    const Decode decodeRow = rows[static_cast<u32>(type)][column];
    return decodeRow != nullptr ? decodeRow(data) : nullptr;
}

} // namespace tolvarin::ondrel
