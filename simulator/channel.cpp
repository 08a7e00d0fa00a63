// Damage of frames by chance: inverted bits, missing bytes, or noise in place of the frame.

#include "simulator/channel.h"

#include <cstddef>
#include <set>
#include <utility>

namespace tolvarin::ondrel::simulator {
namespace {

/// Inverts `count` different bits.
void invertBits(std::string& bytes, int count, Random& random) {
    std::set<int> positions;
    while (positions.size() < static_cast<std::size_t>(count)) {
        positions.insert(random.between(0, static_cast<int>(8 * bytes.size()) - 1));
    }
    for (const int position : positions) {
        char& byte = bytes[static_cast<std::size_t>(position / 8)];
        byte = static_cast<char>(byte ^ (0x80 >> (position % 8)));
    }
}

} // namespace

Damage drawDamage(const DamageShares& shares, Random& random) {
    const std::pair<double, Damage> table[] = {
        {shares.oneBit, Damage::OneBit},     {shares.twoBits, Damage::TwoBits},
        {shares.manyBits, Damage::ManyBits}, {shares.cut, Damage::Cut},
        {shares.noise, Damage::Noise},
    };
    double left = random.uniform();
    for (const auto& [share, damage] : table) {
        left -= share;
        if (left < 0) {
            return damage;
        }
    }
    return Damage::None;
}

std::string damaged(std::string frame, Damage damage, Random& random) {
    switch (damage) {
    case Damage::OneBit:
        invertBits(frame, 1, random);
        break;
    case Damage::TwoBits:
        invertBits(frame, 2, random);
        break;
    case Damage::ManyBits:
        invertBits(frame, random.between(3, 12), random);
        break;
    case Damage::Cut:
        frame.resize(
            static_cast<std::size_t>(random.between(1, static_cast<int>(frame.size()) - 1)));
        break;
    case Damage::Noise:
        return noise(random);
    case Damage::None:
        break;
    }
    return frame;
}

std::string noise(Random& random) {
    std::string bytes(random.chance(0.5) ? 7 : 14, '\0');
    for (char& byte : bytes) {
        byte = static_cast<char>(random.bits() & 0xFFU);
    }
    return bytes;
}

} // namespace tolvarin::ondrel::simulator
