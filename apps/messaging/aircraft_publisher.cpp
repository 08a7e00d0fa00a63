#include "apps/messaging/aircraft_publisher.h"

#include "apps/json/report_json.h"
#include "apps/messaging/aircraft_message.h"
#include "apps/messaging/nats_connection.h"
#include "apps/messaging/stream.h"

#include <chrono>
#include <condition_variable>
#include <exception>
#include <mutex>
#include <thread>
#include <utility>

namespace tolvarin::ondrel::client {

namespace {

using Clock = std::chrono::steady_clock;

constexpr std::chrono::milliseconds betweenPolls(100);
constexpr std::chrono::seconds betweenQuestions(10); // to a store that did not answer
constexpr std::chrono::seconds betweenChecks(60);    // of a stream that someone may remove

} // namespace

/// The thread that sends.
class AircraftPublisher::Sending {
public:
    Sending(const MessageServer& server, const std::string& client)
        : _server(
              server, client, [this](const std::string& text) { tell(text); },
              NatsConnection::News::Errors),
          _thread([this] { run(); }) {}
    Sending(const Sending&) = delete;
    Sending& operator=(const Sending&) = delete;

    ~Sending() {
        {
            const std::lock_guard<std::mutex> lock(_mutex);
            _ends = true;
        }
        _changed.notify_one();
        _thread.join();
    }

    /// The number of the connection, from 1, if what is given now is sent at once; otherwise 0.
    unsigned ready() {
        const std::lock_guard<std::mutex> lock(_mutex);
        return _batch.empty() ? _connection : 0;
    }

    void send(std::vector<TrackedAircraft> aircraft) {
        {
            const std::lock_guard<std::mutex> lock(_mutex);
            _batch = std::move(aircraft);
        }
        _changed.notify_one();
    }

    std::vector<std::string> news() {
        const std::lock_guard<std::mutex> lock(_mutex);
        return std::exchange(_news, {});
    }

private:
    void tell(const std::string& text) {
        const std::lock_guard<std::mutex> lock(_mutex);
        _news.push_back("reports of aircraft: " + text);
    }

    void run() {
        try {
            while (!ends()) {
                const bool isUp = _server.poll();
                if (isUp) {
                    openStream();
                }
                std::unique_lock<std::mutex> lock(_mutex);
                _connection = isUp ? _server.connections() : 0;
                _changed.wait_for(lock, betweenPolls, [this] { return _ends || !_batch.empty(); });
                const bool isGiven = !_batch.empty();
                lock.unlock();
                if (isGiven) {
                    sendBatch();
                }
            }
        } catch (const std::exception& error) {
            tell(error.what());
            const std::lock_guard<std::mutex> lock(_mutex);
            _connection = 0;
        }
    }

    bool ends() {
        const std::lock_guard<std::mutex> lock(_mutex);
        return _ends;
    }

    /// Makes the stream that keeps the reports, where there is a store.
    void openStream() {
        const auto now = Clock::now();
        if (_server.connections() == _opened && now < _nextQuestion) {
            return;
        }
        _opened = _server.connections();
        const StreamAnswer answer = openAircraftStream(_server);
        const bool isKnown = answer.state != StreamState::Unknown;
        if (!isKnown && answer.reason != std::exchange(_said, answer.reason)) {
            tell(answer.reason);
        }
        _nextQuestion = now + (isKnown ? betweenChecks : betweenQuestions);
    }

    /// Nobody else changes a batch that is not empty.
    void sendBatch() {
        for (const TrackedAircraft& aircraft : _batch) {
            if (ends() || !_server.publish(aircraftSubject(aircraft.icaoAddress()),
                                           reportMessage(aircraft))) {
                break;
            }
        }
        const std::lock_guard<std::mutex> lock(_mutex);
        _batch.clear();
    }

    std::mutex _mutex; ///< of the next members
    std::condition_variable _changed;
    std::vector<TrackedAircraft> _batch; ///< to be sent
    std::vector<std::string> _news;
    unsigned _connection = 0;
    bool _ends = false;

    // Of the thread alone.
    unsigned _opened = 0; ///< the connection with which the stream was last asked for
    Clock::time_point _nextQuestion;
    std::string _said;
    NatsConnection _server;

    std::thread _thread;
};

AircraftPublisher::AircraftPublisher(const MessageServer& server, const std::string& worker,
                                     std::function<void(const std::string&)> report)
    : _report(std::move(report)),
      _sending(std::make_unique<Sending>(server, "ondrel track " + worker + ", reports")) {}

AircraftPublisher::~AircraftPublisher() = default;

void AircraftPublisher::show(const std::vector<TrackedAircraft>& aircraft,
                             const Showing& /*showing*/, const TrackHistory& /*history*/) {
    const unsigned connection = _sending->ready();
    if (connection == 0) {
        return;
    }
    if (connection != std::exchange(_connections, connection)) {
        _turns.forget(); // what was on the way may be lost
    }
    std::vector<TrackedAircraft> chosen = _turns.next(aircraft);
    if (!chosen.empty()) {
        _sending->send(std::move(chosen));
    }
}

bool AircraftPublisher::poll() {
    for (const std::string& text : _sending->news()) {
        _report(text);
    }
    return true;
}

} // namespace tolvarin::ondrel::client
