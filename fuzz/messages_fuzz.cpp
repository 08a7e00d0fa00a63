// What the client takes from a network: batches of replies, reports of aircraft, and subjects of
// stored messages. They are read as they come, and as they were written by the client; pages made
// of the reports nest well.

#include "apps/json/report_json.h"
#include "apps/merging/reply_batch.h"
#include "apps/messaging/aircraft_message.h"
#include "apps/messaging/stored_message.h"
#include "apps/pages/aircraft_page.h"
#include "apps/pages/html.h"
#include "apps/pages/index_page.h"

#include <ondrel/adsb_tracker.h>

#include "fuzzing.h"
#include "report_items.h"
#include "support/bytes.h"
#include "support/messages.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <limits>
#include <optional>
#include <string>
#include <vector>

using namespace tolvarin::ondrel;
using namespace tolvarin::ondrel::client;
using fuzzing::hold;
using fuzzing::Input;

namespace {

// Batches

bool same(const ReplyBatch& one, const ReplyBatch& other) {
    return one.site == other.site && one.started == other.started && one.number == other.number &&
           std::equal(one.replies.begin(), one.replies.end(), other.replies.begin(),
                      other.replies.end(), [](const GradedReply& a, const GradedReply& b) {
                          return a.bytes == b.bytes && a.stampMs == b.stampMs &&
                                 a.confidence == b.confidence &&
                                 a.signalAmplitude == b.signalAmplitude;
                      });
}

/// The batch by the table of reply_batch.h, bit by bit; nothing if the bytes are none.
std::optional<ReplyBatch> expectedBatch(const std::string& bytes) {
    const auto at = [&](std::size_t place) { return static_cast<unsigned>(place * 8); };
    if (bytes.size() < 30 || bytes.substr(0, 4) != "ODR1") {
        return std::nullopt;
    }
    const std::size_t nameSize = static_cast<u8>(bytes[28]);
    ReplyBatch batch;
    batch.started = test::bitsOf(bytes, at(4), 64);
    batch.number = test::bitsOf(bytes, at(12), 64);
    const u64 first = test::bitsOf(bytes, at(20), 64);
    if (nameSize < 1 || nameSize > 32 || bytes.size() <= 29 + nameSize) {
        return std::nullopt;
    }
    batch.site = bytes.substr(29, nameSize);
    for (const char c : batch.site) {
        const bool isLetter = (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
        if (!isLetter && !(c >= '0' && c <= '9') && c != '-' && c != '_') {
            return std::nullopt;
        }
    }
    for (std::size_t i = 29 + nameSize; i < bytes.size();) {
        const unsigned head = static_cast<u8>(bytes[i]);
        const std::size_t size = (head & 4U) != 0 ? 14 : 7;
        if (head > 7 || head % 4 == 0 || bytes.size() < i + 6 + size ||
            batch.replies.size() == 4096) {
            return std::nullopt;
        }
        const u64 after = test::bitsOf(bytes, at(i + 1), 32);
        const u64 back = after >= 0x80000000 ? 0x100000000 : 0;
        batch.replies.push_back({bytes.substr(i + 6, size), first + after - back,
                                 static_cast<ModeSMessage::Confidence>(head % 4),
                                 static_cast<u8>(bytes[i + 5])});
        i += 6 + size;
    }
    return batch;
}

void readBytesAsBatch(const std::string& bytes) {
    ReplyBatch batch;
    batch.replies.resize(bytes.size() % 5); // as they stand in a batch that is used again
    const bool isBatch = readBatch(bytes, batch).empty();
    const auto expected = expectedBatch(bytes);
    hold(isBatch == expected.has_value() && (!isBatch || same(batch, *expected)));
    if (!isBatch) {
        return;
    }
    const u64 first = batch.replies.front().stampMs;
    if (std::all_of(batch.replies.begin(), batch.replies.end(),
                    [=](const GradedReply& reply) { return fitsBatch(reply, first); })) {
        const std::string written = batchBytes(batch);
        hold(written.size() == bytes.size() && same(expectedBatch(written).value(), batch));
    }
}

/// A batch as a site writes it, then cut off.
void readWrittenBatch(Input& input) {
    ReplyBatch batch;
    batch.started = input.take<u64>();
    batch.number = input.take<u64>();
    batch.site = std::string(1 + input.take<u8>() % 32, 'S');
    const u64 first = input.take<u64>();
    const std::size_t cut = input.take<std::uint16_t>();
    do {
        GradedReply reply;
        const u8 head = input.take<u8>();
        reply.confidence = static_cast<ModeSMessage::Confidence>(1 + head % 3);
        reply.signalAmplitude = input.take<u8>();
        reply.stampMs = first + (batch.replies.empty() ? 0 : input.take<u32>() >> 1U);
        reply.bytes = input.text(head < 0x80 ? 7 : 14);
        reply.bytes.resize(head < 0x80 ? 7 : 14);
        if (fitsBatch(reply, first)) {
            batch.replies.push_back(reply);
        }
    } while (!input.empty());
    const std::string bytes = batchBytes(batch);
    hold(bytes.size() <= ReplyBatch::mostBytes);
    ReplyBatch again;
    hold(readBatch(bytes, again).empty() && same(again, batch));
    readBytesAsBatch(bytes.substr(0, cut % bytes.size()));
}

// Reports

std::string sixDigits(u32 address) {
    std::array<char, 16> text;
    std::snprintf(text.data(), text.size(), "%06X", address);
    return text.data();
}

void judgePages(const TrackedAircraft& aircraft, const std::string& name) {
    TrackHistory history;
    if (aircraft.position) {
        history.notePosition(aircraft.icaoAddress(), *aircraft.position);
        history.notePosition(aircraft.icaoAddress(), {{1, 2}, aircraft.position->stampMs + 5000});
    }
    history.noteAltitude(aircraft.icaoAddress(), 1000, 1000);
    history.noteAltitude(aircraft.icaoAddress(), aircraft.altitudeBaro(), aircraft.lastUpdate());
    const Showing showing{aircraft.lastUpdate() + 5000};
    hold(fuzzing::nestsWell(wholePage(aircraftPage(aircraft, showing, history))));
    const std::vector<TrackedAircraft> all{aircraft};
    hold(fuzzing::nestsWell(wholePage(indexPage({name, showing, all, history}))));
}

/// What is taken from anywhere keeps to the ranges of docs/reports.md, and is written as it was.
void judge(const TrackedAircraft& aircraft) {
    hold(aircraft.icaoAddress() >= 1 && aircraft.icaoAddress() <= 0xFFFFFF);
    hold(aircraft.emitterCategory() <= 7 && aircraft.notes.identityTypeCode <= 4);
    hold(aircraft.mopsVersion() >= MOPSVersion0 && aircraft.mopsVersion() <= MOPSVersionUnknown);
    const std::string callsign = aircraft.callsign();
    hold(callsign.size() <= 8 &&
         callsign.find_first_not_of("ABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789 ?") == std::string::npos);
    const std::string message = reportMessage(aircraft);
    hold(message.size() <= 8192 && message.find('\n') == std::string::npos);
    const auto again = reportFromMessage(message);
    hold(again && fuzzing::same(*again, aircraft) && reportMessage(*again) == message);
    const std::string subject = "ondrel.v1.aircraft." + sixDigits(aircraft.icaoAddress());
    hold(aircraftSubject(aircraft.icaoAddress()) == subject);
    hold(aircraftOfMessage(subject, message).has_value());
    const std::string other = "ondrel.v1.aircraft." + sixDigits(aircraft.icaoAddress() ^ 1U);
    hold(!aircraftOfMessage(other, message));
}

void readBytesAsReport(const std::string& bytes, bool withPages) {
    if (const auto aircraft = reportFromMessage(bytes)) {
        judge(*aircraft);
        if (withPages) {
            judgePages(*aircraft, bytes);
        }
    }
}

/// Any values: the message is read if they are in their ranges, and refused otherwise.
void readWrittenReport(Input& input) {
    TrackedAircraft aircraft;
    while (!input.empty()) {
        const std::size_t item = input.take<u8>() % std::size(fuzzing::reportItems);
        fuzzing::reportItems[item].set(aircraft, input);
    }
    std::string callsign = aircraft.callsign(); // a JSON text is one of Unicode
    std::for_each(callsign.begin(), callsign.end(),
                  [](char& c) { c = static_cast<char>(c & 0x7F); });
    aircraft.setCallsign(callsign);
    const auto again = reportFromMessage(reportMessage(aircraft));
    if (again) {
        judge(*again);
    }
}

/// Whatever a tracker makes of squitters can be read.
void readTracked(Input& input, bool withPages) {
    constexpr u32 address = 0x4840D6;
    ADSBTracker tracker;
    u64 stamp = 1700000000000;
    while (!input.empty()) {
        stamp += input.take<u8>() * u64{100};
        std::string payload = input.text(7);
        payload.resize(7);
        const std::string frame = test::withOverlay(test::head(17, 5, address) + payload, 0);
        tracker.procModeSMsg(test::graded(frame, stamp).get());
    }
    for (const ADSBTarget& target : tracker.allTargets()) {
        TrackedAircraft aircraft(target);
        judge(aircraft);
        if (target.positionValid()) {
            aircraft.position = Position{{target.latitude(), target.longitude()}, stamp};
        }
        if (withPages) {
            judgePages(aircraft, "<recording> & \"more\"");
        }
    }
}

// Subjects

void readWrittenSubject(Input& input) {
    const u64 number = input.take<u64>();
    const u64 waiting = input.take<u64>();
    const std::string more = input.take<bool>() ? "domain.account." : "";
    const StoredMessage stored("$JS.ACK." + more + "stream.consumer.1." + std::to_string(number) +
                               ".2.3." + std::to_string(waiting));
    hold(stored.isStored() && stored.number() == number && stored.waiting() == waiting);
}

void readSubject(const std::string& subject) {
    const StoredMessage stored(subject);
    if (stored.isStored()) {
        hold(subject.substr(0, 8) == "$JS.ACK.");
        hold(std::count(subject.begin(), subject.end(), '.') >= 8);
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    fuzzing::checkLog();
    Input input(data, size);
    const u8 control = input.take<u8>();
    const bool withPages = control >= 0xF0; // they take long
    switch (control % 8) {
    case 0:
        readBytesAsBatch(input.text(size));
        break;
    case 1:
        readWrittenBatch(input);
        break;
    case 2:
    case 3:
        readBytesAsReport(input.text(size), withPages);
        break;
    case 4:
        readWrittenReport(input);
        break;
    case 5:
        readTracked(input, withPages);
        break;
    case 6:
        readWrittenSubject(input);
        break;
    default:
        readSubject("$JS.ACK." + input.text(size));
    }
    return 0;
}
