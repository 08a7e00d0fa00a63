// In place of feeds.cpp and broadcast.cpp where Asio is not installed.

#include "apps/network/broadcast.h"
#include "apps/network/feeds.h"

#include "apps/common/failure.h"

namespace tolvarin::ondrel::client {

namespace {

constexpr const char* reason = "this program was built without Asio, which network connections "
                               "need (Debian: libasio-dev)";

} // namespace

bool canConnect() {
    return false;
}

class Feeds::Network {};

Feeds::Feeds(const std::vector<std::string>& /*names*/, ReceiverCounter::Kind /*counter*/,
             const SourceEvents& /*events*/) {
    throw Failure(reason);
}

Feeds::~Feeds() = default;

ReplySource::Got Feeds::next(Reply& /*reply*/) {
    return Got::End;
}

SourceCounts Feeds::counts() const {
    return {};
}

std::vector<SourceState> Feeds::states() const {
    return {};
}

class Broadcast::Server {};

// NOLINTBEGIN(performance-unnecessary-value-param): the interface takes it by value
Broadcast::Broadcast(const FeedAddress& /*address*/,
                     std::function<void(const std::string&)> /*report*/) {
    throw Failure(reason);
}
// NOLINTEND(performance-unnecessary-value-param)

Broadcast::~Broadcast() = default;

void Broadcast::send(std::string_view /*bytes*/) {}

void Broadcast::serve(std::chrono::steady_clock::time_point /*until*/) {}

void Broadcast::poll() {}

std::size_t Broadcast::clients() const {
    return 0;
}

} // namespace tolvarin::ondrel::client
