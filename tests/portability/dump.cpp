// Prints what the library says of the replies of a recording, and of damaged and random ones:
// messages, fields, payloads, log lines, aircraft, reports and their pages. The text is the same on
// every machine.
//
//   ondrel_dump RECORDING    text with lines of the form SECONDS.FRACTION,HEX

#include <ondrel/adsb_airborne_velocity_message.h>
#include <ondrel/adsb_decoder.h>
#include <ondrel/adsb_surface_position_message.h>
#include <ondrel/adsb_tracker.h>
#include <ondrel/log.h>
#include <ondrel/mode_s_decoder.h>
#include <ondrel/mode_s_fields.h>

#include "support/bytes.h"
#include "support/movable_clock.h"
#include "support/tracker_comparison.h"

#include <array>
#include <cstddef>
#include <cstdio>
#include <exception>
#include <fstream>
#include <iostream>
#include <memory>
#include <random>
#include <string>

using namespace tolvarin::ondrel;

namespace {

class Printer final : public LogHandler {
public:
    void writeLine(const std::string& line) override { std::cout << line << '\n'; }
};

/// Prints each datum of visitData(), numbers with all their bits.
struct DatumPrinter {
    void operator()(char /*rule*/, const std::string& name, double value, u64 update = 0,
                    u64 change = 0, bool valid = false) const {
        std::array<char, 40> digits{};
        std::snprintf(digits.data(), digits.size(), "%.17g", value);
        std::cout << ' ' << name << '=' << digits.data() << ',' << update << ',' << change << ','
                  << valid;
    }
};

void print(const ADSBTarget& target) {
    DatumPrinter printer;
    std::cout << "target " << target.callsign();
    test::visitData(printer, target);
    std::cout << ' ' << target.statisticDfMsgCount();
    for (int i = DFMessage::DF0; i <= DFMessage::DF24; ++i) {
        std::cout << ' ' << target.statisticDfMsgCount(static_cast<DFMessage::DownlinkFormat>(i));
    }
    for (int i = ADSBMessage::ACID; i <= ADSBMessage::RESERVED; ++i) {
        std::cout << ' '
                  << target.statisticADSBMsgCount(static_cast<ADSBMessage::ADSBMessageType>(i));
    }
    std::cout << '\n';
}

void print(const ADSBTargetReport& report) {
    DatumPrinter printer;
    std::cout << "report " << report.callsign() << ' ' << report.icaoAddressString() << ' '
              << report.squawkString() << ' ' << report.positionString();
    test::visitData(printer, test::ReportAsTarget(report));
    std::cout << '\n' << report.toHtml("body {}");
}

void print(const ModeSMessage& message) {
    std::cout << "message " << message.dataHexString() << ' ' << message.icaoAddressHexString()
              << ' ' << message.calculatedParityHexString() << ' ' << message.confidence() << ' '
              << message.timeStamp() << ' ' << message.description() << '\n';
    for (const ModeSMessageField* field : message.fields()) {
        std::cout << "  " << field->pos() + 0 << ' ' << field->bits() + 0 << ' ' << field->valid()
                  << ' ' << field->name() << ' ' << field->description() << '\n';
    }
}

/// What is worked out in floating point.
void printNumbers(const ADSBMessage& payload) {
    const DatumPrinter printer;
    if (const auto* surface = dynamic_cast<const ADSBSurfacePositionMessage*>(&payload)) {
        printer(0, "speed", surface->groundSpeed());
        printer(0, "heading", surface->heading());
    } else if (const auto* velocity = dynamic_cast<const ADSBAirborneVelocityMessage*>(&payload)) {
        printer(0, "speed", velocity->groundSpeed());
        printer(0, "heading", velocity->heading());
    }
    std::cout << '\n';
}

void print(const ADSBMessage& payload) {
    std::cout << "payload " << payload.typeName() << ' ' << payload.typeCode() + 0 << ' '
              << payload.description() << '\n';
    printNumbers(payload);
    for (const ADSBMessageField& field : payload.fields()) {
        std::cout << "  " << field.pos() + 0 << ' ' << field.bits() + 0 << ' ' << field.valid()
                  << ' ' << field.name() << ' ' << field.description() << '\n';
    }
}

/// Takes replies, whose stamps also set the clock.
class Receiver {
public:
    void hear(const std::string& frame, u64 stampMs) {
        const auto seconds = static_cast<std::int64_t>(stampMs / 1000);
        _clock.advance(seconds - _clock.seconds());
        const std::unique_ptr<ModeSMessage> message(
            _decoder.decode(ModeSMessage::Downlink, frame, stampMs));
        if (message == nullptr) {
            std::cout << "refused\n";
            return;
        }
        message->setSignalAmplitude(static_cast<u8>(++_taken));
        print(*message);
        const ADSBTarget* target = _tracker.procModeSMsg(message.get());
        if (frame.size() == longSize) {
            printPayload(*message);
        }
        if (target != nullptr) {
            print(*target);
            if (_taken % repliesBetweenPages == 0) {
                print(target->report());
            }
        }
        if (_taken % repliesBetweenKills == 0) {
            kill(stampMs);
        }
    }

