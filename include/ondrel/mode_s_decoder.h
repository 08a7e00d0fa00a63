/// @file
/// The library's entry for raw Mode S replies.
#pragma once

#include <ondrel/export.h>
#include <ondrel/mode_s_message.h>
#include <ondrel/types.h>

#include <memory>
#include <string>

namespace tolvarin::ondrel {

class Grading;

/// Decodes replies, repairs damaged extended squitters and grades how far each reply can be
/// believed.
///
/// Most replies overlay their address on their parity, so noise decodes into some address too. The
/// decoder remembers which addresses proved themselves in the last 600 seconds, and which
/// interrogators had all-call replies from such addresses in the last 60 seconds. It grades each
/// reply by that. Both times are of the system clock: stamps that a caller passes do not count.
///
/// A decoder belongs to one thread at a time; different decoders are independent. Only exhausted
/// memory throws: the decoder then knows what it knew before. The log can have lines of the reply.
class ONDREL_EXPORT ModeSDecoder {
public:
    /// A decoder that knows no address and no interrogator. Writes a line to the log.
    ModeSDecoder();

    /// A copy knows what the other decoder knows, and learns on its own from then on.
    ///@{
    ModeSDecoder(const ModeSDecoder&);
    ModeSDecoder& operator=(const ModeSDecoder&);
    ///@}

    /// Takes over what the other decoder knows. The other one is then as new.
    ///@{
    ModeSDecoder(ModeSDecoder&&) noexcept;
    ModeSDecoder& operator=(ModeSDecoder&&) noexcept;
    ///@}

    /// Forgets what is known. Messages that the decoder gave stay: they belong to the caller.
    ~ModeSDecoder();

    /// Decodes one reply. `data` holds its bytes, the first on the wire first; a null pointer
    /// counts as no bytes, and bytes behind the frame are ignored. `timeStamp` tells when it was
    /// received, in milliseconds since 1970-01-01 UTC; with 0, or without it, the message has the
    /// second in which it was built.
    ///
    /// Gives a new message, which the caller owns and deletes; DFMessage::downlinkFormat tells its
    /// class. Gives null for no bytes, an uplink, a format other than DF-0, 4, 5, 11 and 16 to 21,
    /// a frame that is too short, and an extended squitter with a wrong parity that cannot be
    /// repaired. One or two inverted bits of a DF-17 or DF-18 are repaired, and ModeSMessage::data
    /// then holds the repaired bytes. Repairs and failed parities are noted in the log.
    ///@{
    ModeSMessage* decode(ModeSMessage::ModeSMsgType type, const std::string& data);
    ModeSMessage* decode(ModeSMessage::ModeSMsgType type, const std::string& data, u64 timeStamp);
    ModeSMessage* decode(ModeSMessage::ModeSMsgType type, const void* data, u64 size);
    ModeSMessage* decode(ModeSMessage::ModeSMsgType type, const void* data, u64 size,
                         u64 timeStamp);
    ///@}

private:
    std::unique_ptr<Grading> _grading; ///< null: nothing is known
};

} // namespace tolvarin::ondrel
