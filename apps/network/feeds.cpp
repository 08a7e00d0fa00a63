#include "apps/network/feeds.h"

#include "apps/common/failure.h"
#include "apps/common/interruption.h"
#include "apps/common/text.h"
#include "apps/input/arrival_clock.h"
#include "apps/input/byte_buffer.h"
#include "apps/input/file_source.h"
#include "apps/input/replay.h"
#include "apps/input/reply_reader.h"

#include <algorithm>
#include <asio.hpp>
#include <chrono>
#include <deque>
#include <functional>
#include <unistd.h>
#include <utility>

namespace tolvarin::ondrel::client {

namespace {

using asio::ip::tcp;
using std::chrono::seconds;
using Clock = std::chrono::steady_clock;

constexpr seconds longestConnecting(10);
constexpr seconds longestSilence(120);
constexpr std::chrono::milliseconds betweenNothings(100);
constexpr seconds shortestPause(1);
constexpr seconds longestPause(60);
constexpr u64 longestGap = 3600000; // ms, in a recording that is played

/// What Feeds reads from. It stands in the queue of those that are ready until take() gives false.
class Feed {
public:
    Feed(asio::io_context& context, std::deque<Feed*>& ready, const std::string& name,
         SourceEvents events)
        : _timer(context), _ready(ready), _name(shownName(name)), _events(std::move(events)) {}

    /// What its replies have as their source.
    unsigned source = 0;

    Feed(const Feed&) = delete;
    Feed& operator=(const Feed&) = delete;
    virtual ~Feed() = default;

    virtual void begin() = 0;

    /// The next reply that is there; if there is none, the feed waits for more.
    virtual bool take(Reply& reply) = 0;

    virtual SourceCounts counts() const = 0;
    virtual bool isUp() const = 0;
    /// As it is shown.
    const std::string& name() const { return _name; }

protected:
    void becomeReady() { _ready.push_back(this); }
    const SourceEvents& events() const { return _events; }
    void report(const std::string& message) const { _events.report(_name + ": " + message); }

    /// Does something later. Replaces what was to be done before.
    template <class Duration, class Action>
    void after(Duration duration, Action action) {
        const unsigned number = ++_wait;
        _timer.expires_after(duration);
        _timer.async_wait([this, number, action](const asio::error_code& error) {
            if (!error && number == _wait) {
                action();
            }
        });
    }

private:
    asio::steady_timer _timer;
    unsigned _wait = 0;
    std::deque<Feed*>& _ready;
    std::string _name;
    SourceEvents _events;
};

class Connection final : public Feed {
public:
    Connection(asio::io_context& context, std::deque<Feed*>& ready, const std::string& name,
               FeedAddress address, ReceiverCounter::Kind counter, const SourceEvents& events)
        : Feed(context, ready, name, events), _resolver(context), _socket(context),
          _address(std::move(address)), _counter(counter) {}

private:
    /// A handler that fails on an error, and does nothing after the attempt to connect for which it
    /// was made.
    template <class Action>
    auto ifCurrent(Action action) {
        return [this, action, attempt = _attempt](const asio::error_code& error, auto&& result) {
            if (attempt != _attempt) {
                return;
            }
            if (error) {
                fail(error == asio::error::eof ? "the connection was closed" : error.message());
                return;
            }
            action(result);
        };
    }

public:
    void begin() override {
        after(longestConnecting, [this] { fail("no answer"); });
        _resolver.async_resolve(
            _address.host, _address.port,
            ifCurrent([this](const tcp::resolver::results_type& places) { connect(places); }));
    }

    bool take(Reply& reply) override {
        while (true) {
            switch (_reader->next(_bytes, false, reply)) {
            case ReplyReader::Found::Reply:
                reply.stampMs = _clock.timeOf(reply.stampMs, _arrivalMs);
                reply.byCounter = false;
                _pause = shortestPause;
                return true;
            case ReplyReader::Found::Unreadable:
                ++_counts.unreadable;
                [[fallthrough]];
            case ReplyReader::Found::Skipped:
                events().unreadable(name() + _reader->unreadable().place,
                                    _reader->unreadable().reason);
                break;
            case ReplyReader::Found::Foreign:
                fail("it is " + _reader->unreadable().reason);
                return false;
            default:
                read();
                return false;
            }
        }
    }

    bool isUp() const override { return _isUp; }

    SourceCounts counts() const override {
        SourceCounts counts = _counts;
        counts.modeAC += _reader ? _reader->modeAC() : 0;
        return counts;
    }

private:
    void connect(const tcp::resolver::results_type& places) {
        asio::async_connect(_socket, places, ifCurrent([this](const tcp::endpoint&) {
                                _socket.set_option(asio::socket_base::keep_alive(true));
                                _bytes = ByteBuffer();
                                _clock = ArrivalClock();
                                _isUp = true;
                                report("connected");
                                watch();
                                read();
                            }));
    }

    /// Fails when nothing comes for too long.
    void watch() {
        _heard = false;
        after(longestSilence, [this] { _heard ? watch() : fail("nothing came for two minutes"); });
    }

    void read() {
        const ByteBuffer::Room room = _bytes.room();
        _socket.async_read_some(asio::buffer(room.begin, room.size),
                                ifCurrent([this](std::size_t count) { take(count); }));
    }

