#include "apps/adsb_payload.h"

#include <ondrel/adsb_aircraft_operational_status_message.h>

namespace tolvarin::ondrel::client {

namespace {

/// Seven bytes, or none where there is no such field.
std::string meBytes(const DFMessage& message) {
    switch (message.downlinkFormat()) {
    case DFMessage::DF17:
        return static_cast<const DF17Message&>(message).constFieldME().data();
    case DFMessage::DF18:
        return static_cast<const DF18Message&>(message).constFieldME().data();
    case DFMessage::DF19:
        return static_cast<const DF19Message&>(message).constFieldME().data();
    default:
        return {};
    }
}

} // namespace

const std::string& AdsbPayload::typeName() const {
    return ADSBMessage::typeName(ADSBMessage::typeByCode(typeCode));
}

std::string AdsbPayload::description() const {
    if (message) {
        return message->description();
    }
    return "TC=" + typeName() + ", not decoded (type code " + std::to_string(typeCode) +
           ", MOPS version " + std::to_string(version) + ")";
}

std::optional<AdsbPayload> PayloadDecoder::decode(const DFMessage& message) {
    const std::string bytes = meBytes(message);
    if (bytes.empty()) {
        return std::nullopt;
    }
    AdsbPayload payload;
    payload.typeCode = static_cast<u8>(static_cast<u8>(bytes.front()) >> 3U);
    payload.version = versionOf(message.icaoAddress());
    payload.message.reset(_decoder.decode(payload.version, bytes));
    if (payload.message && payload.message->type() == ADSBMessage::OP_STATUS) {
        learn(message.icaoAddress(), *payload.message);
    }
    return payload;
}

MOPSVersion PayloadDecoder::versionOf(u32 address) const {
    if (_version) {
        return *_version;
    }
    const auto announced = _announced.find(address);
    return announced != _announced.end() ? announced->second : MOPSVersion0;
}

/// Of a version that is not known yet, the nearest one is taken.
void PayloadDecoder::learn(u32 address, const ADSBMessage& payload) {
    const MOPSVersion version =
        static_cast<const ADSBAircraftOperationalStatusMessage&>(payload).version();
    _announced[address] = version == MOPSVersionUnknown ? MOPSVersion2 : version;
}

} // namespace tolvarin::ondrel::client
