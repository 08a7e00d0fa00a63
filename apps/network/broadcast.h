#pragma once

#include "apps/network/feed_address.h"

#include <chrono>
#include <cstddef>
#include <functional>
#include <memory>
#include <string>
#include <string_view>

namespace tolvarin::ondrel::client {

/// Sends the same bytes to every client that connects to an address, in the thread of its owner. A
/// client that does not take them loses its connection when a megabyte waits for it; so none delays
/// the others. At most 100 clients are served, while serve() or poll() run.
class Broadcast {
public:
    static constexpr std::size_t mostWaiting = 1U << 20U; ///< bytes for one client
    static constexpr std::size_t mostClients = 100;

    /// Throws Failure if the address cannot be served; port 0 is any that is free. `report` tells
    /// the address, and of clients that come and go.
    Broadcast(const FeedAddress& address, std::function<void(const std::string&)> report);
    Broadcast(const Broadcast&) = delete;
    Broadcast& operator=(const Broadcast&) = delete;
    ~Broadcast();

    /// Gives the bytes to all clients that are connected now.
    void send(std::string_view bytes);

    /// Serves the clients until that time, or until an interruption.
    void serve(std::chrono::steady_clock::time_point until);

    /// Does for the clients what can be done now, without waiting.
    void poll();

    std::size_t clients() const;

private:
    class Server;

    std::unique_ptr<Server> _server;
};

} // namespace tolvarin::ondrel::client
