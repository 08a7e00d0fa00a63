/// @file
/// The bit reader for all fields of frames and payloads.
#pragma once

#include <ondrel/types.h>

#include <cstddef>
#include <string_view>
#include <type_traits>

namespace tolvarin::ondrel::bits {

/// Reads `Width` bits from bit `Pos` on, most significant first. Bit 0 is the top bit of byte 0,
/// which is sent first. The caller makes sure that `bytes` holds all these bits. The result is a
/// u32, and a u64 above 32 bits.
///
/// Place and width are known to the compiler, which makes a few shifts of the loop.
template <unsigned Pos, unsigned Width>
constexpr auto read(std::string_view bytes) {
    constexpr std::size_t first = Pos / 8;
    constexpr std::size_t last = (Pos + Width - 1) / 8;
    static_assert(Width >= 1 && Width < 64 && last - first < sizeof(u64));
    u64 window = 0;
    for (std::size_t i = first; i <= last; ++i) {
        window = window << 8 | static_cast<u8>(bytes[i]);
    }
    constexpr unsigned behind = 7 - (Pos + Width - 1) % 8;
    using Value = std::conditional_t<Width <= 32, u32, u64>;
    return static_cast<Value>(window >> behind & ((u64{1} << Width) - 1));
}

} // namespace tolvarin::ondrel::bits
