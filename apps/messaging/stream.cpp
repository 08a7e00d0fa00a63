#include "apps/messaging/stream.h"

#include "apps/messaging/aircraft_message.h"

#include <algorithm>
#include <charconv>
#include <cstdint>

namespace tolvarin::ondrel::client {

namespace {

using nlohmann::json;

constexpr std::string_view replies = "ondrel.v1.replies.";
constexpr std::int64_t second = 1000000000; // the store counts nanoseconds
constexpr std::int64_t minute = 60 * second;
constexpr std::int64_t mebibyte = std::int64_t{1} << 20U;

enum StoreError : int {
    NotEnabledForAccount = 10039,
    NoStream = 10059,
    NotEnabled = 10076,
};

/// A value in the error of an answer; null if there is none.
const json* errorValue(const json& answer, const char* key) {
    const auto error = answer.find("error");
    if (error == answer.end() || !error->is_object()) {
        return nullptr;
    }
    const auto found = error->find(key);
    return found != error->end() ? &*found : nullptr;
}

int errorCode(const json& answer) {
    const json* code = errorValue(answer, "err_code");
    return code != nullptr && code->is_number_integer() ? code->get<int>() : 0;
}

u64 numberAt(const json& object, const json::json_pointer& place) {
    const bool isThere = object.is_object() && object.contains(place);
    return isThere && object[place].is_number_unsigned() ? object[place].get<u64>() : 0;
}

StreamAnswer openStream(NatsConnection& server, const json& settings) {
    const std::string name = settings.at("name");
    std::string question = "STREAM.INFO." + name;
    auto answer = server.ask(question, json());
    if (answer && errorCode(*answer) == NoStream) {
        question = "STREAM.CREATE." + name;
        answer = server.ask(question, settings);
    }
    if (!answer) {
        return {StreamState::Unknown,
                "the store does not answer; may this user ask $JS.API." + question + "?"};
    }
    const int code = errorCode(*answer);
    if (answer->is_null() || code == NotEnabled || code == NotEnabledForAccount) {
        return {StreamState::NoStore, ""};
    }
    if (answer->contains("error")) {
        return {StreamState::Unknown, "the store says: " + storeError(*answer)};
    }
    return {StreamState::Ready, ""};
}

} // namespace

const std::string noStoreText =
    "the server has no store (JetStream): what is lost on the way stays lost";
const std::string replyStream = "ONDREL_REPLIES";
const std::string aircraftStream = "ONDREL_AIRCRAFT";

std::string replySubject(unsigned partition) {
    return std::string(replies) + std::to_string(partition);
}

std::string storeError(const json& answer) {
    const json* description = errorValue(answer, "description");
    return description != nullptr && description->is_string() ? description->get<std::string>()
                                                              : answer.dump();
}

std::optional<unsigned> partitionOfSubject(std::string_view subject) {
    const std::string_view digits = subject.substr(std::min(subject.size(), replies.size()));
    unsigned partition = 0;
    const auto result = std::from_chars(digits.data(), digits.data() + digits.size(), partition);
    const bool isNumber = result.ec == std::errc() && result.ptr == digits.data() + digits.size();
    return subject.substr(0, replies.size()) == replies && isNumber ? std::optional(partition)
                                                                    : std::nullopt;
}

ConsumerAnswer makeConsumer(NatsConnection& server, const std::string& command,
                            const std::string& stream, const json& settings) {
    const auto answer = server.ask(command, {{"stream_name", stream}, {"config", settings}});
    if (!answer || answer->is_null() || answer->contains("error")) {
        return {{},
                "the store makes no consumer: " +
                    (answer && !answer->is_null() ? storeError(*answer) : "no answer")};
    }
    return {*answer, ""};
}

u64 deliveredUpTo(const json& consumer) {
    return numberAt(consumer, "/delivered/stream_seq"_json_pointer);
}

u64 waitingIn(const json& consumer) {
    return numberAt(consumer, "/num_pending"_json_pointer);
}

bool isTaken(const json& consumer) {
    const auto found = consumer.find("push_bound");
    return found != consumer.end() && found->is_boolean() && found->get<bool>();
}

StreamAnswer openReplyStream(NatsConnection& server) {
    return openStream(server, {{"name", replyStream},
                               {"subjects", {"ondrel.v1.replies.*"}},
                               {"retention", "limits"},
                               {"storage", "file"},
                               {"discard", "old"},
                               {"max_age", 10 * minute},
                               {"max_bytes", 1024 * mebibyte},
                               {"duplicate_window", 2 * minute}});
}

StreamAnswer openAircraftStream(NatsConnection& server) {
    return openStream(server, {{"name", aircraftStream},
                               {"subjects", {allAircraftSubjects()}},
                               {"retention", "limits"},
                               {"storage", "file"},
                               {"discard", "old"},
                               {"max_age", 5 * minute},
                               {"max_bytes", 256 * mebibyte},
                               {"max_msgs_per_subject", 1}});
}

} // namespace tolvarin::ondrel::client
