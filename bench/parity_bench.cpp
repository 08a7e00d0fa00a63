// The parity sum of short and long frames.

#include "parity.h"

#include "compare.h"
#include "samples.h"

#include <array>
#include <cstddef>

namespace tolvarin::ondrel::bench {
namespace {

/// The parity of a frame, beside one look-up for each of its protected bytes in a single table. The
/// look-ups of the floor do not depend on each other, and its values do not matter.
void paritySum(benchmark::State& state) {
    const auto frameBits = static_cast<u8>(state.range(0));
    const std::size_t protectedBytes = frameBits / 8 - 3;
    const auto frames = framesOfAll(squitter);

    std::array<u32, 256> steps{};
    for (u32 i = 0; i < steps.size(); ++i) {
        steps[i] = i * 2654435761U;
    }
    compare(
        state, order().size(),
        [&](std::size_t i) {
            benchmark::DoNotOptimize(parity::sum(frames[order()[i]], frameBits));
        },
        [&](std::size_t i) {
            const std::string& frame = frames[order()[i]];
            u32 value = 0;
            for (std::size_t j = 0; j < protectedBytes; ++j) {
                value ^= steps[static_cast<u8>(frame[j])];
            }
            benchmark::DoNotOptimize(value);
        });
}

BENCHMARK(paritySum)->Arg(56)->Arg(112)->Apply(inTurns);

} // namespace
} // namespace tolvarin::ondrel::bench
