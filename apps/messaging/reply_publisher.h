#pragma once

#include "apps/merging/reply_batch.h"
#include "apps/messaging/message_server.h"

#include <ondrel/types.h>

#include <chrono>
#include <cstddef>
#include <functional>
#include <memory>
#include <string>

namespace tolvarin::ondrel::client {

struct PublisherOptions {
    std::string site;        ///< a name for isSiteName()
    unsigned partitions = 8; ///< 1 to mostPartitions
    std::size_t batchSize =
        512; ///< replies with which a batch leaves, up to ReplyBatch::mostReplies
    std::chrono::milliseconds longestBatch{200};  ///< after which it leaves with fewer
    std::size_t backlog = std::size_t{64} << 20U; ///< bytes that wait for the server
};

struct PublisherCounts {
    u64 sent = 0;    ///< replies that the server has, or got if it keeps nothing
    u64 batches = 0; ///< in which they went
    u64 dropped = 0; ///< replies, since the backlog was full; the server may have got some
    u64 waiting = 0; ///< replies
};

/// Sends the replies of a site to a message server, in batches for each partition. A batch stays in
/// the backlog until the store of the server (JetStream) has it, and is sent again until then. If
/// the server has no store, each batch is sent once. When the backlog is full, its oldest batch is
/// dropped.
class ReplyPublisher {
public:
    /// `report` tells what the user should know. Throws Failure if the options of the server are of
    /// no use.
    ReplyPublisher(const MessageServer& server, const PublisherOptions& options,
                   std::function<void(const std::string&)> report);
    ~ReplyPublisher();

    /// Takes a reply for the partition of its address. One that no batch can hold is dropped.
    void add(const GradedReply& reply, u32 address);

    /// Sends what is due. Call it ten times a second at least; more often costs little.
    void poll();

    /// Whether the server has refused this client for good, which was reported.
    bool hasEnded() const;

    /// Whether the next batch would drop another one.
    bool isFull() const;

    /// Sends all, and waits so long at most until the server has it.
    void finish(std::chrono::milliseconds longest);

    PublisherCounts counts() const;

private:
    class Sending;

    std::unique_ptr<Sending> _sending;
};

} // namespace tolvarin::ondrel::client
