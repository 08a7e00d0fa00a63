#pragma once

#include "apps/common/reply.h"

#include <ondrel/adsb_decoder.h>
#include <ondrel/adsb_message.h>
#include <ondrel/df_messages.h>
#include <ondrel/mode_s_decoder.h>
#include <ondrel/types.h>

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>

/// What the library makes of one reply.
namespace tolvarin::ondrel::client {

/// The ADS-B payload of an extended squitter.
struct AdsbPayload {
    u8 typeCode = 0;                            ///< 0 to 31
    MOPSVersion version = MOPSVersion0;         ///< in which it was read
    std::unique_ptr<const ADSBMessage> message; ///< null: the library does not decode it
    std::string_view refusal;                   ///< why not: a few words; empty if it does

    /// "POS_AIR" and the like, by the type code. A payload that is not decoded has one too.
    const std::string& typeName() const;

    /// The message's own line, or a line that says what was not decoded.
    std::string description() const;
};

/// A reply and its message.
struct DecodedReply {
    Reply reply;
    std::unique_ptr<const DFMessage> message; ///< null: the decoder refused the reply
    std::optional<AdsbPayload> payload;       ///< only where it was asked for

    bool refused() const { return message == nullptr; }

    /// Whether the decoder inverted bits.
    bool repaired() const { return !refused() && message->data() != reply.bytes; }

    /// Whether it tells an address: a refused reply does not, nor a DF-19 of another application.
    bool hasAddress() const;

    /// "DF-0" to "DF-24"; for a refused reply, what its first five bits say.
    std::string formatName() const;
};

/// The message of a reply of at least one byte; null if the decoder refuses it.
std::unique_ptr<const DFMessage> decodeReply(ModeSDecoder& decoder, const Reply& reply);

/// "None", "Low", "Medium" or "High".
std::string_view confidenceName(ModeSMessage::Confidence confidence);

/// Decodes the payloads of extended squitters, each in the MOPS version of its aircraft.
class PayloadDecoder {
public:
    /// With `version`, every payload is read in that version. Without it, the version is what the
    /// last operational status of the aircraft announced, and 0 before the first one.
    explicit PayloadDecoder(std::optional<MOPSVersion> version) : _version(version) {}

    /// The payload of a DF-17, a DF-18, and a DF-19 that carries one; nothing for other messages
    /// and for null.
    std::optional<AdsbPayload> decode(const DFMessage* message);

private:
    MOPSVersion versionOf(u32 address) const;
    void noteVersion(u32 address, const ADSBMessage& operationalStatus);

    ADSBDecoder _decoder;
    std::optional<MOPSVersion> _version;
    std::unordered_map<u32, MOPSVersion> _announced; ///< by address
};

} // namespace tolvarin::ondrel::client
