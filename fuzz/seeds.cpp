// Writes inputs for a fuzz target to begin with, made of simulated traffic: `ondrel_seeds TARGET
// FOLDER`. FOLDER.list is a list of them, as libFuzzer takes it. Each input has the form that its
// target reads.

#include "simulator/recording.h"
#include "simulator/traffic.h"

#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <map>
#include <numeric>
#include <string>
#include <vector>

using namespace tolvarin::ondrel::simulator;

namespace {

using Inputs = std::vector<std::string>;
using Replies = std::vector<Reply>;

constexpr std::size_t mostReplies = 20; // so that an input has less than 512 bytes

char byte(std::uint64_t number) {
    return static_cast<char>(number & 0xFF);
}

/// As the targets take it: the lowest byte first.
std::string number(std::uint64_t value, unsigned size) {
    std::string bytes;
    for (unsigned i = 0; i < size; ++i) {
        bytes += byte(value >> 8 * i);
    }
    return bytes;
}

Replies hear(std::uint64_t seed, double damage) {
    TrafficOptions options;
    options.seed = seed;
    options.aircraft = 2;
    options.radiusNm = 20;
    options.groundShare = seed % 3 == 0 ? 1 : 0;
    options.seconds = 20;
    options.receptionShare = 0.3;
    options.damage = {damage, damage, damage / 4, damage / 4, damage / 4};
    Traffic traffic(options);
    Replies replies;
    while (const auto reply = traffic.next()) {
        replies.push_back(*reply);
    }
    return replies;
}

Replies first(Replies replies, std::size_t count = mostReplies) {
    replies.resize(std::min(count, replies.size()));
    return replies;
}

bool isSquitter(const Reply& reply) {
    return reply.bytes.size() == 14 && static_cast<unsigned char>(reply.bytes[0]) >> 3 == 17;
}

/// The ME fields of squitters.
std::vector<std::string> payloads(const Replies& replies) {
    std::vector<std::string> found;
    for (const Reply& reply : replies) {
        if (isSquitter(reply)) {
            found.push_back(reply.bytes.substr(4, 7));
        }
    }
    return found;
}

/// A frame to which the target adds the parity, with an address and an overlay up to 7.
std::string unfinishedFrame(unsigned format, unsigned address, unsigned overlay) {
    return "\x1C" + number((address << 24) + (format << 3), 13) + byte(overlay << 5);
}

/// An interrogator becomes reliable by ten replies of a known aircraft, or nearly so. Another
/// aircraft answers it, at once or 60 seconds later.
std::string runOfInterrogator(unsigned replies, bool pauses) {
    std::string input = unfinishedFrame(17, 1, 0);
    for (unsigned i = 0; i < replies; ++i) {
        input += unfinishedFrame(11, 1, 7);
    }
    const std::string copyAfter30Seconds = "\x58";
    input += pauses ? copyAfter30Seconds + copyAfter30Seconds : "";
    return input + unfinishedFrame(11, 2, 7) + unfinishedFrame(5, 0, 2);
}

Inputs modeS() {
    Inputs inputs;
    for (unsigned seed = 1; seed <= 6; ++seed) {
        std::string input;
        unsigned step = 0;
        for (const Reply& reply : first(hear(seed, 0.1), 30)) {
            const std::size_t size = reply.bytes.size();
            const unsigned pause = ++step % 5 == 0 ? step % 4 : 0;
            input += byte((pause << 6) + (seed % 2 << 5) + (size == 14 ? 16 : size));
            input += reply.bytes;
        }
        inputs.push_back(input + "\x18\x19\x1A\x1B");
    }
    for (const unsigned replies : {9U, 10U}) {
        inputs.push_back(runOfInterrogator(replies, false));
        inputs.push_back(runOfInterrogator(replies, true));
    }
    return inputs;
}

/// Payloads of one type in each input.
Inputs adsb() {
    std::map<int, std::string> byType;
    for (unsigned seed = 1; seed <= 6; ++seed) {
        for (const std::string& payload : payloads(hear(seed, 0))) {
            std::string& input = byType[static_cast<unsigned char>(payload[0]) >> 3];
            if (input.size() < 70) {
                input += (input.empty() ? number(seed % 4, 1) : "") + payload;
            }
        }
    }
    Inputs inputs;
    for (const auto& entry : byType) {
        inputs.push_back(entry.second);
        inputs.push_back("\x7F" + entry.second); // names and log lines in place of payloads
    }
    return inputs;
}

std::string heardByTracker(const Reply& reply) {
    std::string frame = reply.bytes;
    frame.resize(14);
    return "\xCA" + number(reply.timeMs, 8) + frame;
}

Inputs tracking() {
    Inputs inputs;
    for (unsigned seed = 1; seed <= 6; ++seed) {
        Replies replies = hear(seed, 0.02);
        // Altitudes may differ by 133 feet in 20 seconds, or by anything.
        std::string input = seed % 2 == 0 ? "\x85" + number(20, 4) : "";
        unsigned step = 0;
        for (const Reply& reply : first(replies)) {
            input += heardByTracker(reply);
            if (++step % 4 == 0) {
                input += seed % 2 == 0 ? byte(8) : byte(step / 4 + seed); // a copy, or any step
            }
        }
        inputs.push_back(input);
    }
    // More aircraft than fit, with an ending that lets the target make them.
    const std::string crowd = "\xFF" + number(199, 1) + heardByTracker(hear(1, 0).front());
    for (unsigned ending = 0;; ++ending) {
        const std::string input = crowd + number(ending, 2);
        const auto add = [](std::uint32_t sum, char c) {
            return sum * 31 + static_cast<unsigned char>(c);
        };
        if (std::accumulate(input.begin(), input.end(), std::uint32_t{0}, add) % 512 == 0) {
            inputs.push_back(input);
            return inputs;
        }
    }
}

std::string recordedAll(const Replies& replies, RecordingForm form) {
    std::string text;
    for (const Reply& reply : replies) {
        text += recorded(reply, form, replies.front().timeMs);
    }
    return text;
}

Inputs input() {
    const Replies replies = first(hear(1, 0.02), 12);
    std::string raw;
    for (const Reply& reply : replies) {
        raw += number(reply.timeMs, 1) + reply.bytes;
    }
    Inputs inputs = {"\x20" + raw, "\x31" + raw};
    for (const RecordingForm form : {RecordingForm::Seconds, RecordingForm::Ticks,
                                     RecordingForm::Frame, RecordingForm::Bare}) {
        inputs.push_back("\x22" + recordedAll(replies, form));
        inputs.push_back("\x26" + recordedAll(replies, form));
    }
    inputs.push_back("\x34" + recordedAll(replies, RecordingForm::Binary));
    inputs.push_back("\x3E" + recordedAll(replies, RecordingForm::Binary));
    return inputs;
}

Inputs packed() {
    const std::string text = recordedAll(first(hear(2, 0)), RecordingForm::Seconds);
    Inputs inputs;
    for (const unsigned kind : {0U, 1U, 2U, 3U}) {
        inputs.push_back(number(kind, 1) + number(0x400203004D, 9) + text);
    }
    return inputs;
}

/// A batch of a site named A, whose number and times are 0.
std::string batch(const Replies& replies) {
    std::string bytes = "ODR1" + std::string(24, '\0') + "\x01" + "A";
    for (const Reply& reply : replies) {
        bytes += byte(reply.bytes.size() == 14 ? 7 : 3) + number(0, 5) + reply.bytes;
    }
    return bytes;
}

Inputs batches() {
    const std::string bytes = batch(first(hear(3, 0)));
    return {
        std::string(1, '\0') + bytes,
        "\x01" + bytes,
        "\x02" + bytes.substr(20, 20),
        "\x03stream.consumer.1.5.2.3.9",
        std::string("\x03") + "domain.account.stream.consumer.1.5.2.3.9",
    };
}

Inputs reports() {
    std::string tracked;
    for (const std::string& payload : payloads(hear(3, 0))) {
        tracked += tracked.size() < 400 ? "\x03" + payload : "";
    }
    const std::string report =
        R"({"schema":1,"address":"4840D6","last_update_ms":1700000000000,"track_number":7,)"
        R"("callsign":["KLM 10?3",true,2,3],"category":[7,true,4,5],"squawk":[4095,true,6,7],)"
        R"("altitude_ft":[38000,true,19],"position":[52.3,4.8,true,17],"mops_version":[2,true,1,1],)"
        R"("accepted_position":[52.3,4.8,1700000000000],"told":[true,false,true,true],)"
        R"("ground_speed_kt":[0.3,true,20],"messages_by_format":[1,0,0,0,2]})";
    return {
        std::string(1, '\0') + tracked,
        "\x01" + tracked,
        "\x02" + report,
    };
}

} // namespace

int main(int argc, char** argv) {
    const std::map<std::string, Inputs (*)()> makers = {
        {"adsb", adsb},    {"input", input},   {"batches", batches},   {"reports", reports},
        {"mode_s", modeS}, {"packed", packed}, {"tracking", tracking},
    };
    const auto maker = argc == 3 ? makers.find(argv[1]) : makers.end();
    if (maker == makers.end()) {
        std::cerr << "ondrel_seeds TARGET FOLDER\n";
        return EXIT_FAILURE;
    }
    const std::filesystem::path folder = argv[2];
    std::filesystem::remove_all(folder);
    std::filesystem::create_directories(folder);
    std::ofstream list(folder.string() + ".list");
    unsigned count = 0;
    for (const std::string& bytes : maker->second()) {
        const std::filesystem::path path = folder / std::to_string(count);
        std::ofstream(path, std::ios::binary) << bytes;
        list << (count++ > 0 ? "," : "") << path.string();
    }
    return list.good() ? EXIT_SUCCESS : EXIT_FAILURE;
}
