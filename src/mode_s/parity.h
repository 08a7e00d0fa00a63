/// @file
/// The parity of Mode S frames (ICAO Annex 10 Volume IV, 3.1.2.3.3) and the repair of damaged ones.
///
/// Parity is linear: inverted bits change the parity by the exclusive-or of their table entries,
/// whatever the other bits are. So a repair needs only the difference between the calculated parity
/// and the received one. It searches this difference in a table and does not read the frame.
///
/// Positions count from 0 at the bit that is sent first.
#pragma once

#include <ondrel/types.h>

#include <optional>
#include <string>
#include <string_view>
#include <utility>

namespace tolvarin::ondrel::parity {

constexpr u8 shortBits = 56;
constexpr u8 longBits = 112;

/// The parity of a frame of `frameBits`, without its last 24 bits. Bytes behind the frame are not
/// read; missing bytes count as 0.
u32 sum(std::string_view frame, u8 frameBits);

/// Inverts a bit. The frame must be long enough to have it.
void invert(std::string& frame, u8 position);

/// The lowest position whose inversion changes the parity by `difference`; nothing if there is
/// none. Bits of the parity field do not change it, so they match only a difference of 0.
std::optional<u8> findBit(u8 frameBits, u32 difference);

/// The two positions whose inversion changes the parity by `difference`: the pair with the lowest
/// first position, and for this the lowest second. Nothing if there is no such pair.
std::optional<std::pair<u8, u8>> findBitPair(u8 frameBits, u32 difference);

} // namespace tolvarin::ondrel::parity
