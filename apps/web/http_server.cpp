#include "apps/web/http_server.h"

#include "apps/common/failure.h"

#include <algorithm>
#include <arpa/inet.h>
#include <array>
#include <chrono>
#include <cstring>
#include <exception>
#include <microhttpd.h>
#include <netdb.h>
#include <netinet/in.h>
#include <string_view>
#include <strings.h>
#include <sys/socket.h>
#include <utility>
#include <vector>

namespace tolvarin::ondrel::client {

namespace {

using Body = std::shared_ptr<const std::string>;

/// Scripts come from the server alone. Pages carry their styles.
constexpr std::pair<const char*, const char*> headers[] = {
    {"Content-Security-Policy",
     "default-src 'none'; script-src 'self'; style-src 'unsafe-inline'; connect-src 'self'; "
     "base-uri 'none'; form-action 'none'; frame-ancestors 'none'"},
    {"X-Content-Type-Options", "nosniff"},
    {"Referrer-Policy", "no-referrer"},
    {"Cache-Control", "no-store"},
};

bool isReading(std::string_view method) {
    return method == "GET" || method == "HEAD";
}

/// No path needs escapes, and an escaped zero would end it.
extern "C" std::size_t leaveEscapes(void* /*self*/, MHD_Connection* /*connection*/, char* text) {
    return std::strlen(text);
}

extern "C" void release(void* body) {
    delete static_cast<Body*>(body);
}

MHD_Response* responseOf(const HttpAnswer& answer) {
    // The library only reads the bytes.
    char* bytes = const_cast<char*>(answer.body->data()); // NOLINT(*-const-cast)
    MHD_Response* response = MHD_create_response_from_buffer_with_free_callback_cls(
        answer.body->size(), bytes, release, new Body(answer.body));
    for (const auto& [name, value] : headers) {
        MHD_add_response_header(response, name, value);
    }
    MHD_add_response_header(response, MHD_HTTP_HEADER_CONTENT_TYPE, answer.type.c_str());
    MHD_add_response_header(response, MHD_HTTP_HEADER_VARY, MHD_HTTP_HEADER_ACCEPT_ENCODING);
    if (answer.isPacked) {
        MHD_add_response_header(response, MHD_HTTP_HEADER_CONTENT_ENCODING, "gzip");
    }
    if (!answer.allowedOrigin.empty()) {
        MHD_add_response_header(response, MHD_HTTP_HEADER_ACCESS_CONTROL_ALLOW_ORIGIN,
                                answer.allowedOrigin.c_str());
    }
    if (answer.status == MHD_HTTP_METHOD_NOT_ALLOWED) {
        MHD_add_response_header(response, MHD_HTTP_HEADER_ALLOW, "GET, HEAD");
    }
    return response;
}

HttpAnswer failed(unsigned status, const std::string& text) {
    HttpAnswer answer;
    answer.status = status;
    answer.body = std::make_shared<const std::string>(text);
    return answer;
}

bool takesGzip(MHD_Connection* connection) {
    const char* value =
        MHD_lookup_connection_value(connection, MHD_HEADER_KIND, MHD_HTTP_HEADER_ACCEPT_ENCODING);
    return value != nullptr && std::strstr(value, "gzip") != nullptr;
}

/// Such an address is reached from this machine alone.
bool isLoopback(const addrinfo& address) {
    std::array<char, NI_MAXHOST> text{};
    ::getnameinfo(address.ai_addr, address.ai_addrlen, text.data(), text.size(), nullptr, 0,
                  NI_NUMERICHOST);
    const std::string_view number = text.data();
    return number.substr(0, 4) == "127." || number == "::1";
}

/// Whether a Host header, with or without a port, has the name or a number for a host.
bool leadsTo(const std::string& name, const std::string& header) {
    const std::string host = header.substr(0, header.find(':'));
    in_addr number = {};
    return header[0] == '[' || ::inet_pton(AF_INET, host.c_str(), &number) == 1 ||
           ::strcasecmp(host.c_str(), name.c_str()) == 0;
}

/// Frees what getaddrinfo() gave.
struct FreeAddresses {
    void operator()(addrinfo* addresses) const { ::freeaddrinfo(addresses); }
};

} // namespace

class HttpServer::Daemon {
public:
    Daemon(const FeedAddress& address, Answering answering) : _answering(std::move(answering)) {
        const std::string what = "cannot serve " + address.host + ":" + address.port + ": ";
        addrinfo wanted = {};
        wanted.ai_socktype = SOCK_STREAM;
        wanted.ai_flags = AI_PASSIVE;
        addrinfo* found = nullptr;
        const int error =
            ::getaddrinfo(address.host.c_str(), address.port.c_str(), &wanted, &found);
        if (error != 0) {
            throw Failure(what + ::gai_strerror(error));
        }
        const std::unique_ptr<addrinfo, FreeAddresses> first(found);
        if (isLoopback(*first)) {
            _names = {"localhost", address.host};
        }
        const unsigned family = first->ai_family == AF_INET6 ? MHD_USE_IPv6 : 0;
        _daemon = MHD_start_daemon(
            MHD_USE_AUTO_INTERNAL_THREAD | family, 0, nullptr, nullptr, &Daemon::answer, this,
            MHD_OPTION_SOCK_ADDR, first->ai_addr, MHD_OPTION_CONNECTION_LIMIT,
            mostConnections + closing, MHD_OPTION_NOTIFY_CONNECTION, &noteConnection, this,
            MHD_OPTION_CONNECTION_MEMORY_LIMIT, std::size_t{connectionMemory},
            MHD_OPTION_CONNECTION_TIMEOUT, longestPause, MHD_OPTION_UNESCAPE_CALLBACK,
            &leaveEscapes, nullptr, MHD_OPTION_END);
        if (_daemon == nullptr) {
            throw Failure(what + std::strerror(errno));
        }
    }
    Daemon(const Daemon&) = delete;
    Daemon& operator=(const Daemon&) = delete;
    ~Daemon() { MHD_stop_daemon(_daemon); }

