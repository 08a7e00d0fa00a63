#pragma once

#include "apps/input/reply_reader.h"

#include <ondrel/types.h>

#include <cstddef>
#include <string_view>

namespace tolvarin::ondrel::client {

/// Replies in binary frames: 0x1A, a type, six bytes of the receiver's counter, one of the signal,
/// and the reply. Types are '1' Mode A/C, '2' short, '3' long, '4' status of the receiver. A byte
/// 0x1A behind the type stands twice. Bytes that make no frame are one unreadable piece up to the
/// next frame.
class FrameReader final : public ReplyReader {
public:
    explicit FrameReader(ReceiverCounter::Kind counter) : _counter(counter) {}

    Found next(ByteBuffer& bytes, bool atEnd, Reply& reply) override;
    u64 modeAC() const override { return _modeAC; }

private:
    Found skip(ByteBuffer& bytes, std::size_t count, const char* reason);
    Found takeFrame(ByteBuffer& bytes, bool atEnd, Reply& reply);
    void readBody(std::string_view body, Reply& reply);

    ReceiverCounter _counter;
    bool _betweenFrames = false; ///< bytes are skipped, which was reported
    u64 _modeAC = 0;
};

/// Where the first frame begins, or may begin if the last byte is 0x1A; the size of the bytes if
/// none does.
std::size_t findFrame(std::string_view bytes);

/// Whether a frame begins in these bytes.
inline bool hasFrame(std::string_view bytes) {
    return findFrame(bytes) + 1 < bytes.size();
}

} // namespace tolvarin::ondrel::client
