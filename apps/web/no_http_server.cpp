// In place of http_server.cpp where its library is not installed.

#include "apps/web/http_server.h"

#include "apps/common/failure.h"

namespace tolvarin::ondrel::client {

class HttpServer::Daemon {};

// NOLINTNEXTLINE(performance-unnecessary-value-param): the interface takes it by value
HttpServer::HttpServer(const FeedAddress& /*address*/, Answering /*answering*/) {
    throw Failure("this program was built without libmicrohttpd, which --serve needs (Debian: "
                  "libmicrohttpd-dev)");
}

HttpServer::~HttpServer() = default;

bool canServeHttp() {
    return false;
}

} // namespace tolvarin::ondrel::client
