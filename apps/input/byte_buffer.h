#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace tolvarin::ondrel::client {

/// Bytes that were read and not used yet, in constant memory.
class ByteBuffer {
public:
    static constexpr std::size_t size = 65536;

    /// The bytes, from the oldest to the newest. Valid until room() is called.
    std::string_view rest() const { return {_bytes.data() + _begin, _end - _begin}; }

    /// Takes the oldest bytes away; no more than there are.
    void drop(std::size_t count) {
        _begin += count;
        _dropped += count;
    }

    /// Bytes taken away so far.
    std::size_t dropped() const { return _dropped; }

    struct Room {
        char* begin;
        std::size_t size;
    };

    /// Where new bytes go. There is room unless rest() has size bytes.
    Room room();

    /// Tells how many new bytes are there.
    void add(std::size_t count);

    /// The first bytes of all, as many of foreignContentSize as came.
    const std::string& beginning() const { return _beginning; }

private:
    std::vector<char> _bytes = std::vector<char>(size);
    std::size_t _begin = 0; ///< of the rest
    std::size_t _end = 0;
    std::size_t _dropped = 0;
    std::string _beginning;
};

} // namespace tolvarin::ondrel::client