    void take(std::size_t count) {
        _arrivalMs = systemMilliseconds();
        _heard = true;
        _bytes.add(count);
        if (!_reader) {
            _reader = ReplyReader::forBytes(_bytes, false, _counter);
        }
        if (_reader) {
            becomeReady();
        } else {
            read();
        }
    }

    void fail(const std::string& reason) {
        ++_attempt;
        _isUp = false;
        _counts = counts();
        _reader.reset();
        _resolver.cancel();
        asio::error_code ignored;
        _socket.close(ignored);
        report(reason + "; trying again in " + std::to_string(_pause.count()) + " s");
        after(_pause, [this] { begin(); });
        _pause = std::min(2 * _pause, longestPause);
    }

    tcp::resolver _resolver;
    tcp::socket _socket;
    FeedAddress _address;
    ReceiverCounter::Kind _counter;
    ByteBuffer _bytes;
    std::unique_ptr<ReplyReader> _reader; ///< null until the first bytes tell which
    ArrivalClock _clock;
    u64 _arrivalMs = 0; ///< of the bytes
    bool _isUp = false;
    bool _heard = false; ///< since the last look
    unsigned _attempt = 0;
    seconds _pause = shortestPause;
    SourceCounts _counts; ///< without those of the reader
};

/// A recording that is played from now on at its own speed.
class Player final : public Feed {
public:
    Player(asio::io_context& context, std::deque<Feed*>& ready, const std::string& path,
           ReceiverCounter::Kind counter, const SourceEvents& events)
        : Feed(context, ready, path, events),
          _file(File::openForReading(path), counter, {events.unreadable, [](u64, u64) {}}) {}

    void begin() override {
        try {
            if (_file.next(_reply) != ReplySource::Got::Reply) {
                report("played to its end");
                return;
            }
        } catch (const InputFailure& failure) {
            _failed = true;
            report(failure.what());
            return;
        }
        const u64 now = systemMilliseconds();
        _due = _reply.stampMs ? *_reply.stampMs + _zero : now;
        if (_due + longestGap < now || now + longestGap < _due) { // the first one too
            _zero += now - _due;
            _due = now;
        }
        after(std::chrono::milliseconds(_due - std::min(now, _due)), [this] { becomeReady(); });
    }

    bool take(Reply& reply) override {
        if (_due == 0) {
            begin();
            return false;
        }
        reply = _reply;
        reply.stampMs = std::exchange(_due, 0);
        reply.byCounter = false;
        return true;
    }

    SourceCounts counts() const override { return _file.counts(); }
    bool isUp() const override { return !_failed; }

private:
    FileSource _file;
    Reply _reply;  ///< the next one
    u64 _due = 0;  ///< when it comes; 0: it was taken
    u64 _zero = 0; ///< when the stamps were 0, modulo 2^64
    bool _failed = false;
};

} // namespace

class Feeds::Network {
public:
    Network(const std::vector<std::string>& names, ReceiverCounter::Kind counter,
            const SourceEvents& events)
        : _interruption(_context, ::dup(interruptionDescriptor())) {
        _interruption.async_wait(asio::posix::stream_descriptor::wait_read,
                                 [](const asio::error_code&) {});
        for (const std::string& name : names) {
            const auto address = feedAddress(name);
            if (address) {
                _feeds.push_back(std::make_unique<Connection>(_context, _ready, name, *address,
                                                              counter, events));
            } else {
                _feeds.push_back(std::make_unique<Player>(_context, _ready, name, counter, events));
            }
        }
        for (const auto& feed : _feeds) {
            if (_feeds.size() > 1) {
                feed->source = ++_sources;
            }
            feed->begin();
        }
    }

    Got next(Reply& reply) {
        while (!interrupted()) {
            while (!_ready.empty()) {
                Feed& feed = *_ready.front();
                if (feed.take(reply)) {
                    reply.source = feed.source;
                    return Got::Reply;
                }
                _ready.pop_front();
            }
            if (_context.run_one_until(_nextNothing) == 0 && _context.stopped()) {
                return Got::End;
            }
            if (Clock::now() >= _nextNothing) {
                _nextNothing = Clock::now() + betweenNothings;
                return Got::Nothing;
            }
        }
        return Got::End;
    }

    SourceCounts counts() const {
        SourceCounts all;
        for (const auto& feed : _feeds) {
            all += feed->counts();
        }
        return all;
    }

    std::vector<SourceState> states() const {
        std::vector<SourceState> states;
        for (const auto& feed : _feeds) {
            states.push_back({feed->name(), feed->isUp()});
        }
        return states;
    }

private:
    asio::io_context _context;
    asio::posix::stream_descriptor _interruption; ///< ends a wait
    Clock::time_point _nextNothing;
    std::deque<Feed*> _ready;
    std::vector<std::unique_ptr<Feed>> _feeds;
    unsigned _sources = 0; ///< numbered so far
};

bool canConnect() {
    return true;
}

Feeds::Feeds(const std::vector<std::string>& names, ReceiverCounter::Kind counter,
             const SourceEvents& events)
    : _network(std::make_unique<Network>(names, counter, events)) {
    for (const std::string& name : names) {
        _name += (_name.empty() ? "" : ", ") + shownName(name);
    }
}

Feeds::~Feeds() = default;

ReplySource::Got Feeds::next(Reply& reply) {
    return _network->next(reply);
}

std::vector<SourceState> Feeds::states() const {
    return _network->states();
}

SourceCounts Feeds::counts() const {
    return _network->counts();
}

} // namespace tolvarin::ondrel::client
