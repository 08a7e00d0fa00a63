#include "apps/messaging/network_replies.h"

#include "apps/common/interruption.h"
#include "apps/common/system_time.h"
#include "apps/common/text.h"
#include "apps/merging/reply_merger.h"
#include "apps/merging/seen_batches.h"
#include "apps/merging/site_clocks.h"
#include "apps/messaging/stored_message.h"
#include "apps/messaging/stream.h"

#include <algorithm>
#include <map>
#include <optional>
#include <set>
#include <utility>

namespace tolvarin::ondrel::client {

namespace {

using nlohmann::json;
using std::chrono::milliseconds;
using std::chrono::seconds;
using Clock = std::chrono::steady_clock;

constexpr milliseconds betweenNothings(100);
constexpr milliseconds idlePause(5);
constexpr seconds betweenAttempts(2);
constexpr seconds betweenChecks(30);         // of consumers from which nothing comes
constexpr unsigned repliesBetweenLooks = 64; // at the clock
constexpr u64 furthestAhead = 60000;         // ms, of stamps before the clock

// The store counts nanoseconds.
constexpr std::int64_t longestAcknowledging = 30000000000;
constexpr std::int64_t longestUnused = 30000000000;
constexpr int mostUnacknowledged = 1024; // batches of a partition

} // namespace

class NetworkReplies::Worker {
public:
    Worker(WorkerOptions options, SourceEvents events)
        : _options(std::move(options)), _events(std::move(events)),
          _server(_options.server, "ondrel track " + _options.name,
                  [this](const std::string& text) { report(text); }) {}

    Got next(Reply& reply) {
        acknowledge(); // the reply that was given last is in the table
        if (++_looks % repliesBetweenLooks != 0 && give(reply)) {
            return Got::Reply;
        }
        while (!interrupted()) {
            _nowMs = systemMilliseconds();
            if (Clock::now() >= _nextNothing) {
                _nextNothing = Clock::now() + betweenNothings;
                tend();
                return Got::Nothing;
            }
            if (give(reply)) {
                return Got::Reply;
            }
            receive();
        }
        return Got::End;
    }

    SourceCounts counts() const {
        SourceCounts counts;
        counts.unreadable = _unreadable;
        counts.heardElsewhere = _merger.duplicates();
        counts.ahead = _ahead;
        return counts;
    }

    SourceState state() const { return {_options.server.url, _isUp}; }

private:
    enum class Phase {
        Waiting,    ///< for the server
        Plain,      ///< there is no store
        Rebuilding, ///< reads again what the worker of the same name had
        Following,  ///< reads what that one had not
    };

    void report(const std::string& text) const {
        _events.report(shownName(_options.server.url) + ": " + text);
    }

    /// Reports a text that is not the one of the last attempt.
    void reportOnce(const std::string& text) {
        if (text != std::exchange(_said, text)) {
            report(text);
        }
    }

    /// False if no reply is due.
    bool give(Reply& reply) {
        if (!_merger.take(_merged, _nowMs)) {
            return false;
        }
        std::swap(reply.bytes, _merged.reply.bytes);
        reply.stampMs = std::max<u64>(1, _merged.reply.stampMs);
        reply.byCounter = false;
        reply.source = 0;
        reply.signalAmplitude = _merged.reply.signalAmplitude;
        reply.grade = _merged.reply.confidence;
        reply.sites = static_cast<unsigned>(_merged.sites);
        return true;
    }

    /// Does what is due ten times a second.
    void tend() {
        _isUp = _server.poll();
        for (const SiteClocks::Change& change : _clocks.changes()) {
            const std::string site = "site " + _seen.name(change.site) + ": its clock is ";
            report(site + (change.isWrong
                               ? secondsText(static_cast<u64>(std::abs(change.offsetMs))) + " s " +
                                     (change.offsetMs > 0 ? "ahead of" : "behind") +
                                     " those of other sites"
                               : "right again"));
        }
        const auto now = Clock::now();
        const bool isNew = _server.connections() != _connections;
        if (!_isUp || !(isNew || now >= _nextAttempt)) {
            return;
        }
        _connections = _server.connections();
        _nextAttempt = now + betweenAttempts;
        prepare(isNew);
    }

