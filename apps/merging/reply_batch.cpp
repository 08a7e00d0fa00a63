#include "apps/merging/reply_batch.h"

#include <algorithm>
#include <limits>

namespace tolvarin::ondrel::client {

namespace {

constexpr std::string_view form = "ODR1";
constexpr std::size_t stampAt = 20; // of the first reply
constexpr std::size_t nameLengthAt = 28;
constexpr std::size_t headSize = 29; // without the name
constexpr std::size_t replyHeadSize = 6;
constexpr std::size_t shortSize = 7;
constexpr std::size_t longSize = 14;
constexpr u8 gradeBits = 3;
constexpr u8 longBit = 4;
constexpr u8 otherBits = 0xF8;

void append(std::string& bytes, u64 number, unsigned size) {
    for (unsigned left = size; left-- > 0;) {
        bytes += static_cast<char>(number >> 8 * left);
    }
}

u64 numberAt(std::string_view bytes, std::size_t begin, std::size_t size) {
    u64 number = 0;
    for (const char byte : bytes.substr(begin, size)) {
        number = number << 8U | static_cast<u8>(byte);
    }
    return number;
}

/// Takes the first reply off.
std::string_view readReply(std::string_view& bytes, u64 firstStampMs, GradedReply& reply) {
    const u8 head = static_cast<u8>(bytes.front());
    const std::size_t size = (head & longBit) != 0 ? longSize : shortSize;
    if ((head & gradeBits) == 0 || (head & otherBits) != 0) {
        return "a reply has a grade that there is not";
    }
    if (bytes.size() < replyHeadSize + size) {
        return "it ends within a reply";
    }
    const auto after = static_cast<std::int32_t>(numberAt(bytes, 1, 4));
    reply.confidence = static_cast<ModeSMessage::Confidence>(head & gradeBits);
    reply.stampMs = firstStampMs + static_cast<u64>(std::int64_t{after});
    reply.signalAmplitude = static_cast<u8>(bytes[5]);
    reply.bytes.assign(bytes, replyHeadSize, size);
    bytes.remove_prefix(replyHeadSize + size);
    return "";
}

} // namespace

bool isSiteName(std::string_view name) {
    constexpr std::string_view allowed = "ABCDEFGHIJKLMNOPQRSTUVWXYZ"
                                         "abcdefghijklmnopqrstuvwxyz0123456789-_";
    return !name.empty() && name.size() <= ReplyBatch::longestName &&
           name.find_first_not_of(allowed) == std::string_view::npos;
}

bool fitsBatch(const GradedReply& reply, u64 firstStampMs) {
    constexpr u64 furthest = std::numeric_limits<std::int32_t>::max();
    const u64 apart = std::max(reply.stampMs, firstStampMs) - std::min(reply.stampMs, firstStampMs);
    return (reply.bytes.size() == shortSize || reply.bytes.size() == longSize) &&
           reply.confidence != ModeSMessage::None && apart <= furthest;
}

std::string batchBytes(const ReplyBatch& batch) {
    const u64 first = batch.replies.front().stampMs;
    std::string bytes(form);
    bytes.reserve(headSize + batch.site.size() + batch.replies.size() * (replyHeadSize + longSize));
    append(bytes, batch.started, 8);
    append(bytes, batch.number, 8);
    append(bytes, first, 8);
    append(bytes, batch.site.size(), 1);
    bytes += batch.site;
    for (const GradedReply& reply : batch.replies) {
        append(bytes,
               static_cast<u64>(reply.confidence) | (reply.bytes.size() == longSize ? longBit : 0U),
               1);
        append(bytes, reply.stampMs - first, 4);
        append(bytes, reply.signalAmplitude, 1);
        bytes += reply.bytes;
    }
    return bytes;
}

std::string_view readBatch(std::string_view bytes, ReplyBatch& batch) {
    if (bytes.substr(0, form.size()) != form) {
        return "it is not of the form ODR1";
    }
    const std::size_t nameSize = bytes.size() < headSize ? 0 : static_cast<u8>(bytes[nameLengthAt]);
    if (bytes.size() <= headSize + nameSize) {
        return "it has no reply";
    }
    batch.started = numberAt(bytes, 4, 8);
    batch.number = numberAt(bytes, 12, 8);
    batch.site = bytes.substr(headSize, nameSize);
    if (!isSiteName(batch.site)) {
        return "the name of its site has other characters than letters, digits, - and _, or is "
               "too long";
    }
    const u64 first = numberAt(bytes, stampAt, 8);
    std::string_view rest = bytes.substr(headSize + nameSize);
    std::size_t count = 0;
    for (; !rest.empty(); ++count) {
        if (count == ReplyBatch::mostReplies) {
            return "it has more than 4096 replies";
        }
        if (count == batch.replies.size()) {
            batch.replies.emplace_back();
        }
        const std::string_view reason = readReply(rest, first, batch.replies[count]);
        if (!reason.empty()) {
            return reason;
        }
    }
    batch.replies.resize(count);
    return "";
}

} // namespace tolvarin::ondrel::client
