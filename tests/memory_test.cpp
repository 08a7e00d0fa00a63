// What the headers promise for exhausted memory. Each operation of a script runs until it succeeds:
// its first allocation fails, then its second, until it needs no more. After each failure
// everything must be as promised, and after the success as if nothing had failed.
#include <ondrel/adsb_airborne_velocity_message.h>
#include <ondrel/adsb_message.h>
#include <ondrel/adsb_tracker.h>
#include <ondrel/df_messages.h>
#include <ondrel/log.h>
#include <ondrel/mode_s_decoder.h>

#include "simulator/traffic.h"
#include "support/allocations.h"
#include "support/bytes.h"
#include "support/messages.h"
#include "support/movable_clock.h"
#include "support/tracker_comparison.h"

#include <gtest/gtest.h>

#include <map>
#include <memory>
#include <new>
#include <string>
#include <utility>
#include <vector>

namespace tolvarin::ondrel {
namespace {

using test::operator""_hex;

/// A log that needs no memory of its own.
class RoomyLog final : public LogHandler {
public:
    RoomyLog() {
        _lines.reserve(1 << 20);
        Log::setLogHandler(this);
        Log::setShowLevel(Log::Debug);
    }
    RoomyLog(const RoomyLog&) = delete;
    RoomyLog& operator=(const RoomyLog&) = delete;
    ~RoomyLog() {
        Log::setLogHandler(nullptr);
        Log::setShowLevel(Log::Info);
    }

    void writeLine(const std::string& line) override { _lines.append(line).append("\n"); }
    const std::string& lines() const { return _lines; }
    void clear() { _lines.clear(); }

private:
    std::string _lines;
};

/// Runs the operation until it succeeds, and `check` after each failure.
template <class Operation, class Check>
auto exhaust(Operation operation, Check check) {
    for (std::size_t spared = 0;; ++spared) {
        try {
            const test::FailingAllocation failing(spared);
            return operation();
        } catch (const std::bad_alloc&) {
        }
        check();
    }
}

/// The same for an operation that needs memory.
template <class Operation, class Check>
void exhaustAtLeastOnce(Operation operation, Check check) {
    std::size_t failures = 0;
    exhaust(operation, [&] {
        ++failures;
        check();
    });
    EXPECT_GT(failures, 0U);
}

/// Collects data as lines, each with its times.
class Lines {
public:
    void operator()(char, const std::string& name, double value, u64 update = 0, u64 change = 0,
                    bool valid = false) {
        lines.push_back(name + ' ' + std::to_string(value) + ' ' + std::to_string(update) + ' ' +
                        std::to_string(change) + ' ' + std::to_string(static_cast<int>(valid)));
    }

