// The whole road of a reply: decode it, track it, delete it.

#include "compare.h"
#include "road_floor.h"
#include "samples.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <string_view>
#include <thread>
#include <vector>

namespace tolvarin::ondrel::bench {
namespace {

const InTable roadRows(
    {"road",
     "The whole road of a reply: decode, track, delete. The number is that of the aircraft. Mixed "
     "traffic has squitters and other replies; both also stand alone. Of damaged traffic, which is "
     "mixed too, one reply in twenty has wrong bits.",
     "two heap objects for a squitter and one for another reply, the parity, one hashed look-up of "
     "the address and one of the aircraft, all values of the reply read, positions solved, and all "
     "of it stored with its stamps (bench/road_floor.h). Each run first checks that library and "
     "floor hold the same data after mixed traffic."});

bool isNear(double a, double b) {
    return std::abs(a - b) < 1e-6;
}

/// Whether the floor did what the library did.
bool agree(const ADSBTarget& target, const AircraftRecord* record) {
    if (record == nullptr) {
        return false;
    }
    const auto& callsign = record->callsign.value;
    return target.lastUpdate() == record->lastUpdate &&
           target.altitudeBaro() == record->altitude.value &&
           target.squawk() == record->squawk.value &&
           (target.callsign().empty() ||
            target.callsign() == std::string_view(callsign.data(), callsign.size())) &&
           isNear(target.latitude(), record->position.value.latitude) &&
           isNear(target.longitude(), record->position.value.longitude) &&
           isNear(target.groundSpeed(), record->velocity.value.groundSpeed) &&
           isNear(target.heading(), record->velocity.value.heading);
}

void road(benchmark::State& state, Kind kind) {
    const auto aircraft = static_cast<unsigned>(state.range(0));
    const auto& replies = stream(kind, aircraft);
    Sky sky(aircraft);
    RoadFloor floor;
    const auto hearInFloor = [&](const Heard& reply) { floor.take(reply.frame(), reply.timeMs); };
    hearTwice(aircraft, hearInFloor);
    const auto targets = sky.tracker().allTargets();
    const auto agrees = [&](const auto& target) {
        return agree(target, floor.find(target.icaoAddr()));
    };
    if (targets.size() != aircraft || !std::all_of(targets.begin(), targets.end(), agrees)) {
        state.SkipWithError("the floor does not agree with the library");
        return;
    }
    compare(
        state, replies.size(), [&](std::size_t i) { sky.hear(replies[i]); },
        [&](std::size_t i) { hearInFloor(replies[i]); });
}

void atSeveralSizes(benchmark::internal::Benchmark* registered) {
    for (const int aircraft : {10, 200, 500, 2000, 4095}) {
        registered->Arg(aircraft);
    }
    inTurns(registered);
}

BENCHMARK_CAPTURE(road, Mixed, Kind::Mixed)->Apply(atSeveralSizes);
BENCHMARK_CAPTURE(road, Damaged, Kind::Damaged)->Apply(atSeveralSizes);
BENCHMARK_CAPTURE(road, Squitters, Kind::Squitters)->Apply(atSeveralSizes);
BENCHMARK_CAPTURE(road, Surveillance, Kind::Surveillance)->Apply(atSeveralSizes);

const InTable fullRows({"fullTable",
                        "The whole road of a reply in the full table, of 4095 aircraft.",
                        "the same road with ten aircraft."});

void fullTable(benchmark::State& state, Kind kind) {
    Sky many(4095);
    Sky few(10);
    compareTurns(
        state, [&] { return many.timeToHear(stream(kind, 4095)); },
        [&] { return few.timeToHear(stream(kind, 10)); });
}

BENCHMARK_CAPTURE(fullTable, Mixed, Kind::Mixed)->Apply(inTurns);
BENCHMARK_CAPTURE(fullTable, Damaged, Kind::Damaged)->Apply(inTurns);
BENCHMARK_CAPTURE(fullTable, Squitters, Kind::Squitters)->Apply(inTurns);
BENCHMARK_CAPTURE(fullTable, Surveillance, Kind::Surveillance)->Apply(inTurns);

const InTable
    threadsRows({"twoThreads",
                 "Two threads at once, each with its own decoder and tracker, 500 aircraft: CPU "
                 "time of both together for one reply each.",
                 "one thread alone; 2.00 means that the threads do not disturb each other."});

void twoThreads(benchmark::State& state) {
    const auto& replies = stream(Kind::Mixed, 500);
    Sky first(500);
    Sky second(500);
    Sky alone(500);
    compareTurns(
        state,
        [&] {
            double firstTime = 0;
            std::thread thread([&] { firstTime = first.timeToHear(replies); });
            const double secondTime = second.timeToHear(replies);
            thread.join();
            return firstTime + secondTime;
        },
        [&] { return alone.timeToHear(replies); });
}

BENCHMARK(twoThreads)->Apply(inTurns);

} // namespace
} // namespace tolvarin::ondrel::bench
