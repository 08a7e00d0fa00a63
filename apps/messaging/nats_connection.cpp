#include "apps/messaging/nats_connection.h"

#include "apps/common/failure.h"

#include <condition_variable>
#include <cstdint>
#include <fstream>
#include <mutex>
#include <nlohmann/json.hpp>
#include <set>
#include <utility>
#include <vector>

namespace tolvarin::ondrel::client {

namespace {

using std::chrono::milliseconds;
using std::chrono::seconds;

constexpr std::int64_t connectingMs = 5000;
constexpr std::int64_t betweenConnectsMs = 1000;
constexpr std::int64_t betweenPingsMs = 10000;
constexpr std::int64_t longestWriteMs = 5000;
constexpr std::int64_t answerMs = 2000;
constexpr int mostPingsOut = 2;
constexpr std::int64_t mostPending = std::int64_t{256} << 20U; // bytes that wait to be taken
constexpr std::size_t longestSecret = 4096;

void throwIf(natsStatus status, const std::string& what) {
    if (status != NATS_OK) {
        throw Failure("cannot " + what + ": " + natsStatus_GetText(status));
    }
}

struct DestroyOptions {
    void operator()(natsOptions* options) const { natsOptions_Destroy(options); }
};
using Options = std::unique_ptr<natsOptions, DestroyOptions>;

struct DestroyMessage {
    void operator()(natsMsg* message) const { natsMsg_Destroy(message); }
};
using Message = std::unique_ptr<natsMsg, DestroyMessage>;

/// Empty if it is not known. The library's own text is not read: another thread may be changing it.
std::string lastError(natsConnection* connection) {
    const char* unsafeText = nullptr;
    const natsStatus status = natsConnection_GetLastError(connection, &unsafeText);
    return status != NATS_OK ? natsStatus_GetText(status) : "";
}

/// " (TEXT)"; nothing of an empty text.
std::string inBrackets(const std::string& text) {
    return text.empty() ? "" : " (" + text + ")";
}

/// A credentials file as the server's tools make it has several lines and PEM marks; any other is
/// USER:PASSWORD.
void setCredentials(natsOptions* options, const std::string& path) {
    std::ifstream file(path);
    std::string line;
    std::getline(file, line);
    if (!file && line.empty()) {
        throw Failure("cannot read the credentials in " + path);
    }
    if (line.compare(0, 5, "-----") == 0) {
        throwIf(natsOptions_SetUserCredentialsFromFiles(options, path.c_str(), nullptr),
                "use the credentials in " + path);
        return;
    }
    if (!line.empty() && line.back() == '\r') {
        line.pop_back();
    }
    const std::size_t colon = line.find(':');
    if (colon == std::string::npos || line.size() > longestSecret) {
        throw Failure("the first line of " + path + " is not USER:PASSWORD");
    }
    throwIf(natsOptions_SetUserInfo(options, line.substr(0, colon).c_str(),
                                    line.substr(colon + 1).c_str()),
            "use the credentials in " + path);
}

void setSecurity(natsOptions* options, const MessageServer& server) {
    if (server.credentials) {
        setCredentials(options, *server.credentials);
    }
    if (server.authorities || server.certificate) {
        throwIf(natsOptions_SetSecure(options, true), "use TLS");
    }
    if (server.authorities) {
        throwIf(natsOptions_LoadCATrustedCertificates(options, server.authorities->c_str()),
                "use the certificates in " + *server.authorities);
    }
    if (server.certificate) {
        throwIf(natsOptions_LoadCertificatesChain(options, server.certificate->c_str(),
                                                  server.key ? server.key->c_str() : nullptr),
                "use the certificate in " + *server.certificate);
    }
}

} // namespace

std::optional<NatsMessage> NatsSubscription::next(milliseconds longest) {
    natsMsg* message = nullptr;
    if (natsSubscription_NextMsg(&message, _subscription.get(), longest.count()) != NATS_OK) {
        return std::nullopt;
    }
    return NatsMessage(message);
}

std::int64_t NatsSubscription::lost() const {
    std::int64_t lost = 0;
    natsSubscription_GetDropped(_subscription.get(), &lost);
    return lost;
}

/// The threads of the library call these functions.
struct NatsConnection::Events {
    std::mutex mutex; ///< of all
    std::condition_variable changed;
    std::vector<std::string> news;
    std::set<std::string> errors; ///< that were reported since the connection was made
    bool tellsState = true;       ///< of the connection
    unsigned connections = 0;
    bool isConnected = false;
    bool isClosed = false;
    std::string whyRefused; ///< at the first try

