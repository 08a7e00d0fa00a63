/// @file
/// The parity of Mode S frames (ICAO Annex 10 Volume IV, 3.1.2.3.3) and the repair of damaged ones.
///
/// Parity is linear: a frame with inverted bits differs in parity by the exclusive-or of the table
/// entries of those bits. A repair therefore needs only the difference between the parity that the
/// frame has and the one that it should have, and never touches the frame.
#pragma once

#include <ondrel/types.h>

#include <optional>
#include <string>
#include <string_view>
#include <utility>

namespace tolvarin::ondrel::parity {

constexpr u8 shortBits = 56;
constexpr u8 longBits = 112;

/// The parity of a frame of `frameBits`. Bytes behind the frame are not read; missing ones count as
/// 0.
u32 sum(std::string_view frame, u8 frameBits);

/// Inverts a bit that the frame has.
void invert(std::string& frame, u8 position);

/// The lowest position whose inversion changes the parity by `difference`.
std::optional<u8> findBit(u8 frameBits, u32 difference);

/// The pair with the lowest first position, and for it the lowest second.
std::optional<std::pair<u8, u8>> findBitPair(u8 frameBits, u32 difference);

} // namespace tolvarin::ondrel::parity
