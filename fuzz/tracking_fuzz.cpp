// Replies through decoder and tracker, and in between every call that a client can make.

#include <ondrel/adsb_tracker.h>
#include <ondrel/mode_s_decoder.h>

#include "clock.h"
#include "fuzzing.h"
#include "support/bytes.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <utility>
#include <vector>

using namespace tolvarin::ondrel;
using fuzzing::hold;
using fuzzing::Input;

namespace {

void checkTargets(const std::vector<ADSBTarget>& targets) {
    const ADSBTarget* last = nullptr;
    hold(targets.size() <= 4095);
    for (const ADSBTarget& target : targets) {
        hold(last == nullptr || last->icaoAddr() < target.icaoAddr());
        hold(target.mopsVersion() <= MOPSVersion2);
        hold(target.nucp() <= 9 && target.nic() <= 11 && target.pic() <= 14 && target.sil() <= 2);
        hold(target.mopsVersionConfirmed() != target.mopsVersionAssumed());
        last = &target;
    }
}

void read(const ADSBTarget& target) {
    const ADSBTargetReport report = target.report();
    hold(report.valid() == (target.lastUpdate() > 0 && target.icaoAddr() > 0));
    hold(report.positionValid() == target.positionValid());
    hold(report.latitudeString().size() >= 7 && report.longitudeString().size() >= 8);
    const std::string page = report.toHtml("");
    hold(page.size() >= 4444 && page.find("\n</html>\n") != std::string::npos);
}

/// Mostly a valid frame of one of eight addresses, which stands in the frame or on the parity.
std::string takeFrame(Input& input, u8 control) {
    const auto bytes = input.take<std::array<char, 14>>();
    const unsigned format = static_cast<u8>(bytes[0]) >> 3U;
    std::string frame(bytes.data(), test::isLong(format) ? 14 : 7);
    if ((control & 0x40U) != 0) {
        return frame;
    }
    const bool open = format == 11 || (format >= 17 && format <= 19);
    if (open) {
        frame[1] = frame[2] = '\0';
        frame[3] = static_cast<char>(frame[3] & 7);
    }
    const u32 overlay = open ? 0 : static_cast<u8>(frame.back()) & 7U;
    return test::withOverlay(frame.substr(0, frame.size() - 3), overlay);
}

ADSBTargetReport takeReport(Input& input) {
    ADSBTargetReport report;
    report.setIcaoAddress(input.take<u8>() & 7U);
    report.setIcaoAddressValid(true);
    report.setLastUpdate(input.take<u64>());
    report.setTrackId(input.take<u32>());
    report.setCallsign(std::string(input.take<u8>(), 'X'));
    report.setSquawk(input.take<u32>());
    report.setSquawkValid(true);
    const auto latitude = input.take<double>();
    report.setPosition(latitude, input.take<double>());
    report.setPositionValid(true);
    report.setAltitudeBaro(input.take<i32>());
    report.setAltitudeBaroLastUpdate(input.take<u32>());
    report.setGroundSpeed(input.take<double>());
    report.setHeading(input.take<double>());
    return report;
}

/// Two trackers that copy from and move to each other.
struct Trackers {
    ModeSDecoder decoder;
    ADSBTracker first;
    ADSBTracker second;

    void act(Input& input) {
        const auto control = input.take<u8>();
        switch (control & 0x0FU) {
        case 0:
            checkTargets(first.killTargets(input.take<u32>()));
            break;
        case 1:
            first.reset();
            break;
        case 2:
            second = first;
            break;
        case 3:
            second = std::move(first);
            hold(first.allTargets().empty());
            break;
        case 4:
            std::swap(first, second);
            break;
        case 5:
            first.setAltituteBaroChecking((control & 0x80U) != 0, control, input.take<u32>());
            break;
        case 6: {
            const ADSBTargetReport report = takeReport(input);
            if (const ADSBTarget* target = first.procTargetReport(&report)) {
                read(*target);
            }
            break;
        }
        case 7: {
            const u64 from = input.take<u32>();
            checkTargets(second.allTargetsSince(from, from + control));
            break;
        }
        default:
            hear(input, control);
        }
    }

    void hear(Input& input, u8 control) {
        const u64 stamp = (control & 0x80U) != 0 ? input.take<u64>() : input.take<std::uint16_t>();
        const std::string frame = takeFrame(input, control);
        const std::unique_ptr<ModeSMessage> message(
            decoder.decode(ModeSMessage::Downlink, frame, stamp));
        const ADSBTarget* target = first.procModeSMsg(message.get());
        if (target != nullptr) {
            hold(target->lastUpdate() == message->timeStamp());
            hold(target->icaoAddr() == message->icaoAddress());
            read(*target);
        }
        const std::unique_ptr<ADSBMessage> payload(second.decodeADSBMsg(1, frame.substr(0, 7)));
        hold(payload == nullptr || payload->valid());
    }
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    clock::setSource([] { return std::int64_t{1'700'000'000}; });
    fuzzing::checkLog();

    Input input(data, size);
    Trackers trackers;
    while (!input.empty()) {
        trackers.act(input);
    }
    checkTargets(trackers.first.allTargets());
    checkTargets(trackers.second.allTargets());
    return 0;
}