    static void connected(natsConnection* /*connection*/, void* events) {
        static_cast<Events*>(events)->note(true, "connected");
    }

    static void disconnected(natsConnection* connection, void* events) {
        static_cast<Events*>(events)->note(false, "the connection was lost" +
                                                      inBrackets(lastError(connection)) +
                                                      "; trying again each second");
    }

    static void failed(natsConnection* /*connection*/, natsSubscription* /*subscription*/,
                       natsStatus error, void* events) {
        natsStatus status = NATS_OK;
        const char* text = nats_GetLastError(&status); // of this thread
        static_cast<Events*>(events)->noteError(text != nullptr ? text : natsStatus_GetText(error));
    }

    static void closed(natsConnection* connection, void* events) {
        auto* self = static_cast<Events*>(events);
        const std::lock_guard<std::mutex> lock(self->mutex);
        if (self->whyRefused.empty()) {
            self->whyRefused = lastError(connection);
        }
        self->isConnected = false;
        self->isClosed = true;
        self->changed.notify_all();
    }

private:
    void note(bool connectedNow, std::string text) {
        const std::lock_guard<std::mutex> lock(mutex);
        if (connectedNow == isConnected) { // the library may say it twice
            return;
        }
        if (connectedNow) {
            ++connections;
            errors.clear();
            whyRefused.clear();
        }
        if (tellsState) {
            news.push_back(std::move(text));
        }
        isConnected = connectedNow;
    }

