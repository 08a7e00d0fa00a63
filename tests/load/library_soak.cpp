// Thousands of simulated aircraft in decoder and tracker, with damage, noise and expiry.
//
//   ondrel_soak MINUTES
//
// One fleet after the other flies by. Fails if the table holds an aircraft that was neither sent
// nor counted as a false one, if a squitter with one or two wrong bits is taken for another
// aircraft's, if noise or badly damaged squitters are repaired more or less often than chance has
// it, if other damaged replies meet an address too often, or if the memory grows.

#include "simulator/random.h"
#include "simulator/traffic.h"

#include "support/movable_clock.h"

#include <ondrel/adsb_target.h>
#include <ondrel/adsb_tracker.h>
#include <ondrel/df_messages.h>
#include <ondrel/log.h>
#include <ondrel/mode_s_decoder.h>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <memory>
#include <ratio>
#include <set>
#include <stdexcept>
#include <string>
#include <unistd.h>
#include <vector>

namespace tolvarin::ondrel::test {
namespace {

using simulator::Damage;

constexpr unsigned fleets = 16; // that differ
constexpr unsigned fleetSize = 3000;
constexpr double everywhereNm = 20000;
constexpr unsigned flightSeconds = 20;
constexpr u64 betweenFleets = 300'000; ///< ms; the decoder forgets an address after 600 s
constexpr u64 longestSilence = 10'000; ///< ms
constexpr unsigned noiseFrames = 50'000;

/// Noise behind DF-17 passes if its parity holds by chance, or can be made to hold by inverting one
/// or two of the bits from 5 to 87, or one of them and any bit of the parity field. A change of the
/// first five bits makes another format of it.
constexpr double noiseShare() {
    constexpr double bits = 83;
    return (1 + bits + bits * (bits - 1) / 2) / (1 << 24);
}

/// The same for squitters with 3 to 12 wrong bits, as often of each number. They need their format
/// bits. The polynomial has the factor x + 1, so that a sum tells whether the number of wrong bits
/// is even: then none or two bits are inverted, otherwise one.
constexpr double repairShare() {
    constexpr double bits = 83;
    double share = 0;
    double formatIsGood = 1;
    for (int wrong = 1; wrong <= 12; ++wrong) {
        formatIsGood *= (107.0 - (wrong - 1)) / (112.0 - (wrong - 1));
        const double sums = wrong % 2 == 0 ? 1 + bits * (bits - 1) / 2 : bits;
        share += wrong < 3 ? 0 : formatIsGood * sums / (1 << 23) / 10;
    }
    return share;
}

/// Damage and noise may meet an address that is known: those of three fleets, the false ones among
/// them. Addresses of a state stand close together, so a few wrong bits meet another one more often
/// than chance: four times is the limit.
constexpr double mostFalseShare = 4.0 * 3 * fleetSize / (1 << 24);

struct Counts {
    u64 fleets = 0;
    u64 replies = 0;
    u64 badlyDamaged = 0; ///< long squitters with more than two wrong bits
    u64 repaired = 0;     ///< of those: taken for good after a repair
    u64 falseRepairs = 0; ///< of those: into another aircraft's
    u64 otherDamaged = 0; ///< other damaged replies, and noise
    u64 otherFalse = 0;   ///< of those: what the table took for another aircraft's
    u64 noise = 0;        ///< frames behind DF-17
    u64 noiseRepaired = 0;
    std::size_t mostTracked = 0;
};

u64 residentKb() {
    u64 all = 0;
    u64 resident = 0;
    std::ifstream("/proc/self/statm") >> all >> resident;
    return resident * static_cast<u64>(::sysconf(_SC_PAGESIZE)) / 1024;
}

bool isSquitter(const std::string& sent) {
    return sent.size() == 14 && static_cast<u8>(sent.front()) >> 3 == DFMessage::DF17;
}

class Soak {
public:
    /// Lets a fleet fly by, and its aircraft leave the table.
    void flyFleet() {
        simulator::TrafficOptions options;
        options.aircraft = fleetSize;
        options.seconds = flightSeconds;
        options.seed = 1 + _counts.fleets % fleets; // the decoder keeps all addresses for ever
        // Losses and damage follow from the place.
        options.receiver = {{50 + 1e-5 * static_cast<double>(_counts.fleets), 8.5}, everywhereNm};
        ++_counts.fleets;
        options.startMs = _nowMs;
        options.damage = {0.05, 0.02, 0.05, 0.01, 0.02};
        simulator::Traffic traffic(options);
        while (const auto reply = traffic.next()) {
            moveTo(reply->timeMs);
            take(*reply);
        }
        checkTable();
        moveTo(_nowMs + betweenFleets);
        if (!_tracker.allTargets().empty()) {
            throw std::runtime_error("aircraft stay that were silent for long");
        }
        _sent.clear();
        _false.clear();
        repairNoise();
    }

