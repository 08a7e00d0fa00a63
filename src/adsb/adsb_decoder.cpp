// Which class decodes a payload. The type code gives the type (RTCA DO-260B, table 2-15). The MOPS
// version of the aircraft gives the class, since a payload does not tell its own version.

#include <ondrel/adsb_decoder.h>

#include <ondrel/adsb_airborne_position_message.h>
#include <ondrel/adsb_aircraft_operational_status_message.h>
#include <ondrel/adsb_identity_message.h>
#include <ondrel/adsb_surface_position_message.h>
#include <ondrel/adsb_target_status_message.h>
#include <ondrel/adsb_test_message.h>
#include <ondrel/log.h>

#include "bits.h"
#include "keyed_rows.h"
#include "payload_storage.h"
#include "unexported_messages.h"
#include "wire_field.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <memory>
#include <new>

namespace tolvarin::ondrel {

namespace {

constexpr const char* moduleName = "ADSBDecoder";

/// Makes an empty message: in the given memory, or on the heap for null.
template <class Message>
ADSBMessage* make(void* place) {
    static_assert(sizeof(Message) <= PayloadStorage::size);
    static_assert(alignof(Message) <= alignof(std::max_align_t));
    return place != nullptr ? new (place) Message : new Message;
}

using Make = ADSBMessage* (*)(void* place);

/// The classes of a type, by MOPS version: 0, 1, 2, and 3 for all above. Null means that no class
/// decodes this type at this version; the decoder then gives null without a line in the log.
struct Row {
    ADSBMessage::ADSBMessageType key;
    std::array<Make, 4> byVersion;
};

/// For a type whose layout is the same in all versions, also in later ones.
template <class Message>
constexpr std::array<Make, 4> everyVersion = {make<Message>, make<Message>, make<Message>,
                                              make<Message>};

/// For a type whose layout may be another in later versions.
template <class... Messages>
constexpr std::array<Make, 4> versions0To2 = {make<Messages>..., nullptr};

constexpr std::array<Row, 9> rows = {{
    {ADSBMessage::ACID, everyVersion<ADSBIdentityMessage>},
    {ADSBMessage::POS_GND, everyVersion<ADSBSurfacePositionMessage>},
    {ADSBMessage::POS_AIR,
     versions0To2<ADSBAirbornePositionMessageV0, ADSBAirbornePositionMessageV1,
                  ADSBAirbornePositionMessageV2>},
    {ADSBMessage::AIR_VEL,
     versions0To2<ADSBAirborneVelocityMessageV0, ADSBAirborneVelocityMessageV1,
                  ADSBAirborneVelocityMessageV2>},
    {ADSBMessage::TEST, everyVersion<ADSBTestMessage>},
    {ADSBMessage::AC_STATUS, versions0To2<ADSBAircraftStatusMessageV0, ADSBAircraftStatusMessageV0,
                                          ADSBAircraftStatusMessageV2>},
    // This message came with version 1.
    {ADSBMessage::TG_STATUS,
     {nullptr, make<ADSBTargetStatusMessageV1>, make<ADSBTargetStatusMessageV2>, nullptr}},
    {ADSBMessage::OP_STATUS,
     versions0To2<ADSBAircraftOperationalStatusMessage, ADSBAircraftOperationalStatusMessage,
                  ADSBAircraftOperationalStatusMessage>},
    {ADSBMessage::RESERVED, {}},
}};
static_assert(keysCountFrom0(rows));

/// Chooses the class of a payload. Null if no class decodes it, with a line in the log for a
/// reserved type code.
Make classOf(MOPSVersion version, const std::string& data) {
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
    return rows[static_cast<u32>(type)].byVersion[column];
}

} // namespace

ADSBDecoder::ADSBDecoder() {
    Log::log(Log::Info, moduleName, "Initialized.");
}

ADSBMessage* ADSBDecoder::decode(MOPSVersion version, const std::string& data) const {
    const Make makeMessage = classOf(version, data);
    if (makeMessage == nullptr) {
        return nullptr;
    }
    std::unique_ptr<ADSBMessage> message(makeMessage(nullptr));
    return message->decode(data) ? message.release() : nullptr;
}

PayloadStorage::~PayloadStorage() {
    if (_message != nullptr) {
        _message->~ADSBMessage();
    }
}

ADSBMessage* PayloadStorage::decode(MOPSVersion version, const std::string& data) {
    const Make makeMessage = classOf(version, data);
    if (makeMessage == nullptr) {
        return nullptr;
    }
    _message = makeMessage(_bytes.data());
    return _message->decode(data) ? _message : nullptr;
}

} // namespace tolvarin::ondrel
