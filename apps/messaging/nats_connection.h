#pragma once

#include "apps/messaging/message_server.h"

#include <chrono>
#include <functional>
#include <memory>
#include <nats/nats.h>
#include <nlohmann/json_fwd.hpp>
#include <optional>
#include <string>
#include <string_view>

/// The only files that know the library for messages are those that include this one.
namespace tolvarin::ondrel::client {

/// A message that came in.
class NatsMessage {
public:
    explicit NatsMessage(natsMsg* message) : _message(message) {}

    std::string_view subject() const { return natsMsg_GetSubject(_message.get()); }

    /// Where an answer goes; empty if none is wanted. That of a stored message acknowledges it.
    std::string_view replyTo() const {
        const char* reply = natsMsg_GetReply(_message.get());
        return reply != nullptr ? reply : "";
    }

    std::string_view bytes() const {
        return {natsMsg_GetData(_message.get()),
                static_cast<std::size_t>(natsMsg_GetDataLength(_message.get()))};
    }

    /// Whether the server says that nobody takes what was sent.
    bool hasNoTaker() const { return natsMsg_IsNoResponders(_message.get()); }

private:
    struct Destroy {
        void operator()(natsMsg* message) const { natsMsg_Destroy(message); }
    };

    std::unique_ptr<natsMsg, Destroy> _message;
};

/// Messages to a subject, in the order in which they came.
class NatsSubscription {
public:
    explicit NatsSubscription(natsSubscription* subscription) : _subscription(subscription) {}

    /// Waits so long for the next message.
    std::optional<NatsMessage> next(std::chrono::milliseconds longest);

    /// Messages that were lost since there were too many at once.
    std::int64_t lost() const;

private:
    struct Destroy {
        void operator()(natsSubscription* one) const { natsSubscription_Destroy(one); }
    };

    std::unique_ptr<natsSubscription, Destroy> _subscription;
};

/// A connection that is made again for ever when it is lost. Only one thread may use it, but
/// another one may ask().
class NatsConnection {
public:
    enum class News { All, Errors };

    /// Does not wait until it is connected. `client` is a name for the server's lists; `report`
    /// tells what becomes of the connection, from within poll(); or only what goes wrong on it.
    /// Throws Failure.
    NatsConnection(const MessageServer& server, const std::string& client,
                   std::function<void(const std::string&)> report, News wanted = News::All);
    NatsConnection(const NatsConnection&) = delete;
    NatsConnection& operator=(const NatsConnection&) = delete;
    ~NatsConnection();

    /// Reports what happened, and gives whether it is connected. Call it often. Throws InputFailure
    /// when the server refuses this client for good.
    bool poll();

    /// Changes with each new connection.
    unsigned connections() const;

    /// A subject that only this connection uses.
    static std::string newInbox();

    /// Nothing if it cannot be made; it stays over new connections.
    std::optional<NatsSubscription> subscribe(const std::string& subject);

    /// False if the message cannot be sent now. With an `id`, the store takes only one of several
    /// messages that have it.
    bool publish(const std::string& subject, std::string_view bytes, const char* replyTo = nullptr,
                 const char* id = nullptr);

    /// Why the last message could not be sent.
    const std::string& refusal() const { return _refusal; }

    /// Waits until the server has got all, or so long.
    void flush(std::chrono::milliseconds longest);

    /// What the store (JetStream) answers to "STREAM.INFO.NAME" and the like. An answer without
    /// content means that none came; one that is null, that there is no store.
    std::optional<nlohmann::json> ask(const std::string& what, const nlohmann::json& question);

private:
    struct Events;

    std::unique_ptr<Events> _events; ///< what the threads of the library tell
    natsConnection* _connection = nullptr;
    std::string _refusal;
    std::function<void(const std::string&)> _report;
};

} // namespace tolvarin::ondrel::client
