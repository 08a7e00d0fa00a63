#pragma once

#include "apps/messaging/nats_connection.h"

#include <nlohmann/json.hpp>
#include <ondrel/types.h>

#include <optional>
#include <string>
#include <string_view>

/// The streams of the store (JetStream), and the subjects that they keep. docs/many_receivers.md
/// tells what goes through them.
namespace tolvarin::ondrel::client {

/// "ondrel.v1.replies.3"
std::string replySubject(unsigned partition);

/// The partition of such a subject; nothing if it is another one.
std::optional<unsigned> partitionOfSubject(std::string_view subject);

/// What the server knows of a stream.
enum class StreamState {
    Ready,
    NoStore, ///< the server keeps nothing, so each message comes at most once
    Unknown, ///< it did not answer, or says why there is no stream
};

struct StreamAnswer {
    StreamState state;
    std::string reason; ///< why it is unknown
};

/// What is said of a server that keeps nothing.
extern const std::string noStoreText;

extern const std::string replyStream;    ///< its name
extern const std::string aircraftStream; ///< its name

/// The stream that keeps replies for ten minutes. Makes it if it is not there.
StreamAnswer openReplyStream(NatsConnection& server);

/// The stream that keeps the last report of each aircraft. Makes it if it is not there.
StreamAnswer openAircraftStream(NatsConnection& server);

/// A new consumer of a stream.
struct ConsumerAnswer {
    nlohmann::json consumer; ///< null if it cannot be made
    std::string reason;      ///< why
};

/// Makes a consumer with a command such as "CONSUMER.CREATE.STREAM".
ConsumerAnswer makeConsumer(NatsConnection& server, const std::string& command,
                            const std::string& stream, const nlohmann::json& settings);

/// Of what the store says of a consumer: the number of the last message that it delivered, 0 if
/// there is none; and how many messages wait for it.
u64 deliveredUpTo(const nlohmann::json& consumer);
u64 waitingIn(const nlohmann::json& consumer);

/// Whether a program takes what the consumer delivers.
bool isTaken(const nlohmann::json& consumer);

/// What an answer of the store says of its error.
std::string storeError(const nlohmann::json& answer);

} // namespace tolvarin::ondrel::client
