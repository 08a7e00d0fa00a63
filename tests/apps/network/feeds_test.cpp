#include "apps/network/feeds.h"

#include "apps/common/interruption.h"

#include "simulator/recording.h"
#include "simulator/traffic.h"

#include <asio.hpp>
#include <gtest/gtest.h>

#include <functional>
#include <map>
#include <optional>
#include <string>
#include <thread>
#include <utility>
#include <vector>

namespace tolvarin::ondrel::client {

namespace {

using asio::ip::tcp;

/// Accepts connections on a free port, one after the other, and does with each what it is told.
class Server {
public:
    using Action = std::function<void(tcp::socket& socket)>;

    explicit Server(std::vector<Action> actions)
        : _acceptor(_context, tcp::endpoint(asio::ip::address_v4::loopback(), 0)),
          _thread([this, actions = std::move(actions)] {
              for (const Action& action : actions) {
                  tcp::socket socket(_context);
                  _acceptor.accept(socket);
                  action(socket);
              }
          }) {}
    ~Server() { _thread.join(); }

    std::string name() const {
        return "tcp://127.0.0.1:" + std::to_string(_acceptor.local_endpoint().port());
    }

private:
    asio::io_context _context;
    tcp::acceptor _acceptor;
    std::thread _thread;
};

Server::Action sending(const std::string& bytes) {
    return [bytes](tcp::socket& socket) {
        asio::error_code ignored; // the client may go before it has taken all
        asio::write(socket, asio::buffer(bytes), ignored);
    };
}

std::string traffic(simulator::RecordingForm form) {
    simulator::TrafficOptions options;
    options.seconds = 2;
    simulator::Traffic source(options);
    std::string bytes;
    while (const auto reply = source.next()) {
        bytes += recorded(*reply, form, options.startMs);
    }
    return bytes;
}

struct Heard {
    std::map<unsigned, u64> replies; ///< by source
    std::vector<std::string> reports;
    SourceCounts counts;
};

/// Reads until there were so many reports.
Heard heardFrom(const std::vector<std::string>& names, std::size_t reports) {
    static const bool once = (noteInterruption(), true);
    EXPECT_TRUE(once);
    Heard heard;
    SourceEvents events = {[](const std::string&, const std::string&) {}, [](u64, u64) {},
                           [&](const std::string& report) { heard.reports.push_back(report); }};
    Feeds feeds(names, ReceiverCounter::Kind::TwelveMHz, events);
    Reply reply;
    while (heard.reports.size() < reports && feeds.next(reply) != ReplySource::Got::End) {
        if (!reply.bytes.empty()) {
            ++heard.replies[reply.source];
            reply.bytes.clear();
        }
    }
    heard.counts = feeds.counts();
    return heard;
}

TEST(Feeds, ReadAllOfSeveralInTheirForms) {
    const std::string frames = traffic(simulator::RecordingForm::Binary);
    const std::string lines = traffic(simulator::RecordingForm::Ticks);
    Server one({sending(frames)});
    Server two({sending(lines)});
    const Heard heard = heardFrom({one.name(), two.name()}, 4);
    EXPECT_GT(heard.replies.at(1), 200U);
    EXPECT_EQ(heard.replies.at(1), heard.replies.at(2));
    EXPECT_EQ(heard.counts.unreadable, 0U);
}

TEST(Feeds, ConnectAnew) {
    const std::string lines = traffic(simulator::RecordingForm::Ticks);
    Server server({sending(lines), sending(lines)});
    Heard heard = heardFrom({server.name()}, 4);
    heard.reports.resize(4);
    const std::string closed = server.name() + ": the connection was closed; trying again in 1 s";
    EXPECT_EQ(heard.reports, (std::vector<std::string>{server.name() + ": connected", closed,
                                                       server.name() + ": connected", closed}));
}

// A peer of another kind, or one that means harm, next to one that is good.
TEST(Feeds, PassRubbish) {
    std::string noise;
    u32 state = 1;
    while (noise.size() < 10000000) {
        state = state * 1664525 + 1013904223;
        noise += static_cast<char>(state >> 24U);
    }
    Server rubbish({sending(noise)});
    Server endless({sending(std::string(10000000, '8'))});
    Server good({sending(traffic(simulator::RecordingForm::Binary))});
    const Heard heard = heardFrom({rubbish.name(), endless.name(), good.name()}, 6);
    EXPECT_GT(heard.replies.at(3), 200U);
    EXPECT_GT(heard.counts.unreadable, 300U);
    EXPECT_EQ(heard.replies.count(2), 0U);
}

} // namespace

} // namespace tolvarin::ondrel::client
