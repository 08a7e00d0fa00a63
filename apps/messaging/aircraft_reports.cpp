#include "apps/messaging/aircraft_reports.h"

#include "apps/common/interruption.h"
#include "apps/common/text.h"
#include "apps/messaging/aircraft_message.h"
#include "apps/messaging/nats_connection.h"
#include "apps/messaging/stream.h"

#include <chrono>
#include <cstdint>
#include <string>
#include <utility>

namespace tolvarin::ondrel::client {

namespace {

using std::chrono::milliseconds;
using std::chrono::seconds;
using Clock = std::chrono::steady_clock;

constexpr milliseconds longestWait(100);
constexpr milliseconds idlePause(5);
constexpr seconds betweenAttempts(2);
constexpr seconds longestSilence(30);              // then the store may have lost the consumer
constexpr std::int64_t longestUnused = 5000000000; // nanoseconds

} // namespace

class AircraftReports::Reading {
public:
    Reading(const MessageServer& server, SourceEvents events)
        : _url(server.url), _events(std::move(events)),
          _server(server, "ondrel track --view",
                  [this](const std::string& text) { report(text); }) {}

    std::optional<TrackedAircraft> next() {
        const auto end = Clock::now() + longestWait;
        for (auto now = Clock::now(); now < end; now = Clock::now()) {
            if (now >= _nextLook) {
                _nextLook = now + longestWait;
                look(now);
            }
            if (const auto message = _incoming ? _incoming->next(milliseconds(0)) : std::nullopt) {
                _nextAttempt = now + longestSilence;
                if (auto aircraft = take(*message)) {
                    return aircraft;
                }
            } else if (!pauseFor(idlePause)) {
                return std::nullopt;
            }
        }
        return std::nullopt;
    }

    SourceState state() const { return {_url, _isUp}; }

private:
    void report(const std::string& text) const { _events.report(shownName(_url) + ": " + text); }

    /// Reports a text that is not the one of the last attempt.
    void reportOnce(const std::string& text) {
        if (text != std::exchange(_said, text)) {
            report(text);
        }
    }

    /// After the connection.
    void look(Clock::time_point now) {
        _isUp = _server.poll();
        const bool isNew = _server.connections() != _connections;
        if (_isUp && (isNew || now >= _nextAttempt)) {
            _connections = _server.connections();
            _nextAttempt = now + (listen() ? longestSilence : betweenAttempts);
        }
    }

    bool listen() {
        const StreamAnswer answer = openAircraftStream(_server);
        if (answer.state == StreamState::Unknown) {
            reportOnce(answer.reason);
            return false;
        }
        if (answer.state == StreamState::Ready) {
            return consume();
        }
        reportOnce("the server has no store (JetStream): an aircraft shows when it is reported "
                   "next");
        _incoming = _server.subscribe(allAircraftSubjects());
        return _incoming.has_value();
    }

    /// Makes a consumer, which begins with the last report of each aircraft. The store removes the
    /// one before when nobody listens to it.
    bool consume() {
        const std::string inbox = NatsConnection::newInbox();
        auto incoming = _server.subscribe(inbox);
        const ConsumerAnswer made =
            makeConsumer(_server, "CONSUMER.CREATE." + aircraftStream, aircraftStream,
                         {{"deliver_subject", inbox},
                          {"filter_subject", allAircraftSubjects()},
                          {"deliver_policy", "last_per_subject"},
                          {"ack_policy", "none"},
                          {"inactive_threshold", longestUnused}});
        if (!incoming || made.consumer.is_null()) {
            reportOnce(made.reason);
            return false;
        }
        _incoming = std::move(incoming);
        reportOnce("the store has the last report of each aircraft");
        return true;
    }

    std::optional<TrackedAircraft> take(const NatsMessage& message) const {
        auto aircraft = aircraftOfMessage(message.subject(), message.bytes());
        if (!aircraft) {
            _events.unreadable(std::string(message.subject()), "it is no report of that aircraft");
        }
        return aircraft;
    }

    std::string _url;
    SourceEvents _events;
    NatsConnection _server;
    bool _isUp = false;
    unsigned _connections = 0; ///< of the server, when it was asked
    Clock::time_point _nextLook;
    Clock::time_point _nextAttempt;
    std::optional<NatsSubscription> _incoming;
    std::string _said;
};

AircraftReports::AircraftReports(const MessageServer& server, const SourceEvents& events)
    : _reading(std::make_unique<Reading>(server, events)) {}

AircraftReports::~AircraftReports() = default;

std::optional<TrackedAircraft> AircraftReports::next() {
    return _reading->next();
}

SourceState AircraftReports::state() const {
    return _reading->state();
}

} // namespace tolvarin::ondrel::client
