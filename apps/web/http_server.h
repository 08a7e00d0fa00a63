#pragma once

#include "apps/network/feed_address.h"

#include <chrono>
#include <functional>
#include <memory>
#include <string>

namespace tolvarin::ondrel::client {

/// What a server sends back.
struct HttpAnswer {
    unsigned status = 200;
    std::string type = "text/plain; charset=utf-8"; ///< of the body
    std::shared_ptr<const std::string> body;
    bool isPacked = false;     ///< the body is gzip data
    std::string allowedOrigin; ///< whose scripts may read it beside the server's own, * for all
};

struct HttpRequest {
    std::string path;
    bool takesGzip;
};

/// Answers GET and HEAD over HTTP/1.1, in a thread of its own. Connections, their memory, and the
/// time in which nothing moves are limited; a client that is slow delays no other. Where there are
/// more connections, the one whose last request is longest ago is closed.
class HttpServer {
public:
    using Answering = std::function<HttpAnswer(const HttpRequest&)>;

    static constexpr unsigned mostConnections = 300;
    static constexpr unsigned connectionMemory = 16384;   ///< bytes for a request and its headers
    static constexpr unsigned longestPause = 30;          ///< seconds in which nothing moves
    static constexpr std::chrono::seconds longestUse{60}; ///< from a request to the next one

    /// `answering` is called by the server's thread. Throws Failure if the address cannot be
    /// served; port 0 is any that is free.
    HttpServer(const FeedAddress& address, Answering answering);
    HttpServer(const HttpServer&) = delete;
    HttpServer& operator=(const HttpServer&) = delete;
    ~HttpServer();

    /// "127.0.0.1:8080".
    const std::string& address() const { return _address; }

private:
    class Daemon;

    std::string _address;
    std::unique_ptr<Daemon> _daemon;
};

/// Whether the program was built with an HTTP library. Without it, the server throws Failure.
bool canServeHttp();

} // namespace tolvarin::ondrel::client