    void prepare(bool isNewConnection) {
        const StreamAnswer answer = openReplyStream(_server);
        if (answer.state == StreamState::Unknown) {
            reportOnce(answer.reason);
        } else if (answer.state == StreamState::NoStore) {
            beginPlain();
        } else if (_isRebuilt) {
            follow();
        } else if (isNewConnection || _phase != Phase::Rebuilding ||
                   Clock::now() - _lastMessage > betweenChecks) {
            beginRebuilding();
        }
        if (_phase != Phase::Waiting) {
            _nextAttempt = Clock::now() + betweenChecks;
        }
    }

    void beginPlain() {
        if (_phase == Phase::Plain) {
            return;
        }
        reportOnce(noStoreText);
        _incoming.clear();
        for (const unsigned partition : _options.partitions.numbers) {
            listen(replySubject(partition));
        }
        _phase = Phase::Plain;
        _isRebuilt = true;
    }

    bool listen(const std::string& subject) {
        auto subscription = _server.subscribe(subject);
        if (subscription) {
            _incoming.push_back(std::move(*subscription));
        }
        return subscription.has_value();
    }

    // -- consumers of the store --

    std::string consumerName(unsigned partition) const {
        return _options.name + "-" + std::to_string(partition);
    }

    json consumerSettings(unsigned partition, const std::string& deliverTo) const {
        const u64 back = static_cast<u64>(milliseconds(_options.rebuild).count());
        return {{"deliver_subject", deliverTo},
                {"filter_subject", replySubject(partition)},
                {"deliver_policy", "by_start_time"},
                {"opt_start_time", timeText(systemMilliseconds() - back)},
                {"ack_policy", "explicit"},
                {"ack_wait", longestAcknowledging},
                {"max_ack_pending", mostUnacknowledged}};
    }

    /// Gives what the store says of the new consumer; null if it cannot be made.
    json makeConsumer(const std::string& command, const json& settings) {
        const ConsumerAnswer answer = client::makeConsumer(_server, command, replyStream, settings);
        if (!answer.reason.empty()) {
            reportOnce(answer.reason);
        }
        return answer.consumer;
    }

    /// Reads again what came in the last minutes and was delivered before, for the table.
    void beginRebuilding() {
        _incoming.clear();
        _rebuilding.clear();
        _phase = Phase::Waiting;
        const std::string inbox = NatsConnection::newInbox();
        if (!listen(inbox)) {
            return;
        }
        for (const unsigned partition : _options.partitions.numbers) {
            const auto before =
                _server.ask("CONSUMER.INFO." + replyStream + "." + consumerName(partition), json());
            if (!before) {
                reportOnce("the store does not answer");
                return;
            }
            if (isTaken(*before)) {
                sayTaken(partition);
                return;
            }
            const u64 delivered = deliveredUpTo(*before);
            if (delivered == 0) {
                continue; // the first worker of that name begins some minutes back
            }
            json settings = consumerSettings(partition, inbox);
            settings["inactive_threshold"] = longestUnused;
            const json made = makeConsumer("CONSUMER.CREATE." + replyStream, settings);
            if (made.is_null()) {
                return;
            }
            if (waitingIn(made) > 0) {
                _rebuilding[partition] = delivered;
            }
        }
        _phase = Phase::Rebuilding;
        endRebuilding();
    }

    /// Goes on behind the rebuilding if all is read.
    void endRebuilding() {
        if (_rebuilding.empty()) {
            _isRebuilt = true;
            _incoming.clear();
            _phase = Phase::Waiting;
            follow();
        }
    }

    void follow() {
        const bool isListening = _phase == Phase::Following;
        for (const unsigned partition : _options.partitions.numbers) {
            const std::string name = replyStream + "." + consumerName(partition);
            const auto info = _server.ask("CONSUMER.INFO." + name, json());
            if (!info) {
                reportOnce("the store does not answer");
                return;
            }
            if (info->contains("error")) {
                json settings = consumerSettings(partition, deliverSubject(partition));
                settings["durable_name"] = consumerName(partition);
                if (makeConsumer("CONSUMER.DURABLE.CREATE." + name, settings).is_null()) {
                    return;
                }
            } else if (!isListening && isTaken(*info)) {
                sayTaken(partition);
                _incoming.clear();
                _isRebuilt = false; // the other one takes what comes meanwhile
                return;
            }
        }
        if (isListening) {
            return;
        }
        for (const unsigned partition : _options.partitions.numbers) {
            if (!listen(deliverSubject(partition))) {
                _incoming.clear();
                return;
            }
        }
        _phase = Phase::Following;
        reportOnce("following " + std::to_string(_options.partitions.numbers.size()) +
                   " partitions as " + _options.name);
    }

