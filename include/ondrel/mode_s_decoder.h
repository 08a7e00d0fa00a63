/// @file
/// The library's entry for raw Mode S replies.
#pragma once

#include <ondrel/address_table.h>
#include <ondrel/export.h>
#include <ondrel/mode_s_message.h>
#include <ondrel/types.h>

#include <cstdint>
#include <map>
#include <string>

namespace tolvarin::ondrel {

/// Decodes replies, repairs damaged extended squitters and grades how far each can be believed.
///
/// Most replies hide their address in their parity, so that noise decodes into some address. The
/// decoder remembers which addresses proved themselves in the last 600 seconds and which
/// interrogators kept coming with such addresses in the last 60, and grades a reply by that. Both
/// go by the system clock, never by the stamps that a caller passes.
///
/// A decoder belongs to one thread at a time; different decoders are independent.
class ONDREL_EXPORT ModeSDecoder {
public:
    ModeSDecoder();
    ModeSDecoder(const ModeSDecoder&);
    ModeSDecoder& operator=(const ModeSDecoder&);
    /// Leaves the other decoder knowing nothing.
    ModeSDecoder(ModeSDecoder&&) noexcept;
    ModeSDecoder& operator=(ModeSDecoder&&) noexcept;
    ~ModeSDecoder();

    /// Decodes one reply. Gives a new message that the caller owns and deletes, or null for no
    /// bytes, an uplink type, a format without a class, a frame too short, or one that fails its
    /// parity and cannot be repaired. DFMessage::downlinkFormat tells the concrete class.
    ModeSMessage* decode(ModeSMessage::ModeSMsgType type, const std::string& data);

    /// The same with the time of reception in milliseconds since 1970-01-01 UTC; 0 for none.
    ModeSMessage* decode(ModeSMessage::ModeSMsgType type, const std::string& data, u64 timeStamp);

    /// The same for `size` bytes of any byte type; a null pointer counts as no bytes.
    ModeSMessage* decode(ModeSMessage::ModeSMsgType type, const void* data, u64 size);
    ModeSMessage* decode(ModeSMessage::ModeSMsgType type, const void* data, u64 size,
                         u64 timeStamp);

private:
    using Seconds = std::int64_t;

    struct InterrogatorRecord {
        Seconds lastSeen = 0;
        u32 hitCount = 0; ///< hits in the current unbroken run
    };

    template <class Message>
    ModeSMessage* decodeAltitudeReply(const std::string& data, Seconds now);
    template <class Message>
    ModeSMessage* decodeIdentityReply(const std::string& data, Seconds now);
    ModeSMessage* decodeAllCallReply(const std::string& data, Seconds now);
    template <class Message>
    ModeSMessage* decodeSquitter(const std::string& data, Seconds now);
    ModeSMessage* decodeMilitarySquitter(const std::string& data, Seconds now);

    ModeSMessage::Confidence gradeByAddress(u32 address, Seconds now);
    ModeSMessage::Confidence gradeAllCall(u32 address, u32 interrogator, Seconds now);

    AddressTable<Seconds> _icaoAddresses; ///< when each last proved itself
    std::map<u32, InterrogatorRecord> _interrogators;
};

} // namespace tolvarin::ondrel
