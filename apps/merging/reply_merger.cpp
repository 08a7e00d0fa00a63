#include "apps/merging/reply_merger.h"

#include <algorithm>
#include <functional>
#include <utility>

namespace tolvarin::ondrel::client {

namespace {

constexpr std::size_t fewestKept = std::size_t{1} << 14U;
constexpr std::size_t mostKept = std::size_t{1} << 19U;
constexpr unsigned mostCompared = 64;                      // those of one slot
constexpr u64 second = 1000;                               // ms
constexpr u64 longestKnown = 2 * ReplyMerger::longestWait; // ms

u64 apart(u64 one, u64 other) {
    return std::max(one, other) - std::min(one, other);
}

/// Of the bytes and the second in which they were sent.
std::size_t hashOf(std::size_t bytesHash, u64 time) {
    return bytesHash + time * 0x9E3779B97F4A7C15; // 2^64 by the golden ratio
}

} // namespace

void ReplyMerger::add(const GradedReply& reply, unsigned site, u64 nowMs) {
    _lastAdd = nowMs;
    makeRoom();
    const std::size_t bytesHash = std::hash<std::string>()(reply.bytes);
    if (Transmission* same = sameAs(reply, bytesHash, site)) {
        ++_duplicates;
        same->sites += static_cast<char16_t>(site);
        same->reply.confidence = std::max(same->reply.confidence, reply.confidence);
        same->reply.signalAmplitude = std::max(same->reply.signalAmplitude, reply.signalAmplitude);
        return;
    }
    Transmission& added = at(_end);
    added.hash = hashOf(bytesHash, reply.stampMs / second);
    added.older = std::exchange(slotOf(added.hash), _end);
    added.reply = reply;
    added.sites = static_cast<char16_t>(site);
    added.cameMs = nowMs;
    added.isGiven = false;
    const u64 place = std::min(reply.stampMs, nowMs);
    _waiting.push_back({place, _end});
    std::push_heap(_waiting.begin(), _waiting.end());
    _newest = std::max(_newest, place);
    ++_end;
}

/// The transmission that the site can have heard now. It hears the older ones first.
ReplyMerger::Transmission* ReplyMerger::sameAs(const GradedReply& reply, std::size_t bytesHash,
                                               unsigned site) {
    static_assert(2 * sameTransmission <= second);
    const u64 own = reply.stampMs / second;
    const u64 nearest = reply.stampMs % second < second / 2 ? own - 1 : own + 1;
    Transmission* one = sameIn(hashOf(bytesHash, std::min(own, nearest)), reply, site);
    return one != nullptr ? one : sameIn(hashOf(bytesHash, std::max(own, nearest)), reply, site);
}

/// The oldest one of those with the hash.
ReplyMerger::Transmission* ReplyMerger::sameIn(std::size_t hash, const GradedReply& reply,
                                               unsigned site) {
    Transmission* oldest = nullptr;
    unsigned compared = 0;
    for (u64 number = slotOf(hash); number >= _first && compared < mostCompared;
         number = at(number).older, ++compared) {
        Transmission& one = at(number);
        if (one.hash == hash && one.reply.bytes == reply.bytes &&
            apart(one.reply.stampMs, reply.stampMs) <= sameTransmission &&
            one.sites.find(static_cast<char16_t>(site)) == std::u16string::npos) {
            oldest = &one;
        }
    }
    return oldest;
}

/// For one more transmission.
void ReplyMerger::makeRoom() {
    const std::size_t size = _transmissions.size();
    if (_end - _first < size) {
        return;
    }
    std::vector<Transmission> larger(std::max(2 * size, fewestKept));
    _slots.assign(larger.size(), 0);
    for (u64 number = _first; number < _end; ++number) {
        Transmission& one = larger[number % larger.size()];
        one = std::move(at(number));
        one.older = std::exchange(slotOf(one.hash), number);
    }
    _transmissions.swap(larger);
}

bool ReplyMerger::take(MergedReply& merged, u64 nowMs) {
    if (_waiting.empty()) {
        return false;
    }
    const bool isDue = _newest - std::min(_newest, longestWait) >= _waiting.front().stampMs ||
                       nowMs >= _lastAdd + longestWait || _end - _first > mostKept;
    if (!isDue) {
        return false;
    }
    Transmission& oldest = at(_waiting.front().number);
    std::pop_heap(_waiting.begin(), _waiting.end());
    _waiting.pop_back();
    merged.reply = oldest.reply;
    merged.sites = oldest.sites.size();
    oldest.isGiven = true;
    forget(nowMs);
    return true;
}

/// Those that were given and are old, by their stamps and by the clock. If there are many, one of
/// the two is enough.
void ReplyMerger::forget(u64 nowMs) {
    for (; _first < _end && at(_first).isGiven; ++_first) {
        const Transmission& first = at(_first);
        const bool isOld = first.reply.stampMs + longestKnown < _newest;
        const bool cameLongAgo = first.cameMs + longestKnown < nowMs;
        const std::size_t count = _end - _first;
        if (!(isOld && cameLongAgo) && !((isOld || cameLongAgo) && count > fewestKept) &&
            count <= mostKept) {
            return;
        }
    }
}

} // namespace tolvarin::ondrel::client
