/// @file
/// Random numbers of the simulation.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <random>

namespace tolvarin::ondrel::simulator {

/// Random numbers that are the same for the same seed on every platform. The C++ standard fixes the
/// numbers of the engine but not those of the distributions, so the distributions are made here.
///
/// Two draws in the arguments of one call have no fixed order: draw them in statements of their
/// own, or inside braces.
class Random {
public:
    explicit Random(std::uint64_t seed) : _engine(seed) {}

    std::uint64_t bits() { return _engine(); }

    /// From 0 up to but not including 1.
    double uniform() { return static_cast<double>(bits() >> 11U) * 0x1p-53; }

    double uniform(double low, double high) { return low + (high - low) * uniform(); }

    /// From `low` to `high`, both included; `low` if the range is empty.
    int between(int low, int high) {
        if (high <= low) {
            return low;
        }
        const auto span = static_cast<std::uint64_t>(std::int64_t{high} - low + 1);
        return static_cast<int>(low + static_cast<std::int64_t>(bits() % span));
    }

    template <typename T, std::size_t N>
    T oneOf(const std::array<T, N>& values) {
        return values[static_cast<std::size_t>(bits() % N)];
    }

    /// True with the given probability.
    bool chance(double probability) { return uniform() < probability; }

private:
    std::mt19937_64 _engine;
};

} // namespace tolvarin::ondrel::simulator
