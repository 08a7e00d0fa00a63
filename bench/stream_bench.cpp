// Decoding of mixed traffic, good and damaged.

#include "compare.h"
#include "floor.h"
#include "samples.h"

#include "simulator/traffic.h"

#include <ondrel/df_messages.h>

#include <algorithm>
#include <cstddef>
#include <vector>

namespace tolvarin::ondrel::bench {
namespace {

/// Ten seconds of 200 aircraft. One reply in ten is damaged or noise.
std::vector<simulator::Reply> makeStream() {
    simulator::TrafficOptions options;
    options.aircraft = 200;
    options.seconds = 10;
    options.damage.oneBit = 0.03;
    options.damage.twoBits = 0.01;
    options.damage.manyBits = 0.02;
    options.damage.cut = 0.01;
    options.damage.noise = 0.03;
    simulator::Traffic traffic(options);
    std::vector<simulator::Reply> replies;
    while (auto reply = traffic.next()) {
        replies.push_back(*std::move(reply));
    }
    return replies;
}

/// All replies of the stream in their order, beside the floor for each.
void mixedStream(benchmark::State& state) {
    const auto replies = makeStream();
    const auto known = knownAddresses();
    ModeSDecoder decoder = experiencedDecoder();
    compare(
        state, replies.size(),
        [&](std::size_t i) {
            const simulator::Reply& reply = replies[i];
            benchmark::DoNotOptimize(
                Message(decoder.decode(ModeSMessage::Downlink, reply.bytes, reply.timeMs)));
        },
        [&](std::size_t i) {
            const std::string& frame = replies[i].bytes;
            const u32 address = addresses()[order()[i % order().size()]];
            if (frame.size() < 14) {
                decodeFloor<DF4Message>(frame, 56, address, known);
            } else {
                decodeFloor<DF17Message>(frame, 112, address, known);
            }
        });
    state.counters["replies"] = static_cast<double>(replies.size());
}

BENCHMARK(mixedStream)->Apply(inTurns);

} // namespace
} // namespace tolvarin::ondrel::bench
