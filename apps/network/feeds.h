#pragma once

#include "apps/input/reply_source.h"
#include "apps/network/feed_address.h"

#include <ondrel/types.h>

#include <memory>
#include <string>
#include <vector>

namespace tolvarin::ondrel::client {

/// Whether the program was built with what connections need. Without it, Feeds and Broadcast throw
/// Failure.
bool canConnect();

/// Replies of one or several feeds over TCP, and of recordings that are played beside them, each at
/// its own speed. A reply has the time of its arrival (ArrivalClock).
///
/// A feed that fails is connected again after a pause, which grows from 1 to 60 seconds and starts
/// anew when a reply came. One of which nothing came for two minutes counts as failed. Each feed
/// has one buffer, of which all replies are taken before it gets more. So no feed blocks another
/// one, and none grows the memory.
class Feeds final : public ReplySource {
public:
    /// Each name is one for feedAddress(), or a file with stamps. Throws Failure if a file cannot
    /// be opened. `report` tells what became of the connections.
    Feeds(const std::vector<std::string>& names, ReceiverCounter::Kind counter,
          const SourceEvents& events);
    ~Feeds() override;

    Got next(Reply& reply) override;
    const std::string& name() const override { return _name; }
    SourceCounts counts() const override;
    std::vector<SourceState> states() const override;

private:
    class Network;

    std::unique_ptr<Network> _network;
    std::string _name;
};

} // namespace tolvarin::ondrel::client