    const Counts& counts() const { return _counts; }

private:
    void moveTo(u64 timeMs) {
        if (timeMs / 1000 != _nowMs / 1000) {
            _clock.advance(static_cast<std::int64_t>(timeMs / 1000 - _nowMs / 1000));
            _tracker.killTargets(timeMs - longestSilence);
        }
        _nowMs = timeMs;
    }

    void take(const simulator::Reply& reply) {
        ++_counts.replies;
        const u32 address = reply.sent.empty() ? 0 : reply.truth.address;
        if (!reply.sent.empty()) {
            _sent.insert(address);
        }
        const bool isDamagedSquitter = isSquitter(reply.sent) && reply.damage == Damage::ManyBits;
        const bool isDamaged = reply.damage != Damage::None && !isDamagedSquitter;
        _counts.badlyDamaged += isDamagedSquitter ? 1U : 0U;
        _counts.otherDamaged += isDamaged ? 1U : 0U;
        const std::unique_ptr<ModeSMessage> message(
            _decoder.decode(ModeSMessage::Downlink, reply.bytes, reply.timeMs));
        const auto* squitter = dynamic_cast<const DF17Message*>(message.get());
        _counts.repaired += isDamagedSquitter && squitter != nullptr ? 1U : 0U;
        const ADSBTarget* target = _tracker.procModeSMsg(message.get());
        if (target == nullptr || target->icaoAddr() == address) {
            return;
        }
        if (squitter != nullptr && reply.damage < Damage::ManyBits && isSquitter(reply.sent)) {
            throw std::runtime_error("a squitter with few wrong bits was taken for another one's");
        }
        ++(squitter != nullptr && isDamagedSquitter ? _counts.falseRepairs : _counts.otherFalse);
        _false.insert(target->icaoAddr());
    }

    void checkTable() {
        const std::vector<ADSBTarget> targets = _tracker.allTargets();
        _counts.mostTracked = std::max(_counts.mostTracked, targets.size());
        for (const ADSBTarget& target : targets) {
            if (_sent.count(target.icaoAddr()) + _false.count(target.icaoAddr()) == 0) {
                throw std::runtime_error("aircraft " + std::to_string(target.icaoAddr()) +
                                         " was not sent");
            }
        }
    }

    /// In a decoder of its own.
    void repairNoise() {
        ModeSDecoder decoder;
        for (unsigned i = 0; i < noiseFrames; ++i) {
            std::string bytes(14, '\0');
            for (char& byte : bytes) {
                byte = static_cast<char>(_random.bits());
            }
            bytes.front() = static_cast<char>(DFMessage::DF17 << 3 | (bytes.front() & 7));
            const std::unique_ptr<ModeSMessage> message(
                decoder.decode(ModeSMessage::Downlink, bytes));
            _counts.noiseRepaired += message ? 1U : 0U;
        }
        _counts.noise += noiseFrames;
    }

