// Compares the tracker with its model after every step of a long random sequence of replies,
// reports and calls: targets, their reports and log lines, to the last bit.
#include <ondrel/adsb_tracker.h>

#include "simulator/random.h"
#include "support/bytes.h"
#include "support/messages.h"
#include "support/tracker_comparison.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <limits>
#include <map>
#include <utility>

namespace tolvarin::ondrel {
namespace {

using simulator::Random;
using test::Lines;
using test::TrackerModel;

using Change = void (*)(ADSBTargetReport&, u32 any, u64 time);

/// Changes that an application may make to a report before it hands it on.
constexpr Change reportChanges[] = {
    [](ADSBTargetReport& r, u32 any, u64) {
        r.setTrackId(any % 2 == 0 ? any % 5 : 4092 + any % 5);
    },
    [](ADSBTargetReport& r, u32 any, u64 time) { r.setLastUpdate(any % 3 == 0 ? 0 : time); },
    [](ADSBTargetReport& r, u32 any, u64) { r.setCallsign(std::string(any % 1500, 'X')); },
    [](ADSBTargetReport& r, u32, u64) { r.setCallsign(std::string("AB\0C", 4)); },
    [](ADSBTargetReport& r, u32 any, u64) { r.setCallsignLastChange(any % 2); },
    [](ADSBTargetReport& r, u32 any, u64) { r.setEmitterCategory(static_cast<u8>(any)); },
    [](ADSBTargetReport& r, u32 any, u64) { r.setSquawk(any % 2 == 0 ? 02220 : any); },
    [](ADSBTargetReport& r, u32, u64 time) { r.setSquawkLastUpdate(time); },
    [](ADSBTargetReport& r, u32, u64) { r.setSquawkValid(true); },
    [](ADSBTargetReport& r, u32 any, u64) { r.setPosition(any, std::nan("")); },
    [](ADSBTargetReport& r, u32 any, u64) { r.setPositionValid(any % 2 == 0); },
    [](ADSBTargetReport& r, u32 any, u64) { r.setAltitudeBaro(static_cast<i32>(any)); },
    [](ADSBTargetReport& r, u32, u64) { r.setAltitudeBaro(std::numeric_limits<i32>::min()); },
    [](ADSBTargetReport& r, u32, u64 time) { r.setAltitudeBaroLastUpdate(time); },
    [](ADSBTargetReport& r, u32 any, u64) { r.setIcaoAddress(any % 8); },
    [](ADSBTargetReport& r, u32 any, u64) { r.setIcaoAddressValid(any % 2 == 0); },
};

/// Three trackers, each with a model that gets the same calls. The addresses are 0 to 7.
class RandomSequence {
public:
    explicit RandomSequence(u64 seed) : _random(seed) { _record.log.take(); }

    void run(int steps) {
        for (int i = 0; i < steps && !testing::Test::HasFailure(); ++i) {
            _current = _random.chance(0.7) ? _current : any() % _pairs.size();
            Pair& pair = _pairs.at(_current);
            if (_random.chance(0.95)) {
                takeMessage(pair);
            } else {
                callAny(pair, _pairs.at(any() % _pairs.size()));
            }
            if (i % 16 == 0) {
                for (Pair& each : _pairs) {
                    compare(each.tracker.allTargets(), each.model.those([](u64) { return true; }));
                }
            }
        }
    }

    const std::map<std::string, unsigned>& events() const { return _record.events; }

private:
    struct Pair {
        ADSBTracker tracker;
        TrackerModel model;
    };

    test::ModelRecord _record;
    Random _random;
    std::array<Pair, 3> _pairs{
        {{{}, TrackerModel(_record)}, {{}, TrackerModel(_record)}, {{}, TrackerModel(_record)}}};
    u64 _now = 1;
    u64 _stamp = 1;
    u32 _address = 0;
    std::size_t _current = 0;

    u32 any() { return static_cast<u32>(_random.bits()); }

    /// Mostly a little later than the last one. Sometimes in another era, or a shift away from it.
    u64 stamp() {
        static constexpr std::array<u64, 7> eras = {
            0, 1, 0x7FFFE000, 0xFFFFE000, 0x17FFFE000, 1700000000000, ~u64{0} - 5000};
        static constexpr std::array<u64, 6> shifts = {0x80000000,  0x7FFFFFFF, 0x80000001,
                                                      0x100000000, 10000,      10001};
        if (_random.chance(0.06)) {
            return _random.chance(0.1) ? 0 : _stamp - _random.oneOf(shifts);
        }
        if (_random.chance(0.02)) {
            return _now += _random.oneOf(shifts);
        }
        return _now = _random.chance(0.003) ? _random.oneOf(eras) : _now + any() % 150;
    }

    /// Random bits with a type code that the tracker uses. Even addresses hardly ever send what
    /// tells a version above 0.
    std::string payload() {
        static constexpr std::array<unsigned, 8> early = {1, 4, 5, 19, 19, 23, 24, 11};
        static constexpr std::array<unsigned, 8> late = {31, 28, 29, 28, 4, 28, 28, 0};
        const bool isEarly = _address % 2 == 0 && _random.chance(0.96);
        const u32 code =
            _random.chance(0.6) ? 9 + any() % 14 : _random.oneOf(isEarly ? early : late);
        std::string me = test::word(any());
        me += test::word(any()).substr(1);
        me[0] = static_cast<char>(code << 3 | (code < 19 ? any() % 8 : any() % 4));
        if (_random.chance(0.6) && code != 31) {
            me.replace(1, 2, "\xC3\x80"); // the altitude or callsign that all aircraft send
        }
        return me;
    }

