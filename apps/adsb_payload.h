#pragma once

#include <ondrel/adsb_decoder.h>
#include <ondrel/adsb_message.h>
#include <ondrel/df_messages.h>
#include <ondrel/types.h>

#include <map>
#include <memory>
#include <optional>
#include <string>

namespace tolvarin::ondrel::client {

/// The ADS-B payload of an extended squitter.
struct AdsbPayload {
    u8 typeCode = 0;                            ///< 0 to 31
    MOPSVersion version = MOPSVersion0;         ///< how it was read
    std::unique_ptr<const ADSBMessage> message; ///< null: the library does not decode it

    /// "POS_AIR" and the like; that of a payload that is not decoded is by its type code.
    const std::string& typeName() const;

    /// The message's own line, or a like one that says what was not decoded.
    std::string description() const;
};

/// Decodes the payloads of extended squitters, each as its aircraft means it.
class PayloadDecoder {
public:
    /// Without a version, an aircraft is read in the one that its last operational status
    /// announced, and in version 0 before the first.
    explicit PayloadDecoder(std::optional<MOPSVersion> version) : _version(version) {}

    /// The payload of a DF-17, of a DF-18, and of a DF-19 that has the form of one; nothing for
    /// other messages.
    std::optional<AdsbPayload> decode(const DFMessage& message);

private:
    MOPSVersion versionOf(u32 address) const;
    void learn(u32 address, const ADSBMessage& payload);

    ADSBDecoder _decoder;
    std::optional<MOPSVersion> _version;
    std::map<u32, MOPSVersion> _announced; ///< by address
};

} // namespace tolvarin::ondrel::client
