// In place of the other sources where libnats is not installed.

#include "apps/messaging/aircraft_publisher.h"
#include "apps/messaging/aircraft_reports.h"
#include "apps/messaging/message_server.h"
#include "apps/messaging/network_replies.h"
#include "apps/messaging/reply_publisher.h"

#include "apps/common/failure.h"

namespace tolvarin::ondrel::client {

namespace {

constexpr const char* reason = "this program was built without libnats, which message servers need "
                               "(Debian: libnats-dev)";

} // namespace

bool canMessage() {
    return false;
}

class ReplyPublisher::Sending {};

// NOLINTBEGIN(performance-unnecessary-value-param): the interface takes it by value
ReplyPublisher::ReplyPublisher(const MessageServer& /*server*/, const PublisherOptions& /*options*/,
                               std::function<void(const std::string&)> /*report*/) {
    throw Failure(reason);
}
// NOLINTEND(performance-unnecessary-value-param)

ReplyPublisher::~ReplyPublisher() = default;

void ReplyPublisher::add(const GradedReply& /*reply*/, u32 /*address*/) {}

void ReplyPublisher::poll() {}

bool ReplyPublisher::hasEnded() const {
    return true;
}

bool ReplyPublisher::isFull() const {
    return false;
}

void ReplyPublisher::finish(std::chrono::milliseconds /*longest*/) {}

PublisherCounts ReplyPublisher::counts() const {
    return {};
}

class NetworkReplies::Worker {};

NetworkReplies::NetworkReplies(const WorkerOptions& /*options*/, const SourceEvents& /*events*/) {
    throw Failure(reason);
}

NetworkReplies::~NetworkReplies() = default;

ReplySource::Got NetworkReplies::next(Reply& /*reply*/) {
    return Got::End;
}

SourceCounts NetworkReplies::counts() const {
    return {};
}

std::vector<SourceState> NetworkReplies::states() const {
    return {};
}

class AircraftPublisher::Sending {};

// NOLINTBEGIN(performance-unnecessary-value-param): the interface takes it by value
AircraftPublisher::AircraftPublisher(const MessageServer& /*server*/, const std::string& /*worker*/,
                                     std::function<void(const std::string&)> /*report*/) {
    throw Failure(reason);
}
// NOLINTEND(performance-unnecessary-value-param)

AircraftPublisher::~AircraftPublisher() = default;

void AircraftPublisher::show(const std::vector<TrackedAircraft>& /*aircraft*/,
                             const Showing& /*showing*/, const TrackHistory& /*history*/) {}

bool AircraftPublisher::poll() {
    return true;
}

class AircraftReports::Reading {};

AircraftReports::AircraftReports(const MessageServer& /*server*/, const SourceEvents& /*events*/) {
    throw Failure(reason);
}

AircraftReports::~AircraftReports() = default;

std::optional<TrackedAircraft> AircraftReports::next() {
    return std::nullopt;
}

SourceState AircraftReports::state() const {
    return {};
}

} // namespace tolvarin::ondrel::client
