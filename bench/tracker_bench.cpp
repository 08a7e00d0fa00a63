// The table of aircraft: lists, new aircraft, memory, reports.

#include "compare.h"
#include "samples.h"

#include <ondrel/adsb_tracker.h>
#include <ondrel/df_messages.h>

#include <malloc.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <memory>
#include <sstream>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

namespace tolvarin::ondrel::bench {
namespace {

constexpr u32 mostAircraft = 4095; // as many as there are track numbers

const InTable
    listRows({"list",
              "An aircraft in a list of the tracker, which has 4095: of all of them, and of "
              "those heard in the later half of the time.",
              "a copy of as many records out of a std::vector."});

/// `list` makes a list of the tracker.
template <class List>
void compareList(benchmark::State& state, List list) {
    const auto records = list();
    const auto count = static_cast<double>(records.size());
    const auto timeOf = [count](auto makeList) {
        return cpuTime([&] { benchmark::DoNotOptimize(makeList().data()); }) / count;
    };
    compareTurns(
        state, [&] { return timeOf(list); },
        [&] { return timeOf([&] { return std::vector<ADSBTarget>(records); }); });
}

void listAll(benchmark::State& state) {
    Sky sky(mostAircraft);
    compareList(state, [&] { return sky.tracker().allTargets(); });
}

void listSince(benchmark::State& state) {
    Sky sky(mostAircraft);
    std::vector<u64> times;
    for (const ADSBTarget& target : sky.tracker().allTargets()) {
        times.push_back(target.lastUpdate());
    }
    std::nth_element(times.begin(), times.begin() + mostAircraft / 2, times.end());
    compareList(state, [&] { return sky.tracker().allTargetsSince(times[mostAircraft / 2]); });
}

BENCHMARK(listAll)->Name("list/All")->Apply(inTurns);
BENCHMARK(listSince)->Name("list/SinceHalf")->Apply(inTurns);

const InTable newRows(
    {"newAircraft",
     "The first altitude reply of an aircraft, tracked only, where at most 32 places of the "
     "table are left.",
     "a record of the same size made on the heap and entered into a std::unordered_map "
     "of as many aircraft."});

/// A believed reply, ready to be tracked.
Message believed(u32 aircraft, u64 stamp) {
    auto message = std::make_unique<DF4Message>();
    message->decode(simulator::df4(0x400000 + 37 * aircraft, {}, 36000));
    message->setConfidence(ModeSMessage::High);
    message->setTimeStamp(stamp);
    return message;
}

void newAircraft(benchmark::State& state) {
    constexpr u32 places = 32;
    using Record = std::array<std::byte, sizeof(ADSBTarget)>;
    ADSBTracker tracker;
    std::unordered_map<u32, std::unique_ptr<Record>> floor;
    std::vector<Message> messages;
    for (u32 i = 0; i < mostAircraft; ++i) {
        const bool isNew = i < places;
        Message message = believed(i, isNew ? 1 : 2);
        if (isNew) {
            messages.push_back(std::move(message));
        } else {
            tracker.procModeSMsg(message.get());
            floor.emplace(message->icaoAddress(), std::make_unique<Record>());
        }
    }
    const auto enter = [&](std::size_t i) { tracker.procModeSMsg(messages[i].get()); };
    const auto enterInFloor = [&](std::size_t i) {
        floor.emplace(messages[i]->icaoAddress(), std::make_unique<Record>());
    };
    bool allEntered = true;
    compareTurns(
        state,
        [&] {
            const double time = timePerItem(places, enter);
            allEntered = allEntered && tracker.killTargets(1).size() == places;
            return time;
        },
        [&] {
            const double time = timePerItem(places, enterInFloor);
            for (const Message& message : messages) {
                floor.erase(message->icaoAddress());
            }
            return time;
        });
    if (!allEntered) {
        state.SkipWithError("an aircraft found no place");
    }
}

BENCHMARK(newAircraft)->Apply(inTurns);

const InTable
    memoryRows({"memory",
                "Memory that one of 4095 aircraft takes in a full tracker and its decoder "
                "together: what lives on the heap when the tables are full.",
                "the size of the data of an aircraft, each once, with the times that the "
                "interface tells, and of its address and time in the decoder.",
                "bytes"});

/// What ADSBTarget tells, and what the tracker needs to know for it.
struct AircraftData {
    std::array<u64, 25> lastUpdates;
    std::array<u64, 13> lastChanges;
    std::array<u64, 2> timesOfCprFrames;
    std::array<i32, 4> cprFrames;
    std::array<double, 4> positionAndVelocity;
    std::array<u32, 19> counts; // of ten formats and nine kinds of payload
    i32 altitude;
    i32 verticalRate;
    u32 address;
    u32 addressInDecoder;
    u64 timeInDecoder;
    std::array<u8, 8> callsign;
    std::array<u8, 21> smallNumbersAndFlags; // two bytes each for squawk and track number
};

/// Bytes on the heap that are not free, of all that the program allocated.
std::size_t liveBytes() {
    const struct mallinfo2 heap = mallinfo2();
    return heap.uordblks + heap.hblkhd;
}

void memory(benchmark::State& state) {
    stream(Kind::Mixed, mostAircraft); // before the bytes are counted
    const std::size_t before = liveBytes();
    const Sky sky(mostAircraft);
    const auto bytes = static_cast<double>(liveBytes() - before);
    compareTurns(
        state, [=] { return bytes / mostAircraft; }, [] { return sizeof(AircraftData); });
}

BENCHMARK(memory)->Apply(inTurns);

const InTable pageRows({"reportPage", "The HTML page of a report of an aircraft.",
                        "the finished lines of the page appended one by one to a string."});

void reportPage(benchmark::State& state) {
    Sky sky(1);
    const ADSBTargetReport report = sky.tracker().allTargets().front().report();
    std::istringstream page(report.toHtml(""));
    std::vector<std::string> lines;
    for (std::string line; std::getline(page, line);) {
        lines.push_back(line + '\n');
    }
    compare(
        state, 200, [&](std::size_t) { benchmark::DoNotOptimize(report.toHtml("")); },
        [&](std::size_t) {
            std::string copy;
            for (const std::string& line : lines) {
                copy += line;
            }
            benchmark::DoNotOptimize(copy.data());
        });
}

BENCHMARK(reportPage)->Apply(inTurns);

} // namespace
} // namespace tolvarin::ondrel::bench
