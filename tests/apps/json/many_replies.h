#pragma once

#include "apps/common/reply.h"
#include "apps/decoded_lines.h"

#include "simulator/frame_encoder.h"
#include "simulator/payload_encoder.h"
#include "simulator/traffic.h"

#include <ondrel/log.h>

#include <cstddef>
#include <optional>
#include <random>
#include <string>
#include <vector>

/// Replies for the tests of JSON.
namespace tolvarin::ondrel::client {

/// Shows no log while it lives.
class QuietLog {
public:
    QuietLog() { Log::setShowLevel(static_cast<Log::Level>(Log::Panic + 1)); }
    QuietLog(const QuietLog&) = delete;
    QuietLog& operator=(const QuietLog&) = delete;
    ~QuietLog() { Log::setShowLevel(Log::Info); }
};

/// What simulated traffic does not have.
inline std::vector<std::string> rareFrames() {
    using namespace simulator;
    std::vector<std::string> frames = {
        df17(address, 5, identification(4, 3, "KLM1023")), // makes the address known
        df0(address, {}) + "behind the end",
        std::string(1, '\xFF'),
        std::string(14, '\0'),
        df5(address, {1}, 07700),
        df21(address, {4}, 07500, ""),
        df17(address, 5, identification(3, 2, "")),
        df17(address, 5, testMessage(7, 0xFEDCBA987654)),
    };
    for (unsigned status = 0; status < 8; ++status) {
        frames.push_back(df4(address, {status}, 1000));
        frames.push_back(df19(address, status, airSpeed));
        frames.push_back(df17(address, 5, emergencyStatus(status, 01234)));
    }
    std::string metres = df4(address, {}, 1000);
    metres[3] = static_cast<char>(metres[3] | 0x40);
    frames.push_back(metres);
    return frames;
}

/// Traffic, rare frames, and frames of any content.
inline std::vector<Reply> manyReplies() {
    simulator::TrafficOptions options;
    options.aircraft = 30;
    options.seconds = 60;
    options.damage.oneBit = 0.05;
    options.damage.manyBits = 0.02;
    simulator::Traffic traffic(options);
    std::vector<Reply> replies;
    while (const auto reply = traffic.next()) {
        replies.push_back({reply->bytes, reply->timeMs});
    }
    for (const std::string& frame : rareFrames()) {
        replies.push_back({frame, std::nullopt});
        replies.back().source = 3;
        replies.back().signalAmplitude = 200;
    }
    std::mt19937 random(1); // NOLINT(cert-msc32-c,cert-msc51-cpp): the same replies in every run
    const auto bytes = [&random](std::size_t count) {
        std::string content(count, '\0');
        for (char& byte : content) {
            byte = static_cast<char>(random());
        }
        return content;
    };
    for (int i = 0; i < 4000; ++i) {
        replies.push_back({simulator::df17(address, 5, bytes(7)), std::nullopt});
        replies.push_back({simulator::df18(address, random() % 8, bytes(7)), std::nullopt});
        replies.push_back({bytes(i % 2 == 0 ? 7 : 14), std::nullopt});
    }
    return replies;
}

} // namespace tolvarin::ondrel::client