    void noteError(const std::string& text) {
        constexpr std::size_t mostErrors = 20;
        const std::lock_guard<std::mutex> lock(mutex);
        if (errors.size() < mostErrors && errors.insert(text).second) {
            news.push_back(text);
        }
    }
};

NatsConnection::NatsConnection(const MessageServer& server, const std::string& client,
                               std::function<void(const std::string&)> report, News wanted)
    : _events(std::make_unique<Events>()), _report(std::move(report)) {
    _events->tellsState = wanted == News::All;
    natsOptions* made = nullptr;
    throwIf(natsOptions_Create(&made), "set the message library up");
    const Options options(made);
    const std::string what = "connect to " + server.url;
    setSecurity(made, server);
    for (const natsStatus status :
         {natsOptions_SetURL(made, server.url.c_str()), natsOptions_SetName(made, client.c_str()),
          natsOptions_SetTimeout(made, connectingMs), natsOptions_SetMaxReconnect(made, -1),
          natsOptions_SetReconnectWait(made, betweenConnectsMs),
          natsOptions_SetPingInterval(made, betweenPingsMs),
          natsOptions_SetMaxPingsOut(made, mostPingsOut),
          natsOptions_SetWriteDeadline(made, longestWriteMs),
          natsOptions_SetRetryOnFailedConnect(made, true, &Events::connected, _events.get()),
          natsOptions_SetReconnectedCB(made, &Events::connected, _events.get()),
          natsOptions_SetDisconnectedCB(made, &Events::disconnected, _events.get()),
          natsOptions_SetClosedCB(made, &Events::closed, _events.get()),
          natsOptions_SetErrorHandler(made, &Events::failed, _events.get())}) {
        throwIf(status, what);
    }
    const natsStatus status = natsConnection_Connect(&_connection, made);
    if (status == NATS_NOT_YET_CONNECTED) {
        const std::string reason = lastError(_connection);
        if (_events->tellsState) {
            _report((reason.empty() ? "no answer" : reason) + "; trying again each second");
        }
        const std::lock_guard<std::mutex> lock(_events->mutex);
        _events->whyRefused = reason;
        return;
    }
    throwIf(status, what);
    Events::connected(_connection, _events.get());
}

NatsConnection::~NatsConnection() {
    natsConnection_Close(_connection);
    std::unique_lock<std::mutex> lock(_events->mutex);
    const bool isClosed =
        _events->changed.wait_for(lock, seconds(5), [this] { return _events->isClosed; });
    lock.unlock();
    natsConnection_Destroy(_connection);
    if (!isClosed) {
        static_cast<void>(_events.release()); // a thread of the library may still use it
    }
}

bool NatsConnection::poll() {
    std::vector<std::string> news;
    bool isConnected = false;
    bool isClosed = false;
    std::string whyRefused;
    {
        const std::lock_guard<std::mutex> lock(_events->mutex);
        news.swap(_events->news);
        isConnected = _events->isConnected;
        isClosed = _events->isClosed;
        whyRefused = _events->whyRefused;
    }
    for (const std::string& text : news) {
        _report(text);
    }
    if (isClosed) {
        throw InputFailure("the message server ended the connection for good" +
                           inBrackets(whyRefused));
    }
    return isConnected;
}

unsigned NatsConnection::connections() const {
    const std::lock_guard<std::mutex> lock(_events->mutex);
    return _events->connections;
}

std::string NatsConnection::newInbox() {
    natsInbox* made = nullptr;
    throwIf(natsInbox_Create(&made), "make a name for answers");
    std::string name = made;
    natsInbox_Destroy(made);
    return name;
}

std::optional<NatsSubscription> NatsConnection::subscribe(const std::string& subject) {
    natsSubscription* made = nullptr;
    if (natsConnection_SubscribeSync(&made, _connection, subject.c_str()) != NATS_OK) {
        return std::nullopt;
    }
    NatsSubscription subscription(made);
    natsSubscription_SetPendingLimits(made, -1, static_cast<int>(mostPending));
    return subscription;
}

bool NatsConnection::publish(const std::string& subject, std::string_view bytes,
                             const char* replyTo, const char* id) {
    natsMsg* made = nullptr;
    if (natsMsg_Create(&made, subject.c_str(), replyTo, bytes.data(),
                       static_cast<int>(bytes.size())) != NATS_OK) {
        return false;
    }
    const Message message(made);
    natsStatus status = id != nullptr ? natsMsgHeader_Set(made, "Nats-Msg-Id", id) : NATS_OK;
    if (status == NATS_OK) {
        status = natsConnection_PublishMsg(_connection, made);
    }
    if (status != NATS_OK) {
        _refusal = natsStatus_GetText(status);
    }
    return status == NATS_OK;
}

void NatsConnection::flush(milliseconds longest) {
    natsConnection_FlushTimeout(_connection, longest.count());
}

std::optional<nlohmann::json> NatsConnection::ask(const std::string& what,
                                                  const nlohmann::json& question) {
    const std::string text = question.is_null() ? "" : question.dump();
    natsMsg* made = nullptr;
    const natsStatus status = natsConnection_RequestString(
        &made, _connection, ("$JS.API." + what).c_str(), text.c_str(), answerMs);
    const Message message(made);
    if (status == NATS_NO_RESPONDERS) {
        return nlohmann::json();
    }
    if (status != NATS_OK) {
        return std::nullopt;
    }
    const std::string_view bytes(natsMsg_GetData(made),
                                 static_cast<std::size_t>(natsMsg_GetDataLength(made)));
    nlohmann::json answer = nlohmann::json::parse(bytes, nullptr, false);
    return answer.is_object() ? std::optional(std::move(answer)) : std::nullopt;
}

} // namespace tolvarin::ondrel::client