    unsigned port() const { return MHD_get_daemon_info(_daemon, MHD_DAEMON_INFO_BIND_PORT)->port; }

private:
    using Clock = std::chrono::steady_clock;

    /// When a connection was begun, or got its last request.
    struct Use {
        int socket;
        Clock::time_point time;
    };

    static constexpr unsigned closing = 50; ///< connections that were cut and are not yet gone

    static void noteConnection(void* self, MHD_Connection* connection, void** /*state*/,
                               MHD_ConnectionNotificationCode what) {
        auto& daemon = *static_cast<Daemon*>(self);
        if (what == MHD_CONNECTION_NOTIFY_STARTED) {
            daemon.noteUse(connection);
        } else {
            daemon.forget(socketOf(connection));
        }
    }

    static int socketOf(MHD_Connection* connection) {
        return MHD_get_connection_info(connection, MHD_CONNECTION_INFO_CONNECTION_FD)->connect_fd;
    }

    /// The library would let new connections wait until others have been silent for long enough,
    /// and would keep the page that a connection takes byte by byte.
    void noteUse(MHD_Connection* connection) {
        const auto now = Clock::now();
        const int socket = socketOf(connection);
        forget(socket);
        _uses.push_back({socket, now});
        while (_uses.size() > mostConnections || now - _uses.front().time > longestUse) {
            ::shutdown(_uses.front().socket, SHUT_RDWR);
            _uses.erase(_uses.begin());
        }
    }

    void forget(int socket) {
        const auto isOfIt = [socket](const Use& use) { return use.socket == socket; };
        _uses.erase(std::remove_if(_uses.begin(), _uses.end(), isOfIt), _uses.end());
    }

    /// The library calls it when it has the head of a request, for each part of the body, and at
    /// the end; `state` is null the first time.
    static MHD_Result answer(void* self, MHD_Connection* connection, const char* path,
                             const char* method, const char* /*version*/, const char* /*upload*/,
                             std::size_t* uploadSize, void** state) {
        const bool isFirst = *state == nullptr;
        *state = self;
        // An answer to the head alone ends the connection, so that its body need not be read.
        if (isReading(method) && (isFirst || *uploadSize > 0)) {
            *uploadSize = 0;
            return MHD_YES;
        }
        try {
            auto& daemon = *static_cast<Daemon*>(self);
            daemon.noteUse(connection);
            const HttpAnswer answer = daemon.answerTo(connection, path, method);
            MHD_Response* response = responseOf(answer);
            const MHD_Result result = MHD_queue_response(connection, answer.status, response);
            MHD_destroy_response(response);
            return result;
        } catch (const std::exception&) { // no exception may pass through the library
            return MHD_NO;
        }
    }

    HttpAnswer answerTo(MHD_Connection* connection, const char* path,
                        std::string_view method) const {
        const char* host =
            MHD_lookup_connection_value(connection, MHD_HEADER_KIND, MHD_HTTP_HEADER_HOST);
        if (host != nullptr && !takes(host)) {
            return failed(MHD_HTTP_FORBIDDEN,
                          "This server can be asked as " + _names.back() +
                              ", as localhost, or by a number. A proxy in front of it must send "
                              "the header Host: localhost\n");
        }
        return isReading(method) ? _answering({path, takesGzip(connection)})
                                 : failed(MHD_HTTP_METHOD_NOT_ALLOWED, "only GET and HEAD\n");
    }

    /// A foreign page whose name was made to lead to this machine must not read what is for this
    /// machine alone. Its browser sends that name.
    bool takes(const std::string& hostHeader) const {
        return _names.empty() ||
               std::any_of(_names.begin(), _names.end(), [&hostHeader](const std::string& name) {
                   return leadsTo(name, hostHeader);
               });
    }

    std::vector<Use> _uses;          ///< one of each connection, the last use at the end
    std::vector<std::string> _names; ///< the only ones that are taken; empty: all are
    Answering _answering;
    MHD_Daemon* _daemon;
};

HttpServer::HttpServer(const FeedAddress& address, Answering answering)
    : _daemon(std::make_unique<Daemon>(address, std::move(answering))) {
    const bool isNumber6 = address.host.find(':') != std::string::npos;
    _address = (isNumber6 ? "[" + address.host + "]" : address.host) + ":" +
               std::to_string(_daemon->port());
}

HttpServer::~HttpServer() = default;

bool canServeHttp() {
    return true;
}

} // namespace tolvarin::ondrel::client
