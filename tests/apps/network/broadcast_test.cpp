#include "apps/network/broadcast.h"

#include "apps/common/interruption.h"

#include <asio.hpp>
#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace tolvarin::ondrel::client {

namespace {

using asio::ip::tcp;

/// A broadcast on a free port, and what it reports.
class BroadcastTest : public testing::Test {
protected:
    static Broadcast opened(std::vector<std::string>& reports) {
        static const bool once = (noteInterruption(), true);
        EXPECT_TRUE(once);
        return {{"127.0.0.1", "0"},
                [&reports](const std::string& report) { reports.push_back(report); }};
    }

    tcp::socket connected() {
        const std::string port = reports.front().substr(reports.front().rfind(':') + 1);
        tcp::socket socket(context);
        asio::connect(socket, tcp::resolver(context).resolve("127.0.0.1", port));
        return socket;
    }

    void pollUntil(std::size_t clients) {
        while (broadcast.clients() != clients) {
            broadcast.poll();
        }
    }

    asio::io_context context;
    std::vector<std::string> reports;
    Broadcast broadcast = opened(reports);
};

TEST_F(BroadcastTest, ServesWhilePolled) {
    tcp::socket one = connected();
    tcp::socket two = connected();
    pollUntil(2);
    broadcast.send("some bytes");
    broadcast.poll();
    for (tcp::socket* client : {&one, &two}) {
        std::string received(10, ' ');
        asio::read(*client, asio::buffer(received));
        EXPECT_EQ(received, "some bytes");
    }
    one.close();
    pollUntil(1);
    EXPECT_NE(reports.back().find(": has left"), std::string::npos);
}

TEST_F(BroadcastTest, LosesAClientThatTakesNothing) {
    tcp::socket idle = connected();
    tcp::socket other = connected();
    pollUntil(2);
    const std::string bytes(100000, 'x');
    std::string received(bytes.size(), ' ');
    for (int i = 0; broadcast.clients() == 2 && i < 1000; ++i) {
        broadcast.send(bytes);
        for (std::size_t count = 0; count < bytes.size();) {
            broadcast.poll();
            asio::error_code error;
            other.non_blocking(true);
            count += other.read_some(asio::buffer(received), error);
        }
    }
    EXPECT_EQ(broadcast.clients(), 1U);
    EXPECT_NE(reports.back().find("is disconnected"), std::string::npos);
}

} // namespace

} // namespace tolvarin::ondrel::client
