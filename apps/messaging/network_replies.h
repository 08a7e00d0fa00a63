#pragma once

#include "apps/common/partition.h"
#include "apps/input/reply_source.h"
#include "apps/messaging/message_server.h"

#include <ondrel/types.h>

#include <chrono>
#include <memory>
#include <string>
#include <vector>

namespace tolvarin::ondrel::client {

/// Which replies of a message server a worker takes, and how.
struct WorkerOptions {
    MessageServer server;
    Partitions partitions{{0, 1, 2, 3, 4, 5, 6, 7}, 8};

    /// The store keeps for each name how far it was read. Two programs with the same name and a
    /// partition in common would share its replies, so the second one waits.
    std::string name = "worker";

    /// How far back a worker that starts reads, to fill its table.
    std::chrono::minutes rebuild{5};
};

/// The replies of all sites that send to a message server, each once, in the order of their stamps
/// (ReplyMerger), with the grades that the sites gave them.
///
/// If the server has a store (JetStream), the store counts a batch as taken when next() was called
/// again after its last reply. So nothing is lost if the program ends in between. It first gives
/// what came in the last minutes, up to where the worker of the same name was. If the server has no
/// store, it gives what is sent from now on, and what is lost on the way stays lost.
class NetworkReplies final : public ReplySource {
public:
    /// Does not wait until the server answers. Throws Failure if the options are of no use.
    NetworkReplies(const WorkerOptions& options, const SourceEvents& events);
    ~NetworkReplies() override;

    Got next(Reply& reply) override;
    const std::string& name() const override { return _name; }
    SourceCounts counts() const override;
    std::vector<SourceState> states() const override;

private:
    class Worker;

    std::string _name;
    std::unique_ptr<Worker> _worker;
};

} // namespace tolvarin::ondrel::client
