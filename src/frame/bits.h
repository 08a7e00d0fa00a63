/// @file
/// The bit reader that serves every wire field.
#pragma once

#include <ondrel/types.h>

#include <cstddef>
#include <string_view>
#include <type_traits>

namespace tolvarin::ondrel::bits {

/// Reads `Width` bits, most significant first, that stand `Pos` bits behind the top bit of byte 0.
/// The bytes must reach to the last of them. Gives a u64 where a u32 has no room for them.
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
