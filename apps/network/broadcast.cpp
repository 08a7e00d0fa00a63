#include "apps/network/broadcast.h"

#include "apps/common/failure.h"
#include "apps/common/interruption.h"

#include <algorithm>
#include <array>
#include <asio.hpp>
#include <sstream>
#include <unistd.h>
#include <utility>
#include <vector>

namespace tolvarin::ondrel::client {

namespace {

using asio::ip::tcp;

// In one poll(), so that a client that sends without end does not hold it.
constexpr unsigned mostAtOnce = 1000;

std::string nameOf(const tcp::socket& socket) {
    asio::error_code error;
    std::ostringstream name;
    name << socket.remote_endpoint(error);
    return error ? "a client" : name.str();
}

/// A connection. Each operation that runs keeps it alive.
class Client : public std::enable_shared_from_this<Client> {
public:
    explicit Client(tcp::socket socket) : _socket(std::move(socket)), _name(nameOf(_socket)) {}

    /// Sees when the client leaves. What it sends is not used.
    void watch() {
        _socket.async_read_some(
            asio::buffer(_unused),
            [self = shared_from_this()](const asio::error_code& error, std::size_t) {
                error ? self->leave() : self->watch();
            });
    }

    /// False if too much waits already.
    bool send(std::string_view bytes) {
        if (_leaving.size() + _waiting.size() + bytes.size() > Broadcast::mostWaiting) {
            return false;
        }
        _waiting += bytes;
        if (_leaving.empty()) {
            write();
        }
        return true;
    }

    void leave() {
        asio::error_code ignored;
        _socket.close(ignored);
    }

    bool isThere() const { return _socket.is_open(); }
    const std::string& name() const { return _name; }

private:
    // NOLINTBEGIN(misc-no-recursion): the handler runs when write() has long returned
    void write() {
        _leaving.swap(_waiting);
        asio::async_write(_socket, asio::buffer(_leaving),
                          [self = shared_from_this()](const asio::error_code& error, std::size_t) {
                              self->_leaving.clear();
                              if (error) {
                                  self->leave();
                              } else if (!self->_waiting.empty()) {
                                  self->write();
                              }
                          });
    }
    // NOLINTEND(misc-no-recursion)

    tcp::socket _socket;
    std::string _name;
    std::string _waiting;
    std::string _leaving; ///< what the system is taking
    std::array<char, 256> _unused{};
};

tcp::acceptor opened(asio::io_context& context, const FeedAddress& address) {
    try {
        return {context, *tcp::resolver(context).resolve(address.host, address.port).begin()};
    } catch (const std::system_error& error) {
        throw Failure("cannot serve " + address.host + ":" + address.port + ": " +
                      error.code().message());
    }
}

} // namespace

class Broadcast::Server {
public:
    Server(const FeedAddress& address, std::function<void(const std::string&)> report)
        : _report(std::move(report)), _acceptor(opened(_context, address)),
          _interruption(_context, ::dup(interruptionDescriptor())) {
        _interruption.async_wait(asio::posix::stream_descriptor::wait_read,
                                 [](const asio::error_code&) {});
        std::ostringstream served;
        served << _acceptor.local_endpoint();
        _report("serving " + served.str());
        accept();
    }

    void send(std::string_view bytes) {
        removeIf([&](Client& client) {
            if (hasLeft(client)) {
                return true;
            }
            if (!client.send(bytes)) {
                client.leave();
                _report(client.name() + ": does not take what it is sent; it is disconnected");
                return true;
            }
            return false;
        });
    }

    void poll() {
        for (unsigned i = 0; i < mostAtOnce && _context.poll_one() > 0; ++i) {
        }
        removeIf([this](const Client& client) { return hasLeft(client); });
    }

    void serve(std::chrono::steady_clock::time_point until) {
        while (!interrupted() && _context.run_one_until(until) > 0 &&
               std::chrono::steady_clock::now() < until) {
        }
    }

    std::size_t clients() const { return _clients.size(); }

private:
    template <class IsGone>
    void removeIf(IsGone isGone) {
        _clients.erase(std::remove_if(_clients.begin(), _clients.end(),
                                      [&](const auto& client) { return isGone(*client); }),
                       _clients.end());
    }

    bool hasLeft(const Client& client) const {
        if (!client.isThere()) {
            _report(client.name() + ": has left");
        }
        return !client.isThere();
    }

    void accept() {
        _acceptor.async_accept([this](const asio::error_code& error, tcp::socket socket) {
            if (!error && _clients.size() < mostClients) {
                _clients.push_back(std::make_shared<Client>(std::move(socket)));
                _clients.back()->watch();
                _report(_clients.back()->name() + ": connected");
            }
            accept();
        });
    }

    asio::io_context _context;
    std::function<void(const std::string&)> _report;
    tcp::acceptor _acceptor;
    asio::posix::stream_descriptor _interruption; ///< ends a wait
    std::vector<std::shared_ptr<Client>> _clients;
};

Broadcast::Broadcast(const FeedAddress& address, std::function<void(const std::string&)> report)
    : _server(std::make_unique<Server>(address, std::move(report))) {}

Broadcast::~Broadcast() = default;

void Broadcast::send(std::string_view bytes) {
    _server->send(bytes);
}

void Broadcast::serve(std::chrono::steady_clock::time_point until) {
    _server->serve(until);
}

void Broadcast::poll() {
    _server->poll();
}

std::size_t Broadcast::clients() const {
    return _server->clients();
}

} // namespace tolvarin::ondrel::client
