#pragma once

#include "apps/merging/reply_batch.h"

#include <ondrel/types.h>

#include <cstddef>
#include <string>
#include <vector>

namespace tolvarin::ondrel::client {

/// A transmission and the sites that heard it.
struct MergedReply {
    GradedReply reply; ///< stamp of the site from which it came first; the best grade of all, the
                       ///< strongest signal
    std::size_t sites = 0; ///< that heard it, as far as known when it is taken
};

/// Brings the replies of several sites into the order of their stamps, and makes one of a reply
/// that several sites heard: the same bytes from different sites within half a second. What one
/// site hears twice was sent twice.
///
/// A reply waits until one came that is a second newer, or until nothing new came for a second. One
/// that comes later than that is taken out of order. A stamp ahead of the clock counts as the
/// clock's, so that a site whose clock is ahead does not end the wait of the others. Time and
/// memory are bounded: some hundred thousand transmissions wait or are known at most, then the
/// oldest no longer wait.
class ReplyMerger {
public:
    static constexpr u64 longestWait = 1000;     ///< ms
    static constexpr u64 sameTransmission = 500; ///< ms between the stamps of two sites

    /// `nowMs` is the time at which the reply came, by the clock that take() is asked with.
    void add(const GradedReply& reply, unsigned site, u64 nowMs);

    /// Takes the oldest reply whose time has come. False if there is none.
    bool take(MergedReply& merged, u64 nowMs);

    /// Whether all replies with this stamp or an older one that were added have been taken. For
    /// stamps ahead of the clock, `stampMs` is what the clock was when they were added.
    bool hasGivenAllTo(u64 stampMs) const {
        return _waiting.empty() || stampMs + sameTransmission < _waiting.front().stampMs;
    }

    /// Replies that were one with another one.
    u64 duplicates() const { return _duplicates; }

private:
    struct Transmission {
        std::size_t hash; ///< of the bytes and the second
        u64 older;        ///< number of the one before in the same slot
        GradedReply reply;
        std::u16string sites; ///< the short form of a string holds seven without more memory
        u64 cameMs;
        bool isGiven;
    };
    struct Waiting {
        u64 stampMs; ///< or the clock's
        u64 number;

        /// For a heap with the oldest one on top.
        bool operator<(const Waiting& other) const {
            return stampMs != other.stampMs ? stampMs > other.stampMs : number > other.number;
        }
    };

    Transmission& at(u64 number) { return _transmissions[number % _transmissions.size()]; }
    u64& slotOf(std::size_t hash) { return _slots[hash % _slots.size()]; }
    Transmission* sameAs(const GradedReply& reply, std::size_t bytesHash, unsigned site);
    Transmission* sameIn(std::size_t hash, const GradedReply& reply, unsigned site);
    void makeRoom();
    void forget(u64 nowMs);

    // Transmissions have numbers in the order in which they came. Those from _first to _end - 1 are
    // kept, in a ring. Each of as many slots has the newest of those whose hashes belong to it.
    // The hash is that of the bytes and the second, since many replies have the same bytes.
    std::vector<Transmission> _transmissions;
    std::vector<u64> _slots;
    u64 _first = 1;
    u64 _end = 1;
    std::vector<Waiting> _waiting; ///< a heap
    u64 _newest = 0;               ///< stamp, or the clock's
    u64 _lastAdd = 0;
    u64 _duplicates = 0;
};

} // namespace tolvarin::ondrel::client