    MovableClock _clock;
    u64 _nowMs = static_cast<u64>(_clock.seconds()) * 1000;
    simulator::Random _random{1};
    ModeSDecoder _decoder;
    ADSBTracker _tracker;
    std::set<u32> _sent;
    std::set<u32> _false;
    Counts _counts;
};

void print(const Counts& counts, u64 early, u64 late) {
    const auto inMillion = [](u64 part, u64 all) {
        return 1e6 * static_cast<double>(part) / static_cast<double>(std::max<u64>(1, all));
    };
    const auto number = [](u64 value) { return static_cast<unsigned long long>(value); };
    std::printf("fleets       %llu of %u aircraft, %zu in the table at most\n",
                number(counts.fleets), fleetSize, counts.mostTracked);
    std::printf("replies      %llu, %llu damaged or noise; of those, %.0f in a million met the "
                "address of another aircraft; %.0f allowed\n",
                number(counts.replies), number(counts.otherDamaged),
                inMillion(counts.otherFalse, counts.otherDamaged), 1e6 * mostFalseShare);
    std::printf("repairs      %llu squitters with 3 to 12 wrong bits, %.0f in a million repaired, "
                "%.0f into another aircraft's; %.0f expected\n",
                number(counts.badlyDamaged), inMillion(counts.repaired, counts.badlyDamaged),
                inMillion(counts.falseRepairs, counts.badlyDamaged), 1e6 * repairShare());
    std::printf(
        "noise        %llu frames behind DF-17, %.0f in a million taken for squitters; %.0f "
        "expected\n",
        number(counts.noise), inMillion(counts.noiseRepaired, counts.noise), 1e6 * noiseShare());
    std::printf("memory       %llu KB in the first half, %llu KB in the last quarter\n",
                number(early), number(late));
}

/// Beyond six standard deviations, it is not chance.
void checkRepairs(const char* what, u64 repaired, double share, u64 all) {
    const double expected = share * static_cast<double>(all);
    if (std::abs(static_cast<double>(repaired) - expected) > 6 * std::sqrt(expected)) {
        throw std::runtime_error(std::string(what) + " not repaired as often as chance has it");
    }
}

void run(std::chrono::duration<double> length) {
    constexpr u64 growthKb = 4096;
    Log::setShowLevel(Log::Panic); // no lines
    Soak soak;
    std::vector<u64> memory;
    const auto end = std::chrono::steady_clock::now() + length;
    while (memory.size() < 2 * fleets || std::chrono::steady_clock::now() < end) {
        soak.flyFleet();
        memory.push_back(residentKb());
    }
    const auto half = memory.begin() + static_cast<std::ptrdiff_t>(memory.size() / 2);
    const u64 early = *std::max_element(memory.begin(), half);
    const u64 late = *std::max_element(half + (memory.end() - half) / 2, memory.end());
    print(soak.counts(), early, late);
    const Counts& counts = soak.counts();
    checkRepairs("noise is", counts.noiseRepaired, noiseShare(), counts.noise);
    checkRepairs("damaged squitters are", counts.repaired, repairShare(), counts.badlyDamaged);
    if (static_cast<double>(counts.otherFalse) >
        mostFalseShare * static_cast<double>(counts.otherDamaged)) {
        throw std::runtime_error("damage meets the addresses of other aircraft too often");
    }
    if (late > early + early / 10 + growthKb) {
        throw std::runtime_error("the memory grows");
    }
}

} // namespace
} // namespace tolvarin::ondrel::test

int main(int count, char** arguments) {
    try {
        const double minutes = count > 1 ? std::atof(arguments[1]) : 1;
        tolvarin::ondrel::test::run(std::chrono::duration<double, std::ratio<60>>(minutes));
        return 0;
    } catch (const std::exception& failure) {
        std::fprintf(stderr, "soak: %s\n", failure.what());
        return 1;
    }
}
