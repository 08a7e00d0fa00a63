#pragma once

#include <ondrel/types.h>

#include <string_view>

namespace tolvarin::ondrel::client {

/// What the store tells of a message in the subject that acknowledges it:
/// "$JS.ACK.STREAM.CONSUMER.DELIVERED.NUMBER.ORDER.TIME.WAITING", where newer stores have two words
/// more in front of STREAM, and perhaps more at the end.
class StoredMessage {
public:
    explicit StoredMessage(std::string_view acknowledgeTo);

    bool isStored() const { return _isStored; }
    u64 number() const { return _number; }   ///< in the stream, from 1
    u64 waiting() const { return _waiting; } ///< messages for the consumer behind this one

private:
    bool _isStored = false;
    u64 _number = 0;
    u64 _waiting = 0;
};

} // namespace tolvarin::ondrel::client
