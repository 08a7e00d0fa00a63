#include "apps/messaging/reply_publisher.h"

#include "apps/common/failure.h"
#include "apps/common/partition.h"
#include "apps/common/system_time.h"
#include "apps/messaging/stream.h"

#include <algorithm>
#include <charconv>
#include <future>
#include <map>
#include <optional>
#include <set>
#include <thread>
#include <utility>
#include <vector>

namespace tolvarin::ondrel::client {

namespace {

using std::chrono::milliseconds;
using std::chrono::seconds;
using Clock = std::chrono::steady_clock;

constexpr milliseconds shortestPause(5);    // between two polls
constexpr seconds longestAnswer(5);         // then a batch is sent again
constexpr seconds betweenQuestions(5);      // to a server whose store is not known
constexpr std::size_t mostUnanswered = 256; // batches

} // namespace

class ReplyPublisher::Sending {
public:
    Sending(const MessageServer& server, PublisherOptions options,
            std::function<void(const std::string&)> report)
        : _options(std::move(options)), _report(std::move(report)),
          _server(server, "ondrel feed " + _options.site, _report),
          _inbox(NatsConnection::newInbox()), _filling(_options.partitions) {}

    void add(const GradedReply& reply, u32 address) {
        const unsigned partition = partitionOf(address, _options.partitions);
        Filling& filling = _filling[partition];
        if (!filling.replies.empty() && !fitsBatch(reply, filling.replies.front().stampMs)) {
            close(partition);
        }
        if (!fitsBatch(reply, reply.stampMs)) {
            ++_counts.dropped;
            return;
        }
        if (filling.replies.empty()) {
            filling.begun = Clock::now();
        }
        filling.replies.push_back(reply);
        if (filling.replies.size() >= _options.batchSize) {
            close(partition);
        }
    }

    void poll() {
        const auto now = Clock::now();
        const auto pause = now - _lastPoll; // the next one may be as long
        if (pause < shortestPause) {
            return;
        }
        _lastPoll = now;
        for (unsigned i = 0; i < _options.partitions; ++i) {
            const Filling& filling = _filling[i];
            const bool isDue = now - filling.begun + pause > _options.longestBatch;
            if (!filling.replies.empty() && isDue) {
                close(i);
            }
        }
        try {
            if (!_hasEnded && _server.poll() && findStore(now)) {
                takeAnswers();
                send(now);
                sayRoom();
            }
        } catch (const InputFailure& failure) {
            _hasEnded = true;
            _report(failure.what());
        }
    }

    bool hasEnded() const { return _hasEnded; }

    bool isFull() const { return _bytes + ReplyBatch::mostBytes > _options.backlog; }

    void finish(milliseconds longest) {
        const auto end = Clock::now() + longest;
        for (unsigned i = 0; i < _options.partitions; ++i) {
            if (!_filling[i].replies.empty()) {
                close(i);
            }
        }
        poll();
        while (!_backlog.empty() && !_hasEnded && Clock::now() < end) {
            std::this_thread::sleep_for(milliseconds(5));
            poll();
        }
        _server.flush(std::max(milliseconds(1),
                               std::chrono::duration_cast<milliseconds>(end - Clock::now())));
    }

    PublisherCounts counts() const {
        PublisherCounts counts = _counts;
        for (const Filling& filling : _filling) {
            counts.waiting += filling.replies.size();
        }
        for (const auto& [number, batch] : _backlog) {
            counts.waiting += batch.replies;
        }
        return counts;
    }

private:
    /// A batch to which replies are still added.
    struct Filling {
        std::vector<GradedReply> replies;
        Clock::time_point begun;
    };
    struct Batch {
        unsigned partition;
        std::size_t replies;
        std::string bytes;
        std::optional<Clock::time_point> sent; ///< for the last time
    };

    void close(unsigned partition) {
        ReplyBatch batch{_options.site, _started, ++_number,
                         std::move(_filling[partition].replies)};
        Batch made{partition, batch.replies.size(), batchBytes(batch), std::nullopt};
        batch.replies.clear();
        _filling[partition].replies = std::move(batch.replies); // keeps its memory
        _bytes += made.bytes.size();
        _backlog.emplace_hint(_backlog.end(), _number, std::move(made));
        while (_bytes > _options.backlog && !_backlog.empty()) {
            _counts.dropped += _backlog.begin()->second.replies;
            remove(_backlog.begin());
            if (!std::exchange(_saidFull, true)) {
                _report("the backlog is full; the oldest replies are dropped");
            }
        }
    }

    void sayRoom() {
        if (_bytes <= _options.backlog / 2 && std::exchange(_saidFull, false)) {
            _report("the backlog has room again; " + std::to_string(_counts.dropped) +
                    " replies were dropped so far");
        }
    }

    std::map<u64, Batch>::iterator remove(std::map<u64, Batch>::iterator batch) {
        _bytes -= batch->second.bytes.size();
        return _backlog.erase(batch);
    }

