#pragma once

#include "apps/common/reply.h"
#include "apps/input/byte_buffer.h"
#include "apps/input/receiver_counter.h"

#include <ondrel/types.h>

#include <memory>
#include <string>
#include <string_view>

namespace tolvarin::ondrel::client {

/// A piece of input that should hold a reply but cannot be read.
struct UnreadablePiece {
    std::string place; ///< within its input: ":12" for line 12, ", byte 345"
    std::string reason;
};

/// Finds the replies in the bytes of a file or a feed. A new form of input is one class of this
/// kind, and one line in ReplyReader::forBytes().
class ReplyReader {
public:
    enum class Found {
        Reply,
        Unreadable, ///< a piece that unreadable() tells of; go on
        Skipped,    ///< the same, for a piece that should hold no reply
        Foreign,    ///< the input is of another kind, which the reason of unreadable() names
        Nothing,    ///< more bytes are needed
    };

    ReplyReader() = default;
    ReplyReader(const ReplyReader&) = delete;
    ReplyReader& operator=(const ReplyReader&) = delete;
    virtual ~ReplyReader() = default;

    /// The reader for input with this beginning; null if more bytes are needed to tell.
    static std::unique_ptr<ReplyReader> forBytes(const ByteBuffer& bytes, bool atEnd,
                                                 ReceiverCounter::Kind counter);

    /// Takes the next reply out of the bytes. `atEnd` says that no more bytes will come.
    virtual Found next(ByteBuffer& bytes, bool atEnd, Reply& reply) = 0;

    /// What the last call of next() could not read.
    const UnreadablePiece& unreadable() const { return _unreadable; }

    /// Mode A/C replies, which are left out.
    virtual u64 modeAC() const { return 0; }

protected:
    UnreadablePiece _unreadable;
};

} // namespace tolvarin::ondrel::client