    std::string frame() {
        static constexpr std::array<unsigned, 16> formats = {0,  4,  5,  11, 16, 17, 17, 17,
                                                             17, 17, 17, 17, 18, 19, 20, 21};
        static constexpr std::array<u32, 4> codes = {0, 0x0808, 0x1718, 0x1FBF}; // AC or ID
        const unsigned format = _random.oneOf(formats);
        if (format == 11 || (format >= 17 && format <= 19)) {
            const std::string me = format == 11 ? "" : payload();
            return test::withOverlay(test::head(format, any() % 8, _address) + me, 0);
        }
        const u32 code = _random.chance(0.5) ? _random.oneOf(codes) : any() & 0x1FFF;
        const std::string tail = test::isLong(format) ? "longer!" : "";
        return test::withOverlay(test::head(format, any() % 8, code) + tail, _address);
    }

    /// Calls the tracker, then the model, and compares results and log lines.
    template <class Call, class ModelCall>
    void both(Call call, ModelCall modelCall) {
        _record.log.take();
        const auto result = call();
        const Lines said = _record.log.take();
        compare(result, modelCall());
        EXPECT_EQ(said, std::exchange(_record.lines, {}));
    }

    static void compare(const ADSBTarget* target, const TrackerModel::Aircraft& craft) {
        ASSERT_EQ(target == nullptr, craft == nullptr);
        if (target != nullptr) {
            EXPECT_EQ(test::differences(*target, target->report(), *craft), "");
        }
    }
    static void compare(const std::vector<ADSBTarget>& targets,
                        const std::vector<TrackerModel::Aircraft>& crafts) {
        ASSERT_EQ(targets.size(), crafts.size());
        for (std::size_t i = 0; i < targets.size(); ++i) {
            compare(&targets[i], crafts[i]);
        }
    }

    /// Often several in a row of one aircraft, and some of them at the same time.
    void takeMessage(Pair& pair) {
        _address = _random.chance(0.7) ? _address : any() % 8;
        const std::string frame = this->frame();
        _stamp = _random.chance(0.2) ? _stamp : stamp();
        const auto confidence = static_cast<ModeSMessage::Confidence>(any() % 4);
        const auto message =
            test::graded(frame, _stamp, _random.chance(0.8) ? ModeSMessage::High : confidence);
        message->setSignalAmplitude(static_cast<u8>(any()));
        both([&] { return pair.tracker.procModeSMsg(message.get()); },
             [&] { return pair.model.take(*message); });
    }

    void callAny(Pair& pair, Pair& other) {
        const u64 time = stamp();
        const auto targets = other.tracker.allTargets();
        const ADSBTarget chosen = targets.empty() ? ADSBTarget(3) : targets[time % targets.size()];
        const int what = _random.between(0, 29);
        if (what <= 24) {
            ADSBTargetReport report = chosen.report();
            for (int i = _random.between(0, 6); i > 0; --i) {
                reportChanges[any() % std::size(reportChanges)](report, any(), time);
            }
            both([&] { return pair.tracker.procTargetReport(&report); },
                 [&] { return pair.model.take(report); });
        } else if (what == 25) {
            const u64 until = chosen.lastUpdate();
            both([&] { return pair.tracker.killTargets(until); },
                 [&] { return pair.model.kill(until); });
        } else if (what == 26) {
            const u64 from = chosen.lastUpdate();
            both([&] { return pair.tracker.allTargetsSince(from, time); },
                 [&] { return pair.model.those([=](u64 t) { return t > from && t <= time; }); });
        } else if (what <= 28) {
            test::AltitudeCheck& check = pair.model.check;
            check.enabled = time % 4 != 0;
            check.seconds = time % 16 == 1 ? 0xFFFFFFFF : any() % 8;
            check.limit = time % 16 == 2 ? 0x80000000 : any() % 3000;
            pair.tracker.setAltituteBaroChecking(check.enabled, check.seconds, check.limit);
        } else {
            resetCopyOrMove(pair, other, any() % 5);
        }
    }

    void resetCopyOrMove(Pair& pair, Pair& other, u32 how) {
        if (how == 0) {
            pair.tracker.reset();
            pair.model.reset();
        } else if (how <= 2) {
            pair = other; // perhaps itself
        } else if (&pair != &other) {
            if (how == 3) {
                pair.tracker = std::move(other.tracker);
            } else {
                ADSBTracker moved(std::move(other.tracker));
                pair.tracker = moved;
            }
            pair.model = other.model;
            other.model.aircraft.clear();
        }
        EXPECT_EQ(_record.log.take(), Lines{});
    }
};

TEST(TrackingModel, GivesTheTargetsReportsAndLogLinesOfTheTracker) {
    std::map<std::string, unsigned> events;
    for (const u64 seed : {1U, 2U, 3U}) {
        RandomSequence sequence(seed);
        sequence.run(25000);
        ASSERT_FALSE(HasFailure()) << "seed " << seed;
        for (const auto& [event, count] : sequence.events()) {
            events[event] += count;
        }
    }
    for (const char* event : {"all-call reply of an unknown address",
                              "report that is not valid",
                              "altitude refused",
                              "altitude accepted",
                              "frame without the other",
                              "frames too far apart",
                              "frames 2^31 ms apart",
                              "frames of the same time",
                              "even frame newer",
                              "odd frame newer",
                              "frames of different zones",
                              "track number in use",
                              "free track number",
                              "line for a first value",
                              "line for a new value",
                              "line for the same callsign",
                              "line for the same squawk",
                              "line for a squawk above 7777",
                              "version 0 confirmed",
                              "version 0 assumed again",
                              "change to version 1",
                              "change to version 2"}) {
        EXPECT_GT(events[event], 3U) << event;
    }
}

} // namespace
} // namespace tolvarin::ondrel