    /// Whether it is known what the server keeps.
    bool findStore(Clock::time_point now) {
        if (_server.connections() != _connections) {
            _connections = _server.connections();
            _store = StreamState::Unknown;
            _nextQuestion = now;
        }
        if (_store == StreamState::Unknown && now >= _nextQuestion) {
            if (!_question.valid()) { // in a thread, since an answer may take seconds
                _question =
                    std::async(std::launch::async, [this] { return openReplyStream(_server); });
            }
            if (_question.wait_for(milliseconds(0)) != std::future_status::ready) {
                return false;
            }
            const StreamAnswer answer = _question.get();
            _store = answer.state;
            _nextQuestion = now + betweenQuestions;
            sayStore(answer);
            beginAnew();
        }
        return _store != StreamState::Unknown;
    }

    void sayStore(const StreamAnswer& answer) {
        const std::string text = answer.state == StreamState::Ready ? "the server stores replies"
                                 : answer.state == StreamState::NoStore ? noStoreText
                                                                        : answer.reason;
        if (text != std::exchange(_saidStore, text)) {
            _report(text);
        }
    }

    /// Sends what has no answer over this connection again.
    void beginAnew() {
        for (auto& [number, batch] : _backlog) {
            batch.sent.reset();
        }
        if (_store == StreamState::Ready && !_answers) {
            _answers = _server.subscribe(_inbox + ".*");
        }
    }

    void takeAnswers() {
        while (_answers) {
            const auto answer = _answers->next(milliseconds(0));
            if (!answer) {
                return;
            }
            take(*answer);
        }
    }

    void take(const NatsMessage& answer) {
        if (answer.hasNoTaker()) { // the stream has gone
            _store = StreamState::Unknown;
            return;
        }
        const auto json = nlohmann::json::parse(answer.bytes(), nullptr, false);
        if (!json.is_object() || json.contains("error")) {
            sayError("the store does not take a batch: " +
                     (json.is_object() ? storeError(json) : "its answer is not JSON"));
            return; // it is sent again
        }
        const std::string_view subject = answer.subject();
        const std::string_view digits = subject.substr(subject.rfind('.') + 1);
        u64 number = 0;
        std::from_chars(digits.data(), digits.data() + digits.size(), number);
        const auto found = _backlog.find(number);
        if (found != _backlog.end()) {
            noteSent(found->second);
            remove(found);
        }
    }

    /// Each text once.
    void sayError(const std::string& text) {
        if (_saidErrors.size() < mostErrors && _saidErrors.insert(text).second) {
            _report(text);
        }
    }

    void noteSent(const Batch& batch) {
        _counts.sent += batch.replies;
        ++_counts.batches;
    }

    void send(Clock::time_point now) {
        std::size_t unanswered = 0;
        for (auto one = _backlog.begin(); one != _backlog.end() && unanswered < mostUnanswered;) {
            Batch& batch = one->second;
            if (!batch.sent || now - *batch.sent > longestAnswer) {
                if (!publish(one->first, batch)) {
                    sayError("a batch cannot be sent: " + _server.refusal());
                    ++unanswered;
                    ++one;
                    continue;
                }
                batch.sent = now;
            }
            if (_store == StreamState::NoStore) {
                noteSent(batch);
                one = remove(one);
            } else {
                ++unanswered;
                ++one;
            }
        }
    }

    bool publish(u64 number, const Batch& batch) {
        const std::string subject = replySubject(batch.partition);
        if (_store == StreamState::NoStore) {
            return _server.publish(subject, batch.bytes);
        }
        const std::string digits = std::to_string(number);
        return _server.publish(
            subject, batch.bytes, (_inbox + '.' + digits).c_str(),
            (_options.site + '-' + std::to_string(_started) + '-' + digits).c_str());
    }

    static constexpr std::size_t mostErrors = 20;

    PublisherOptions _options;
    std::function<void(const std::string&)> _report;
    NatsConnection _server;
    std::string _inbox; ///< where the store says what it has
    std::optional<NatsSubscription> _answers;
    StreamState _store = StreamState::Unknown;
    std::future<StreamAnswer> _question; ///< while it is not known
    unsigned _connections = 0;           ///< that were made when the store was looked for
    Clock::time_point _nextQuestion;
    Clock::time_point _lastPoll;
    std::vector<Filling> _filling; ///< by partition
    u64 _started = systemMilliseconds();
    u64 _number = 0; ///< of the last batch
    std::map<u64, Batch> _backlog;
    std::size_t _bytes = 0; ///< of the backlog
    PublisherCounts _counts;
    std::string _saidStore;
    std::set<std::string> _saidErrors;
    bool _saidFull = false;
    bool _hasEnded = false;
};

bool canMessage() {
    return true;
}

ReplyPublisher::ReplyPublisher(const MessageServer& server, const PublisherOptions& options,
                               std::function<void(const std::string&)> report)
    : _sending(std::make_unique<Sending>(server, options, std::move(report))) {}

ReplyPublisher::~ReplyPublisher() = default;

void ReplyPublisher::add(const GradedReply& reply, u32 address) {
    _sending->add(reply, address);
}

void ReplyPublisher::poll() {
    _sending->poll();
}

bool ReplyPublisher::hasEnded() const {
    return _sending->hasEnded();
}

bool ReplyPublisher::isFull() const {
    return _sending->isFull();
}

void ReplyPublisher::finish(std::chrono::milliseconds longest) {
    _sending->finish(longest);
}

PublisherCounts ReplyPublisher::counts() const {
    return _sending->counts();
}

} // namespace tolvarin::ondrel::client
