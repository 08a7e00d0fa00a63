// Replies through decoder and tracker, and in between every call that a client can make. There are
// two worlds: the second one is spared what the tracker refuses, and copies that change nothing. So
// they stay the same.

#include <ondrel/adsb_service_status.h>
#include <ondrel/adsb_tracker.h>
#include <ondrel/mode_s_decoder.h>

#include "clock.h"
#include "fuzzing.h"
#include "report_items.h"
#include "support/bytes.h"
#include "support/messages.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <set>
#include <string>
#include <utility>
#include <vector>

using namespace tolvarin::ondrel;
using fuzzing::hold;
using fuzzing::Input;

namespace {

constexpr u32 mostTargets = 4095;

bool same(const ADSBTarget& one, const ADSBTarget& other) {
    for (int i = DFMessage::DF0; i <= DFMessage::DF24; ++i) {
        const auto format = static_cast<DFMessage::DownlinkFormat>(i);
        if (one.statisticDfMsgCount(format) != other.statisticDfMsgCount(format)) {
            return false;
        }
    }
    for (int i = ADSBMessage::ACID; i <= ADSBMessage::RESERVED; ++i) {
        const auto type = static_cast<ADSBMessage::ADSBMessageType>(i);
        if (one.statisticADSBMsgCount(type) != other.statisticADSBMsgCount(type)) {
            return false;
        }
    }
    return fuzzing::same(one.report(), other.report()) &&
           one.groundStatus() == other.groundStatus() &&
           one.statisticLastUpdate() == other.statisticLastUpdate() &&
           one.transponderCommCapability() == other.transponderCommCapability() &&
           one.transponderCommCapabilityLastUpdate() == other.transponderCommCapabilityLastUpdate();
}

bool same(const std::vector<ADSBTarget>& one, const std::vector<ADSBTarget>& other) {
    return std::equal(one.begin(), one.end(), other.begin(), other.end(),
                      [](const auto& a, const auto& b) { return same(a, b); });
}

/// A report in a fresh tracker gives an equal report, but for what ADSBTracker::procTargetReport
/// leaves out, and the times at which squawk and ground status changed.
ADSBTargetReport passedOn(const ADSBTargetReport& r) {
    ADSBTargetReport passed;
    passed.setTrackId(r.trackId());
    passed.setLastUpdate(r.lastUpdate());
    passed.setIcaoAddress(r.icaoAddress());
    if (r.callsignValid()) {
        passed.setCallsign(r.callsign());
        passed.setCallsignLastUpdate(r.callsignLastUpdate());
        passed.setCallsignLastChange(r.callsignLastChange());
    }
    if (r.emitterCategoryValid()) {
        passed.setEmitterCategory(r.emitterCategory());
        passed.setEmitterCategoryLastUpdate(r.emitterCategoryLastUpdate());
        passed.setEmitterCategoryLastChange(r.emitterCategoryLastChange());
    }
    if (r.squawkValid()) {
        passed.setSquawk(r.squawk());
        passed.setSquawkValid(true);
        passed.setSquawkLastUpdate(r.squawkLastUpdate());
    }
    if (r.positionValid()) {
        passed.setPosition(r.latitude(), r.longitude());
        passed.setPositionValid(true);
        passed.setPositionLastUpdate(r.positionLastUpdate());
    }
    if (r.signalAmplitudeValid()) {
        passed.setSignalAmplitude(r.signalAmplitude());
        passed.setSignalAmplitudeValid(true);
        passed.setSignalAmplitudeLastUpdate(r.signalAmplitudeLastUpdate());
    }
    if (r.altitudeBaroValid()) {
        passed.setAltitudeBaro(r.altitudeBaro());
        passed.setAltitudeBaroLastUpdate(r.altitudeBaroLastUpdate());
    }
    if (r.groundSpeedValid()) {
        passed.setGroundSpeed(r.groundSpeed());
        passed.setGroundSpeedLastUpdate(r.groundSpeedLastUpdate());
    }
    if (r.headingValid()) {
        passed.setHeading(r.heading());
        passed.setHeadingLastUpdate(r.lastUpdate());
    }
    if (r.verticalRateBaroValid()) {
        passed.setVerticalRateBaro(r.verticalRateBaro());
        passed.setVerticalRateBaroLastUpdate(r.verticalRateBaroLastUpdate());
    }
    if (r.groundStatusValid()) {
        passed.setGroundStatus(r.groundStatus());
        passed.setGroundStatusLastUpdate(r.groundStatusLastUpdate());
        passed.setGroundStatusLastChange(r.groundStatusLastUpdate());
    }
    return passed;
}

/// A callsign from a report may hold anything, and pages escape nothing.
void readPage(const ADSBTargetReport& report) {
    const std::string page = report.toHtml("td { color: black }");
    hold(page.size() >= 4444);
    hold(report.callsign().find_first_of("<>") != std::string::npos || fuzzing::nestsWell(page));
}

void readTexts(const ADSBTargetReport& report) {
    hold(report.latitudeString().size() >= 7 && report.longitudeString().size() >= 8);
    hold(report.positionString() == report.latitudeString() + report.longitudeString());
    hold(report.squawkString().size() >= 4);
    hold(report.icaoAddressString().empty() != report.icaoAddressValid());
    readPage(report);
}

void read(const ADSBTarget& target) {
    const ADSBTargetReport report = target.report();
    hold(report.valid() == (target.lastUpdate() > 0 && target.icaoAddr() > 0));
    hold(report.positionValid() == target.positionValid());
    readTexts(report);
    ADSBTracker fresh;
    const ADSBTarget* taken = fresh.procTargetReport(&report);
    hold((taken != nullptr) == report.valid());
    hold(taken == nullptr || fuzzing::same(taken->report(), passedOn(report)));
    ADSBTarget copy(target);
    hold(same(copy, target));
    ADSBTarget assigned(1);
    assigned = copy;
    const ADSBTarget& itself = assigned;
    assigned = itself;
    hold(same(assigned, target));
    assigned = std::move(copy);
    hold(same(ADSBTarget(std::move(assigned)), target));
    for (const int number : {-1, 25, 1 << 30}) {
        hold(target.statisticDfMsgCount(static_cast<DFMessage::DownlinkFormat>(number)) == 0);
        hold(target.statisticADSBMsgCount(static_cast<ADSBMessage::ADSBMessageType>(number)) == 0);
    }
}

/// What holds for each target that no report has changed.
void checkValues(const ADSBTarget& t) {
    hold(t.trackId() >= 1 && t.trackId() <= mostTargets);
    hold(t.latitude() >= -90 && t.latitude() < 270);
    hold(t.longitude() > -180 && t.longitude() <= 180);
    hold(t.altitudeBaro() >= -1000 && t.altitudeBaro() <= 203700);
    hold(t.groundSpeed() >= 0 && t.groundSpeed() < 5782);
    hold(t.heading() >= 0 && t.heading() < 360);
    hold(std::abs(t.verticalRateBaro()) <= 32640 && t.squawk() <= 4095);
    hold(t.emitterCategory() <= 7 && t.transponderCommCapability() <= 7);
    hold(t.callsign().empty() || t.callsign().size() == 8);
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

/// A report of one of eight addresses with any values. Value setters set their flags.
ADSBTargetReport takeReport(Input& input) {
    ADSBTargetReport report;
    for (std::size_t count = input.take<u8>() & 31U; count > 0; --count) {
        const std::size_t item = input.take<u8>() % std::size(fuzzing::reportItems);
        fuzzing::reportItems[item].set(report, input);
    }
    const u32 address = report.icaoAddress();
    report.setIcaoAddress(address & 7U);
    hold(report.icaoAddressValid() == ((address & 7U) != 0));
    const u32 squawk = input.take<u32>();
    report.setSquawk(squawk);
    hold(report.squawkValid() == (squawk >= 1 && squawk <= 4095));
    const auto latitude = input.take<double>();
    report.setPosition(latitude, 180);
    hold(report.positionValid() == (std::abs(latitude) <= 90));
    report.setLastUpdate(input.take<u32>());
    hold(report.valid() == (report.lastUpdate() != 0 && report.icaoAddressValid()));
    if (input.take<bool>()) {
        report.setTrackId(input.take<u8>() & 7U); // which new targets get too
    }
    const ADSBTargetReport copy(report);
    hold(fuzzing::same(copy, report));
    readTexts(report);
    return report;
}

void setService(Input& input) {
    ADSBServiceStatus status;
    const auto mode = input.take<ADSBServiceStatus::ReportMode>();
    const auto period = input.take<std::uint16_t>();
    const u8 code = input.take<u8>();
    status.setReportMode(mode);
    status.setReportPeriod(period);
    status.setSac(code);
    status.setSic(code);
    status.setServiceId(code);
    hold(status.reportMode() == mode && status.reportPeriod() == period);
    hold(status.sac() == code && status.sic() == code && status.serviceId() == code);
}

/// Whether a tracker may use a message, as ADSBTracker::procModeSMsg says.
bool mayUse(const DFMessage& message) {
    switch (message.downlinkFormat()) {
    case DFMessage::DF17:
        return message.confidence() == ModeSMessage::High;
    case DFMessage::DF18:
    case DFMessage::DF19:
        return false;
    default:
        return message.confidence() >= ModeSMessage::Medium;
    }
}

/// Two trackers that copy from and move to each other.
struct World {
    ADSBTracker first;
    ADSBTracker second;
};

class Trackers {
public:
    Trackers(fuzzing::LineChecker& log, bool mayCrowd) : _log(log), _mayCrowd(mayCrowd) {}

    void act(Input& input) {
        const auto control = input.take<u8>();
        if (control == 0xFF) {
            return makeCrowd(input);
        }
        switch (control & 0x0FU) {
        case 0:
            kill(takeTime(input, _all.first));
            break;
        case 1:
            inBoth([](World& world) { world.first.reset(); });
            hold(_all.first.allTargets().empty());
            break;
        case 2:
            inBoth([](World& world) { world.second = world.first; });
            break;
        case 3:
            inBoth([](World& world) { world.second = std::move(world.first); });
            hold(_all.first.allTargets().empty());
            break;
        case 4:
            inBoth([](World& world) { std::swap(world.first, world.second); });
            break;
        case 5: {
            const u32 seconds = input.take<u32>();
            inBoth([=](World& world) {
                world.first.setAltituteBaroChecking((control & 0x80U) != 0, seconds, control);
            });
            break;
        }
        case 6:
            takeIn(takeReport(input));
            break;
        case 7:
            checkSince(input);
            break;
        case 8:
            copyAndMove();
            break;
        case 9:
            setService(input);
            break;
        default:
            hear(input, control);
        }
        check();
    }

    void checkAll() {
        hold(same(_all.first.allTargets(), _spared.first.allTargets()));
        hold(same(_all.second.allTargets(), _spared.second.allTargets()));
        for (const ADSBTracker* tracker : {&_all.first, &_all.second}) {
            for (const ADSBTarget& target : tracker->allTargets()) {
                if (_reported.count(target.icaoAddr()) == 0) {
                    checkValues(target);
                }
            }
        }
    }

private:
    template <class Step>
    void inBoth(Step step) {
        step(_all);
        step(_spared);
    }

    /// Order, number and numbers of the targets. A report may bring any number.
    void checkList(const std::vector<ADSBTarget>& targets) const {
        const ADSBTarget* last = nullptr;
        std::set<u32> numbers;
        hold(targets.size() <= mostTargets);
        for (const ADSBTarget& target : targets) {
            hold(last == nullptr || last->icaoAddr() < target.icaoAddr());
            hold(target.mopsVersion() <= MOPSVersion2);
            hold(target.nucp() <= 9 && target.nic() <= 11 && target.pic() <= 14);
            hold(target.nacp() <= 11 && target.sil() <= 2 && target.nucr() <= 7);
            hold(target.mopsVersionConfirmed() != target.mopsVersionAssumed());
            if (_reported.count(target.icaoAddr()) == 0) {
                hold(target.trackId() >= 1 && target.trackId() <= mostTargets);
                hold(numbers.insert(target.trackId()).second);
            }
            last = &target;
        }
    }

    void check() {
        if (_crowded) { // too slow after each step
            return;
        }
        const std::vector<ADSBTarget> first = _all.first.allTargets();
        const std::vector<ADSBTarget> second = _all.second.allTargets();
        checkList(first);
        checkList(second);
        hold(same(first, _spared.first.allTargets()));
        // What reports changed and has left may come back as new.
        const auto stands = [](const auto& targets, u32 address) {
            return std::any_of(targets.begin(), targets.end(), [=](const ADSBTarget& target) {
                return target.icaoAddr() == address;
            });
        };
        for (auto address = _reported.begin(); address != _reported.end();) {
            const bool isThere = stands(first, *address) || stands(second, *address);
            address = isThere ? std::next(address) : _reported.erase(address);
        }
    }

    /// Any time, or the last update of a target.
    static u64 takeTime(Input& input, const ADSBTracker& tracker) {
        const u32 number = input.take<u32>();
        const std::vector<ADSBTarget> targets = tracker.allTargets();
        return targets.empty() || number % 2 == 0
                   ? number
                   : targets[(number >> 8U) % targets.size()].lastUpdate();
    }

    /// Those that are silent leave, in the order of the list, and the others stay.
    void kill(u64 time) {
        std::vector<ADSBTarget> silent;
        std::vector<ADSBTarget> others;
        for (const ADSBTarget& target : _all.first.allTargets()) {
            (target.lastUpdate() <= time ? silent : others).push_back(target);
        }
        hold(same(_all.first.killTargets(time), silent));
        hold(same(_all.first.allTargets(), others));
        hold(same(_spared.first.killTargets(time), silent));
    }

    void checkSince(Input& input) {
        const u64 from = takeTime(input, _all.second);
        const u64 to = std::max(from, takeTime(input, _all.second));
        std::vector<ADSBTarget> expected;
        for (const ADSBTarget& target : _all.second.allTargets()) {
            if (target.lastUpdate() > from && target.lastUpdate() <= to) {
                expected.push_back(target);
            }
        }
        hold(same(_all.second.allTargetsSince(from, to), expected));
    }

    void takeIn(const ADSBTargetReport& report) {
        if (!fuzzing::isPrintable(report.callsign())) {
            _log.setMayHoldAnyByte(true); // a change of callsign has a line
        }
        const ADSBTarget* target = _all.first.procTargetReport(&report);
        const bool isNew = _all.first.allTargets().size() < mostTargets;
        hold(report.valid() ? target != nullptr || !isNew : target == nullptr);
        if (target == nullptr) {
            return;
        }
        hold(target->trackId() == report.trackId() && target->lastUpdate() == report.lastUpdate());
        _reported.insert(target->icaoAddr());
        hold(_spared.first.procTargetReport(&report) != nullptr);
        read(*target);
    }

    /// The trackers of this world alone: nothing shows of it.
    void copyAndMove() {
        ADSBTracker& itself = _all.first;
        _all.first = itself;
        ADSBTracker copy(_all.first);
        _all.first = std::move(itself);
        _all.first = std::move(copy);
        ADSBTracker moved(std::move(_all.second));
        hold(_all.second.allTargets().empty() && _all.second.killTargets(~u64{0}).empty());
        _all.second = std::move(moved);
        hold(_all.first.procModeSMsg(nullptr) == nullptr);
        hold(_all.first.procTargetReport(nullptr) == nullptr);
    }

    void hear(Input& input, u8 control) {
        const u64 stamp = (control & 0x80U) != 0 ? input.take<u64>() : input.take<std::uint16_t>();
        const std::string frame = takeFrame(input, control);
        const std::unique_ptr<ModeSMessage> message(
            _decoder.decode(ModeSMessage::Downlink, frame, stamp));
        if (message != nullptr) {
            if ((control & 0x20U) != 0) {
                message->setConfidence(input.take<ModeSMessage::Confidence>());
                message->setSignalAmplitude(control);
            }
            hear(dynamic_cast<const DFMessage&>(*message));
        }
        const std::unique_ptr<ADSBMessage> payload(
            _all.second.decodeADSBMsg(control & 7U, frame.substr(0, 7)));
        hold(payload == nullptr || payload->valid());
    }

    void hear(const DFMessage& message) {
        const std::vector<ADSBTarget> before = _all.first.allTargets();
        const bool isKnown = std::any_of(before.begin(), before.end(), [&](const auto& target) {
            return target.icaoAddr() == message.icaoAddress();
        });
        const bool hasRoom =
            message.downlinkFormat() != DFMessage::DF11 && before.size() < mostTargets;
        const ADSBTarget* target = _all.first.procModeSMsg(&message);
        hold((target != nullptr) == (mayUse(message) && (isKnown || hasRoom)));
        if (target == nullptr) {
            return; // the other world does not hear it
        }
        hold(_spared.first.procModeSMsg(&message) != nullptr);
        const bool isNumberFree =
            std::none_of(before.begin(), before.end(), [&](const ADSBTarget& other) {
                return other.trackId() == target->trackId();
            });
        hold(isKnown || isNumberFree);
        hold(target->lastUpdate() == message.timeStamp());
        hold(target->icaoAddr() == message.icaoAddress());
        if (!_crowded) {
            read(*target);
        }
    }

    /// About as many aircraft as a table holds.
    void makeCrowd(Input& input) {
        if (!std::exchange(_mayCrowd, false)) {
            return;
        }
        _crowded = true;
        const u32 count = input.take<u8>() + 4000;
        std::size_t size = _all.first.allTargets().size();
        for (u32 i = 0; i < count; ++i) {
            const auto message = test::graded(test::surveillance(4, 0x400000 + i), i + 1);
            const ADSBTarget* target = _all.first.procModeSMsg(message.get());
            hold((target != nullptr) == (size < mostTargets));
            size += target != nullptr ? 1 : 0;
            hold((_spared.first.procModeSMsg(message.get()) != nullptr) == (target != nullptr));
        }
        checkList(_all.first.allTargets());
    }

    fuzzing::LineChecker& _log;
    ModeSDecoder _decoder;
    World _all;
    World _spared;
    std::set<u32> _reported; ///< addresses of targets that a report has changed
    bool _mayCrowd;
    bool _crowded = false;
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    clock::setSource([] { return std::int64_t{1'700'000'000}; });
    fuzzing::LineChecker& log = fuzzing::checkLog();
    Input input(data, size);
    Trackers trackers(log, fuzzing::mayTakeLong(data, size, 512));
    while (!input.empty()) {
        trackers.act(input);
    }
    trackers.checkAll();
    return 0;
}