    std::vector<std::string> lines;
};

std::vector<std::string> dataOf(const ADSBTarget& target) {
    Lines lines;
    test::visitTarget(lines, target);
    lines(0, target.callsign(), 0, target.callsignLastUpdate(), target.callsignLastChange());
    return lines.lines;
}

using Data = std::map<u32, std::vector<std::string>>;

Data dataOf(const std::vector<ADSBTarget>& targets) {
    Data data;
    for (const ADSBTarget& target : targets) {
        data[target.icaoAddr()] = dataOf(target);
    }
    return data;
}

Data dataOf(const ADSBTracker& tracker) {
    return dataOf(tracker.allTargets());
}

/// Each datum of each target must be as before or as after a call that a failure interrupted.
void expectWhole(const Data& interrupted, const Data& before, const Data& after) {
    for (const auto& [address, data] : before) {
        EXPECT_EQ(interrupted.count(address), 1U);
    }
    for (const auto& [address, data] : interrupted) {
        ASSERT_EQ(after.count(address), 1U);
        const auto known = before.find(address);
        const auto old = known != before.end() ? known->second : dataOf(ADSBTarget(address));
        for (std::size_t i = 0; i < data.size(); ++i) {
            EXPECT_TRUE(data[i] == old[i] || data[i] == after.at(address)[i])
                << data[i] << ", before: " << old[i] << ", after: " << after.at(address)[i];
        }
    }
}

/// How the decoder would grade, now and later: what it knows. It learns nothing by that.
std::string knowledge(const ModeSDecoder& decoder, test::MovableClock& clock) {
    std::string grades;
    for (const int later : {0, 31, 61, 301, 600}) {
        clock.advance(later);
        for (u32 address = 1; address <= 24; ++address) {
            for (const u32 interrogator : {0U, 5U, 7U}) {
                ModeSDecoder copy(decoder);
                for (const std::string& frame :
                     {test::allCall(address, interrogator), test::surveillance(5, address)}) {
                    const std::unique_ptr<ModeSMessage> message(
                        copy.decode(ModeSMessage::Downlink, frame));
                    grades += static_cast<char>('0' + message->confidence());
                }
            }
        }
        clock.advance(-later);
    }
    return grades;
}

TEST(Memory, ADecoderLearnsAllOfAReplyOrNothing) {
    std::vector<std::string> script;
    for (u32 address = 1; address <= 20; ++address) { // the table of addresses grows
        script.push_back(test::squitter(address, address % 2 == 0 ? 17 : 18));
    }
    for (u32 address = 1; address <= 12; ++address) { // interrogator 7 becomes reliable
        script.push_back(test::allCall(address, 7));
    }
    script.push_back(test::allCall(21, 7)); // makes an unknown address known
    script.push_back(test::allCall(22, 5)); // does not
    script.push_back(test::allCall(1, 5));  // a new interrogator
    script.push_back(test::allCall(2, 0));
    script.push_back(test::surveillance(4, 3));
    script.push_back(test::surveillance(21, 4));
    script.push_back(test::inverted(test::squitter(23), {40}));
    script.push_back(test::inverted(test::squitter(24), {40, 50}));
    script.push_back(test::inverted(test::squitter(24), {40, 50, 61}));
    script.push_back(test::squitter(22, 19) + std::string(100, 'x')); // more than a frame
    script.push_back(test::squitter(22, 19, 1));
    script.push_back(test::head(24, 0, 0) + std::string(10, 'x'));

    RoomyLog log;
    test::MovableClock clock;
    ModeSDecoder expected;
    ModeSDecoder decoder;
    std::size_t failures = 0;
    for (const std::string& frame : script) {
        SCOPED_TRACE(testing::PrintToString(frame));
        clock.advance(20);
        log.clear();
        const std::unique_ptr<ModeSMessage> right(expected.decode(ModeSMessage::Downlink, frame));
        const std::string rightLines = log.lines();
        const std::string before = knowledge(decoder, clock);
        log.clear();
        const std::unique_ptr<ModeSMessage> message(exhaust(
            [&] {
                log.clear();
                return decoder.decode(ModeSMessage::Downlink, frame);
            },
            [&] {
                ++failures;
                // Whole lines, in their order.
                EXPECT_EQ(rightLines.rfind(log.lines(), 0), 0U) << log.lines();
                EXPECT_EQ(knowledge(decoder, clock), before);
            }));
        EXPECT_EQ(log.lines(), rightLines);
        EXPECT_EQ(knowledge(decoder, clock), knowledge(expected, clock));
        ASSERT_EQ(message == nullptr, right == nullptr);
        if (message != nullptr) {
            EXPECT_EQ(message->description(), right->description());
            EXPECT_EQ(message->confidence(), right->confidence());
        }
    }
    EXPECT_GT(failures, script.size());

    ModeSDecoder other;
    exhaustAtLeastOnce(
        [&] { other = decoder; },
        [&] { EXPECT_EQ(knowledge(other, clock), knowledge(ModeSDecoder(), clock)); });
    EXPECT_EQ(knowledge(other, clock), knowledge(decoder, clock));
}

class TrackerMemory : public testing::Test {
protected:
    /// Gives `take` to a tracker, and to one for which memory is never exhausted.
    template <class Take>
    void expectWholeAfter(Take take) {
        const Data before = dataOf(_tracker);
        take(_expected);
        const Data after = dataOf(_expected);
        exhaust([&] { take(_tracker); },
                [&] {
                    ++_failures;
                    expectWhole(dataOf(_tracker), before, after);
                });
        EXPECT_EQ(dataOf(_tracker), after);
    }

    /// The same for an operation that must change nothing if it fails. Gives its results.
    template <class Operation>
    auto expectUnchangedUntil(Operation operation) {
        const Data before = dataOf(_tracker);
        auto right = operation(_expected);
        auto result = exhaust([&] { return operation(_tracker); },
                              [&] {
                                  ++_failures;
                                  EXPECT_EQ(dataOf(_tracker), before);
                              });
        EXPECT_EQ(dataOf(_tracker), dataOf(_expected));
        return std::pair(std::move(result), std::move(right));
    }

    /// Traffic, with squawks, callsigns and all else that changes.
    void hear(unsigned seconds) {
        simulator::TrafficOptions options;
        options.aircraft = 12;
        options.seconds = seconds;
        options.interrogators = 3;
        simulator::Traffic traffic(options);
        ModeSDecoder decoder;
        while (const auto reply = traffic.next()) {
            const std::unique_ptr<ModeSMessage> message(
                decoder.decode(ModeSMessage::Downlink, reply->bytes, reply->timeMs));
            expectWholeAfter([&](ADSBTracker& tracker) { tracker.procModeSMsg(message.get()); });
            if (HasFailure()) {
                return;
            }
        }
    }