    void sayTaken(unsigned partition) {
        reportOnce("another worker with the name " + _options.name + " reads partition " +
                   std::to_string(partition) + "; waiting until it ends");
    }

    std::string deliverSubject(unsigned partition) const {
        return "ondrel.v1.to." + _options.name + "." + std::to_string(partition);
    }

    // -- batches --

    void receive() {
        for (std::size_t tried = 0; tried < _incoming.size(); ++tried) {
            _turn = (_turn + 1) % _incoming.size();
            if (const auto message = _incoming[_turn].next(milliseconds(0))) {
                take(*message);
                return;
            }
        }
        pauseFor(idlePause);
    }

    void take(const NatsMessage& message) {
        _lastMessage = Clock::now();
        const StoredMessage stored(message.replyTo());
        u64 newest = 0;
        const std::string_view reason = readBatch(message.bytes(), _batch);
        const auto site = reason.empty() ? _seen.siteOf(_batch) : std::nullopt;
        if (!site) {
            ++_unreadable;
            _events.unreadable(std::string(message.subject()),
                               std::string(reason.empty() ? "there are too many sites" : reason));
        } else {
            newest = take(*site, _seen.note(*site, _batch));
        }
        if (stored.isStored()) {
            _unacknowledged.emplace(newest, message.replyTo());
        }
        if (_phase == Phase::Rebuilding) {
            const auto partition = partitionOfSubject(message.subject());
            const auto found = partition ? _rebuilding.find(*partition) : _rebuilding.end();
            if (found != _rebuilding.end() &&
                (stored.number() >= found->second || stored.waiting() == 0)) {
                _rebuilding.erase(found);
                endRebuilding();
            }
        }
    }

    /// Adds the replies of the batch if it is new. Gives its newest stamp, or the clock's if that
    /// is ahead.
    u64 take(unsigned site, bool isNew) {
        u64 newest = 0;
        for (const GradedReply& reply : _batch.replies) {
            if (reply.stampMs > _nowMs + furthestAhead) {
                _ahead += isNew ? 1U : 0U;
                if (_saidAhead.insert(site).second) {
                    report("site " + _batch.site +
                           ": its clock is more than a minute ahead of the one here; such "
                           "replies are left out");
                }
                continue;
            }
            newest = std::max(newest, std::min(reply.stampMs, _nowMs));
            if (isNew) {
                _clocks.note(reply, site);
                _merger.add(reply, site, _nowMs);
            }
        }
        return newest;
    }

    /// Tells the store of the batches of which all replies were given.
    void acknowledge() {
        while (!_unacknowledged.empty() && _merger.hasGivenAllTo(_unacknowledged.begin()->first)) {
            _server.publish(_unacknowledged.begin()->second, "+ACK");
            _unacknowledged.erase(_unacknowledged.begin());
        }
    }

    WorkerOptions _options;
    SourceEvents _events;
    NatsConnection _server;
    Phase _phase = Phase::Waiting;
    bool _isUp = false;
    bool _isRebuilt = false;   ///< the table, as far as it can be
    unsigned _connections = 0; ///< of the server, when it was prepared
    Clock::time_point _nextNothing;
    Clock::time_point _nextAttempt;
    Clock::time_point _lastMessage;
    std::vector<NatsSubscription> _incoming;
    std::size_t _turn = 0;               ///< of those
    std::map<unsigned, u64> _rebuilding; ///< by partition, up to which stored message
    ReplyBatch _batch;
    SeenBatches _seen;
    ReplyMerger _merger;
    MergedReply _merged;
    SiteClocks _clocks;
    std::multimap<u64, std::string> _unacknowledged; ///< by the newest stamp of the batch
    std::set<unsigned> _saidAhead;                   ///< sites
    std::string _said;
    u64 _nowMs = systemMilliseconds();
    unsigned _looks = 0;
    u64 _unreadable = 0;
    u64 _ahead = 0;
};

NetworkReplies::NetworkReplies(const WorkerOptions& options, const SourceEvents& events)
    : _name(options.server.url), _worker(std::make_unique<Worker>(options, events)) {}

NetworkReplies::~NetworkReplies() = default;

ReplySource::Got NetworkReplies::next(Reply& reply) {
    return _worker->next(reply);
}

SourceCounts NetworkReplies::counts() const {
    return _worker->counts();
}

std::vector<SourceState> NetworkReplies::states() const {
    return {_worker->state()};
}

} // namespace tolvarin::ondrel::client
