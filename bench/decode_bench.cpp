// Decoding of each downlink format, good replies of known aircraft, beside the floor of floor.h.

#include "compare.h"
#include "floor.h"
#include "samples.h"

#include <ondrel/df_messages.h>

#include <cstddef>
#include <string>

namespace tolvarin::ondrel::bench {
namespace {

/// Decoding of good replies from known aircraft beside the floor.
template <class Format>
void decodeReply(benchmark::State& state, std::string (*encode)(u32), const Format& format) {
    const auto frames = framesOfAll(encode);
    const auto known = knownAddresses();
    const u8 frameBits = format.bits();
    ModeSDecoder decoder = experiencedDecoder();
    if (decoded(decoder, frames.front())->icaoAddress() != addresses().front()) {
        state.SkipWithError("the frames are not those of the aircraft");
        return;
    }
    compare(
        state, order().size(),
        [&](std::size_t i) { benchmark::DoNotOptimize(decoded(decoder, frames[order()[i]])); },
        [&](std::size_t i) {
            decodeFloor<Format>(frames[order()[i]], frameBits, addresses()[order()[i]], known);
        });
}

constexpr int altitude = 36000;
constexpr unsigned squawk = 04721;

std::string df0(u32 address) {
    return simulator::df0(address, {});
}
std::string df4(u32 address) {
    return simulator::df4(address, {}, altitude);
}
std::string df5(u32 address) {
    return simulator::df5(address, {}, squawk);
}
std::string df11(u32 address) {
    return simulator::df11(address, 5, 3);
}
std::string df16(u32 address) {
    return simulator::df16(address, {}, payload);
}
std::string df18(u32 address) {
    return simulator::df18(address, 0, payload);
}
std::string df19(u32 address) {
    return simulator::df19(address, 0, payload);
}
std::string df20(u32 address) {
    return simulator::df20(address, {}, altitude, payload);
}
std::string df21(u32 address) {
    return simulator::df21(address, {}, squawk, payload);
}

BENCHMARK_CAPTURE(decodeReply, DF0, df0, DF0Message())->Apply(inTurns);
BENCHMARK_CAPTURE(decodeReply, DF4, df4, DF4Message())->Apply(inTurns);
BENCHMARK_CAPTURE(decodeReply, DF5, df5, DF5Message())->Apply(inTurns);
BENCHMARK_CAPTURE(decodeReply, DF11, df11, DF11Message())->Apply(inTurns);
BENCHMARK_CAPTURE(decodeReply, DF16, df16, DF16Message())->Apply(inTurns);
BENCHMARK_CAPTURE(decodeReply, DF17, squitter, DF17Message())->Apply(inTurns);
BENCHMARK_CAPTURE(decodeReply, DF18, df18, DF18Message())->Apply(inTurns);
BENCHMARK_CAPTURE(decodeReply, DF19, df19, DF19Message())->Apply(inTurns);
BENCHMARK_CAPTURE(decodeReply, DF20, df20, DF20Message())->Apply(inTurns);
BENCHMARK_CAPTURE(decodeReply, DF21, df21, DF21Message())->Apply(inTurns);

} // namespace
} // namespace tolvarin::ondrel::bench
