// What the client takes from a network of sites: batches of replies, and the subjects of stored
// messages. They are read as they come, and as they were written.

#include "apps/merging/reply_batch.h"
#include "apps/messaging/stored_message.h"

#include "fuzzing.h"
#include "support/bytes.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>

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

bool isName(const std::string& site) {
    return !site.empty() && site.size() <= 32 && std::all_of(site.begin(), site.end(), [](char c) {
        const bool isLetter = (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
        return isLetter || (c >= '0' && c <= '9') || c == '-' || c == '_';
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
    batch.site = bytes.substr(29, nameSize);
    if (!isName(batch.site) || bytes.size() <= 29 + nameSize) {
        return std::nullopt;
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
    batch.replies.resize(bytes.size() % 64); // as they stand in a batch that is used again
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

/// Whether the stamp of a reply can stand in a batch: 31 bits and a sign.
bool fits(u64 first, std::int64_t after) {
    constexpr u64 furthest = 0x7FFFFFFF;
    return after < 0 ? u64(-after) <= std::min(first, furthest)
                     : u64(after) <= std::min(~first, furthest);
}

/// A batch as a site of any name writes it, then with a wrong bit, then cut off.
void readWrittenBatch(Input& input) {
    ReplyBatch batch;
    batch.started = input.take<u64>();
    batch.number = input.take<u64>();
    batch.site = std::string(1 + input.take<u8>() % 34, 'S');
    batch.site.back() = input.take<bool>() ? 'S' : input.take<char>();
    const u64 first = input.take<u64>();
    const std::size_t missing = 1 + input.take<u8>();
    const u32 damaged = input.take<u32>();
    do {
        GradedReply reply;
        const u8 head = input.take<u8>();
        reply.confidence = static_cast<ModeSMessage::Confidence>(1 + head % 3);
        reply.signalAmplitude = input.take<u8>();
        const auto after = batch.replies.empty() ? 0 : input.take<std::int32_t>() * std::int64_t{2};
        reply.stampMs = first + static_cast<u64>(after);
        reply.bytes = input.text(head < 0x80 ? 7 : 14);
        reply.bytes.resize(head < 0x80 ? 7 : 14);
        hold(fitsBatch(reply, first) == fits(first, after));
        if (fits(first, after)) {
            batch.replies.push_back(reply);
        }
    } while (!input.empty());
    const std::string bytes = batchBytes(batch);
    hold(bytes.size() <= ReplyBatch::mostBytes);
    const auto written = expectedBatch(bytes);
    hold(written ? same(*written, batch) : !isName(batch.site));
    readBytesAsBatch(bytes);
    const auto wrongBit = static_cast<unsigned>(damaged % (bytes.size() * 8));
    readBytesAsBatch(test::inverted(bytes, {wrongBit}));
    readBytesAsBatch(bytes.substr(0, bytes.size() - std::min(missing, bytes.size())));
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
    Input input(data, size);
    switch (input.take<u8>() % 4) {
    case 0:
        readBytesAsBatch(input.text(size));
        break;
    case 1:
        readWrittenBatch(input);
        break;
    case 2:
        readWrittenSubject(input);
        break;
    default:
        readSubject("$JS.ACK." + input.text(size));
    }
    return 0;
}
