#include "apps/decoding/decoded_reply.h"

#include <ondrel/adsb_airborne_velocity_message.h>
#include <ondrel/adsb_aircraft_operational_status_message.h>

#include <array>
#include <cstddef>

namespace tolvarin::ondrel::client {

namespace {

/// The seven bytes of the ME field; null for a message without one.
const std::string* meBytes(const DFMessage& message) {
    switch (message.downlinkFormat()) {
    case DFMessage::DF17:
        return &static_cast<const DF17Message&>(message).constFieldME().data();
    case DFMessage::DF18:
        return &static_cast<const DF18Message&>(message).constFieldME().data();
    case DFMessage::DF19:
        return &static_cast<const DF19Message&>(message).constFieldME().data();
    default:
        return nullptr;
    }
}

/// Why the library gives no message for a payload.
std::string_view refusalOf(u8 typeCode, MOPSVersion version, const std::string& field) {
    constexpr std::string_view reservedSubtype = "reserved subtype";
    constexpr std::string_view otherVersion = "not of this MOPS version";
    const auto subtype = static_cast<u8>(static_cast<u8>(field.front()) & 0x07U);
    switch (ADSBMessage::typeByCode(typeCode)) {
    case ADSBMessage::RESERVED:
        return "reserved type code";
    case ADSBMessage::AIR_VEL:
        return subtype == ADSBAirborneVelocityMessage::AIR_SPEED ||
                       subtype == ADSBAirborneVelocityMessage::AIR_SPEED_SUPER_SONIC
                   ? "air speed"
                   : reservedSubtype;
    case ADSBMessage::AC_STATUS:
        return subtype == 2 ? "resolution advisory" : reservedSubtype;
    case ADSBMessage::TG_STATUS: // its subtype has two bits: 0 is of version 1, 1 of version 2
        return version != MOPSVersion0 && subtype >= 4 ? reservedSubtype : otherVersion;
    case ADSBMessage::OP_STATUS:
        return "announces MOPS version 0";
    default:
        return otherVersion;
    }
}

} // namespace

bool DecodedReply::hasAddress() const {
    return !refused() && (message->downlinkFormat() != DFMessage::DF19 ||
                          static_cast<const DF19Message&>(*message).constFieldAF().code() == 0);
}

std::string DecodedReply::formatName() const {
    if (!refused()) {
        return message->downlinkFormatName();
    }
    const auto code = static_cast<u8>(static_cast<u8>(reply.bytes.front()) >> 3U);
    return "DF-" + std::to_string(DFMessage::downlinkFormatByCode(code));
}

std::unique_ptr<const DFMessage> decodeReply(ModeSDecoder& decoder, const Reply& reply) {
    // To the decoder, 0 is "no stamp".
    ModeSMessage* message =
        decoder.decode(ModeSMessage::Downlink, reply.bytes, reply.stampMs.value_or(0));
    if (message != nullptr && reply.signalAmplitude != 0) {
        message->setSignalAmplitude(reply.signalAmplitude);
    }
    if (message != nullptr && reply.grade) {
        message->setConfidence(*reply.grade);
    }
    // Every downlink message is a DFMessage.
    return std::unique_ptr<const DFMessage>(static_cast<const DFMessage*>(message));
}

std::string_view confidenceName(ModeSMessage::Confidence confidence) {
    constexpr std::array<std::string_view, 4> names = {"None", "Low", "Medium", "High"};
    return names.at(static_cast<std::size_t>(confidence));
}

const std::string& AdsbPayload::typeName() const {
    return ADSBMessage::typeName(ADSBMessage::typeByCode(typeCode));
}

std::string AdsbPayload::description() const {
    if (message) {
        return message->description();
    }
    return "TC=" + typeName() + ", not decoded: " + std::string(refusal) + " (type code " +
           std::to_string(typeCode) + ", MOPS version " + std::to_string(version) + ")";
}

std::optional<AdsbPayload> PayloadDecoder::decode(const DFMessage* message) {
    const std::string* bytes = message != nullptr ? meBytes(*message) : nullptr;
    if (bytes == nullptr || bytes->empty()) { // a DF-19 can lack it
        return std::nullopt;
    }
    AdsbPayload payload;
    payload.typeCode = static_cast<u8>(static_cast<u8>(bytes->front()) >> 3U);
    payload.version = versionOf(message->icaoAddress());
    payload.message.reset(_decoder.decode(payload.version, *bytes));
    if (!payload.message) {
        payload.refusal = refusalOf(payload.typeCode, payload.version, *bytes);
    } else if (payload.message->type() == ADSBMessage::OP_STATUS) {
        noteVersion(message->icaoAddress(), *payload.message);
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

/// A version later than 2 is read as 2, the latest one that the library knows.
void PayloadDecoder::noteVersion(u32 address, const ADSBMessage& operationalStatus) {
    const MOPSVersion version =
        static_cast<const ADSBAircraftOperationalStatusMessage&>(operationalStatus).version();
    _announced[address] = version == MOPSVersionUnknown ? MOPSVersion2 : version;
}

} // namespace tolvarin::ondrel::client
