/// @file
/// Memory for one payload, so that the tracker decodes a payload without the heap.
#pragma once

#include <ondrel/adsb_message.h>
#include <ondrel/types.h>

#include <array>
#include <cstddef>
#include <string>

namespace tolvarin::ondrel {

/// Holds one message of any class that ADSBDecoder builds.
class PayloadStorage {
public:
    PayloadStorage() = default;
    PayloadStorage(const PayloadStorage&) = delete;
    PayloadStorage& operator=(const PayloadStorage&) = delete;
    ~PayloadStorage();

    /// Decodes as ADSBDecoder::decode does, with the same lines in the log. The message lives until
    /// the storage is destroyed. To be called once.
    ADSBMessage* decode(MOPSVersion version, const std::string& data);

    /// The sources assert that every class fits.
    static constexpr std::size_t size = 256;

private:
    alignas(std::max_align_t)
        std::array<std::byte, size> _bytes; // not initialised: decode() makes a message in it
    ADSBMessage* _message = nullptr;
};

} // namespace tolvarin::ondrel
