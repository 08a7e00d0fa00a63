/// @file
/// Damage to frames on the way to the receiver.
#pragma once

#include "simulator/random.h"

#include <string>

namespace tolvarin::ondrel::simulator {

enum class Damage {
    None,
    OneBit,
    TwoBits,
    ManyBits, ///< 3 to 12 bits
    Cut,      ///< at least one byte missing at the end, at least one left
    Noise,    ///< 7 or 14 random bytes in place of a frame
};

/// Shares of all replies, 0 to 1. Where they add up to more than 1, the last ones get the rest.
struct DamageShares {
    double oneBit = 0;
    double twoBits = 0;
    double manyBits = 0;
    double cut = 0;
    double noise = 0;
};

Damage drawDamage(const DamageShares& shares, Random& random);

/// The frame as received. The frame holds at least 2 bytes.
std::string damaged(std::string frame, Damage damage, Random& random);

/// 7 or 14 random bytes.
std::string noise(Random& random);

} // namespace tolvarin::ondrel::simulator