    RoomyLog _log;
    ADSBTracker _expected;
    ADSBTracker _tracker;
    std::size_t _failures = 0;
};

TEST_F(TrackerMemory, TakesMessagesInWholeData) {
    hear(15);
    EXPECT_GT(_failures, 40U);
    // What a controller asks for and an aircraft answers: each change has a line in the log.
    u64 stamp = 1'800'000'000'000;
    for (const u32 code : {0x0808U, 0x0A0AU, 0x0A0AU}) {
        for (const unsigned status : {0U, 2U, 4U, 5U}) {
            const std::string frame =
                test::with(test::surveillance(5, 0, code), 5, 3, status).substr(0, 4);
            const auto message = test::graded(test::withOverlay(frame, 0x4840D6), ++stamp);
            expectWholeAfter([&](ADSBTracker& tracker) { tracker.procModeSMsg(message.get()); });
        }
    }
}

TEST_F(TrackerMemory, TakesReportsInWholeData) {
    hear(5);
    u64 stamp = 1'800'000'000'000;
    for (const char* callsign :
         {"ABC", "a callsign that needs memory", "another one, longer yet"}) {
        for (const u32 address : {0x4840D6U, _tracker.allTargets().at(0).icaoAddr()}) {
            ADSBTargetReport report = _tracker.allTargets().at(1).report();
            report.setIcaoAddress(address);
            report.setTrackId(77);
            report.setLastUpdate(++stamp);
            report.setCallsign(callsign);
            report.setCallsignLastUpdate(stamp);
            report.setCallsignLastChange(stamp - 1);
            report.setEmitterCategory(static_cast<u8>(stamp % 8));
            expectWholeAfter([&](ADSBTracker& tracker) { tracker.procTargetReport(&report); });
        }
    }
    EXPECT_GT(_failures, 20U);
}

TEST_F(TrackerMemory, GivesListsAndRemovesAllOrNothing) {
    hear(8);
    const auto [all, rightAll] =
        expectUnchangedUntil([](ADSBTracker& tracker) { return tracker.allTargets(); });
    EXPECT_EQ(dataOf(all), dataOf(rightAll));
    const u64 middle = all.at(all.size() / 2).lastUpdate();
    const auto [newer, rightNewer] =
        expectUnchangedUntil([=](ADSBTracker& tracker) { return tracker.allTargetsSince(middle); });
    EXPECT_EQ(dataOf(newer), dataOf(rightNewer));
    const std::size_t before = _failures;
    const auto [killed, rightKilled] =
        expectUnchangedUntil([=](ADSBTracker& tracker) { return tracker.killTargets(middle); });
    EXPECT_EQ(dataOf(killed), dataOf(rightKilled));
    EXPECT_GT(_failures, before + killed.size()); // each line in the log can fail
    expectUnchangedUntil([](ADSBTracker& tracker) { return ADSBTracker(tracker).allTargets(); });

    // A message of each of many aircraft: no number of a track is lost by a failure.
    for (u32 address = 1; address <= 100; ++address) {
        const auto message = test::graded(test::squitter(address), 1'800'000'000'000);
        expectWholeAfter([&](ADSBTracker& tracker) { tracker.procModeSMsg(message.get()); });
    }

    ADSBTracker other;
    exhaustAtLeastOnce([&] { other = _tracker; }, [&] { EXPECT_TRUE(dataOf(other).empty()); });
    EXPECT_EQ(dataOf(other), dataOf(_tracker));
}

std::string textOf(const ADSBMessage& message) {
    std::string text = message.dataHexString() + (message.valid() ? " valid " : " ") +
                       std::to_string(message.timeStamp()) + ' ' + message.description();
    for (const ADSBMessageField& field : message.fields()) {
        text += '\n' + field.name() + ' ' + field.description();
    }
    return text;
}

/// A message of a client, with a field list that needs memory.
class ListedMessage final : public ADSBMessage {
public:
    ListedMessage() : ADSBMessage(TEST) {}

private:
    bool decodeImpl() override {
        for (u8 i = 0; i < 10; ++i) {
            addField({ADSBMessageField::DATA, i, 1, "a text that a string has no room for"});
        }
        return true;
    }
};

TEST(Memory, ADecodeThatIsInterruptedLeavesNoValidMessage) {
    const RoomyLog log;
    DF17Message reply;
    const std::string frame = test::squitter(0x4840D6);
    ASSERT_TRUE(reply.decode(frame));
    const std::string damaged = test::inverted(frame, {40});
    exhaustAtLeastOnce([&] { reply.decode(damaged); },
                       [&] {
                           EXPECT_FALSE(reply.valid());
                           ASSERT_TRUE(reply.decode(frame));
                       });

    ADSBAirborneVelocityMessageV1 payload;
    const std::string groundSpeed = "99440994083817"_hex;
    ASSERT_TRUE(payload.decode(groundSpeed));
    const std::string airSpeed = "9B06B6AF189400"_hex; // is refused
    exhaustAtLeastOnce([&] { payload.decode(airSpeed); },
                       [&] {
                           EXPECT_FALSE(payload.valid());
                           ASSERT_TRUE(payload.decode(groundSpeed));
                       });

    const std::string callsign = "202CC371C32CE0"_hex; // of another type
    ADSBAirborneVelocityMessageV1 refusing;
    ASSERT_TRUE(refusing.decode(groundSpeed));
    refusing.decode(callsign);
    const std::string afterRefusal = textOf(refusing);
    ADSBAirborneVelocityMessageV1 interrupted;
    ASSERT_TRUE(interrupted.decode(groundSpeed));
    const std::string before = textOf(interrupted);
    exhaustAtLeastOnce([&] { interrupted.decode(callsign); },
                       [&] {
                           const std::string after = textOf(interrupted);
                           EXPECT_TRUE(after == before || after == afterRefusal) << after;
                       });

    const std::string listed = "B8000000000000"_hex;
    exhaustAtLeastOnce(
        [&] {
            ListedMessage message;
            try {
                EXPECT_TRUE(message.decode(listed));
                EXPECT_EQ(message.fields().size(), 12U);
            } catch (const std::bad_alloc&) {
                // Nothing is listed that is not whole.
                for (const ADSBMessageField& field : message.fields()) {
                    EXPECT_NE(field.description(), "NO_DESCRIPTION");
                }
                throw;
            }
        },
        [] {});
}

/// Assigns until it succeeds: a failure must leave the object as it was.
template <class Object, class Text>
void expectAssignedOrUnchanged(Object object, const Object& other, Text text) {
    const std::string before = text(object);
    ASSERT_NE(before, text(other));
    exhaustAtLeastOnce([&] { object = other; }, [&] { EXPECT_EQ(text(object), before); });
    EXPECT_EQ(text(object), text(other));
}

TEST(Memory, AnAssignmentAssignsAllOrNothing) {
    const RoomyLog log;
    const test::MovableClock clock;
    ListedMessage listed;
    ASSERT_TRUE(listed.decode("B8000000000001"_hex));
    expectAssignedOrUnchanged(ListedMessage(), listed, textOf);

    ADSBTargetReport report;
    report.setIcaoAddress(0x4840D6);
    report.setLastUpdate(1'800'000'000'000);
    report.setTrackId(77);
    report.setCallsign("a callsign that needs memory");
    expectAssignedOrUnchanged(ADSBTargetReport(), report,
                              [](const ADSBTargetReport& r) { return r.toHtml(""); });

    ADSBTracker tracker;
    const ADSBTarget* target = tracker.procTargetReport(&report);
    ASSERT_NE(target, nullptr);
    expectAssignedOrUnchanged(ADSBTarget(1), *target,
                              [](const ADSBTarget& t) { return t.report().toHtml(""); });

    const std::string text = "a text that a string has no room for";
    expectAssignedOrUnchanged(ADSBMessageField(ADSBMessageField::TYPE, 0, 5, "one"),
                              ADSBMessageField(ADSBMessageField::DATA, 8, 3, text),
                              [](const ADSBMessageField& field) {
                                  return field.name() + std::to_string(field.pos()) + ' ' +
                                         std::to_string(field.bits()) + field.description();
                              });
}

TEST(Memory, ALineIsWrittenWholeOrNotAtAll) {
    RoomyLog log;
    const std::string module = "ModuleOf20Characters"; // as wide as the column ever gets in a test
    exhaustAtLeastOnce([&] { Log::log(Log::Info, module, std::string(2000, 'x')); },
                       [&] { EXPECT_EQ(log.lines(), ""); });
    EXPECT_EQ(log.lines(), "[INFO    ][" + module + "] " + std::string(2000, 'x') + "\n");
    log.clear();
    exhaustAtLeastOnce([&] { Log::log(Log::Info, module, "%s", "a line"); },
                       [&] { EXPECT_EQ(log.lines(), ""); });
    EXPECT_EQ(log.lines(), "[INFO    ][" + module + "] a line\n");

    // Nor does the name of a line that there was no memory for widen the column.
    const std::string longName = "ModuleOfMoreThan20Characters";
    const std::string message(2000, 'x');
    log.clear();
    {
        const test::FailingAllocation failing(0);
        EXPECT_THROW(Log::log(Log::Info, longName, message), std::bad_alloc);
    }
    Log::log(Log::Info, module, "%s", "a line");
    EXPECT_EQ(log.lines(), "[INFO    ][" + module + "] a line\n");
}

} // namespace
} // namespace tolvarin::ondrel