    void end() const {
        ADSBTracker other;
        for (const ADSBTarget& target : _tracker.allTargets()) {
            const ADSBTargetReport report = target.report();
            print(target);
            print(report);
            if (const ADSBTarget* copy = other.procTargetReport(&report)) {
                print(*copy);
            }
        }
    }

    void checkAltitudes() { _tracker.setAltituteBaroChecking(true, 4, 5000); }

private:
    static constexpr std::size_t longSize = 14;
    static constexpr u64 repliesBetweenPages = 64;
    static constexpr u64 repliesBetweenKills = 3000;
    static constexpr u64 longestSilence = 60000; // ms

    void printPayload(const ModeSMessage& message) const {
        const std::string bytes = message.data().substr(4, 7);
        for (const MOPSVersion version : {MOPSVersion0, MOPSVersion1, MOPSVersion2}) {
            const std::unique_ptr<ADSBMessage> payload(_payloads.decode(version, bytes));
            if (payload != nullptr) {
                print(*payload);
            }
        }
    }

    void kill(u64 now) {
        const u64 lately = now - longestSilence / 2;
        std::cout << _tracker.allTargetsSince(lately).size() << " heard\n";
        for (const ADSBTarget& target : _tracker.allTargetsSince(now - longestSilence, lately)) {
            std::cout << "quiet ";
            print(target);
        }
        for (const ADSBTarget& target : _tracker.killTargets(now - longestSilence)) {
            std::cout << "silent ";
            print(target);
        }
    }

    test::MovableClock _clock;
    ModeSDecoder _decoder;
    ADSBDecoder _payloads;
    ADSBTracker _tracker;
    u64 _taken = 0;
};

/// False if there is no reply in the file.
bool hearRecording(const char* path) {
    Receiver receiver;
    std::ifstream file(path);
    bool heard = false;
    for (std::string line; std::getline(file, line);) {
        const std::size_t point = line.find('.');
        const std::size_t comma = line.find(',');
        if (line.empty() || line[0] == '#' || comma == std::string::npos || point > comma) {
            continue;
        }
        const u64 stamp = std::stoull(line.substr(0, point)) * 1000 +
                          std::stoull(line.substr(point + 1, comma - point - 1));
        const std::string_view digits = std::string_view(line).substr(comma + 1);
        receiver.hear(test::operator""_hex(digits.data(), digits.size()), stamp);
        heard = true;
    }
    receiver.end();
    return heard;
}

/// Makes replies of any content, most with a parity that fits one of a few aircraft.
class RandomReplies {
public:
    std::string next() {
        constexpr std::array<unsigned, 16> formats = {0,  4,  5,  11, 16, 17, 17, 17,
                                                      17, 17, 17, 18, 19, 20, 21, 24};
        const unsigned format = formats[below(formats.size())];
        const u32 address = 0x400000 + below(30);
        const bool isOpen = format == 11 || (format >= 17 && format <= 19);
        const u32 content = isOpen ? address : below(1U << 24U);
        std::string frame = test::head(format, below(8), content);
        if (test::isLong(format)) {
            frame += payload();
        }
        const u32 overlay = !isOpen ? address : format == 11 ? below(4) : 0;
        return damaged(test::withOverlay(frame, overlay));
    }

    u32 below(std::size_t bound) { return static_cast<u32>(_random() % bound); }

private:
    /// Often with the type code of a position or of an operational status.
    std::string payload() {
        std::string bytes = test::word(static_cast<u32>(_random()));
        bytes += test::word(static_cast<u32>(_random())).substr(1); // in this order everywhere
        if (below(2) == 0) {
            bytes = test::with(bytes, 0, 5, 9 + below(3));
        } else if (below(8) == 0) {
            bytes = test::with(bytes, 0, 5, 31);
            bytes = test::with(bytes, 40, 3, below(5));
        }
        return bytes;
    }

    /// Some of the replies have one to three wrong bits; some have no sense at all.
    std::string damaged(std::string frame) {
        if (below(4) == 0) {
            for (u32 left = 1 + below(3); left > 0; --left) {
                frame = test::inverted(frame, {below(frame.size() * 8)});
            }
        }
        if (below(50) == 0) {
            frame.resize(below(20), '\x5A');
        }
        return frame;
    }

    std::mt19937 _random; // gives the same numbers everywhere
};

void hearRandomReplies() {
    constexpr unsigned count = 40000;
    constexpr u64 begin = 1'700'000'000'000;
    Receiver receiver;
    receiver.checkAltitudes();
    RandomReplies replies;
    u64 stamp = begin;
    for (unsigned i = 0; i < count; ++i) {
        stamp += replies.below(100) == 0 ? replies.below(100000) : replies.below(300);
        receiver.hear(replies.next(), stamp);
    }
    receiver.end();
}

} // namespace

int main(int argc, char** argv) {
    Printer printer;
    Log::setLogHandler(&printer);
    Log::setShowLevel(Log::Debug);
    try {
        if (argc != 2 || !hearRecording(argv[1])) {
            std::cerr << "ondrel_dump RECORDING\n";
            return 1;
        }
        hearRandomReplies();
    } catch (const std::exception& error) {
        std::cerr << "ondrel_dump: " << error.what() << '\n';
        return 1;
    }
    return std::cout.flush() ? 0 : 1;
}
