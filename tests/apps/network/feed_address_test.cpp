#include "apps/network/feed_address.h"

#include <gtest/gtest.h>

#include <string>

namespace tolvarin::ondrel::client {

namespace {

TEST(FeedAddress, HasAHostAndAPort) {
    struct Row {
        std::string name;
        std::string host;
        std::string port;
    };
    for (const Row& row :
         {Row{"tcp://receiver.local:30005", "receiver.local", "30005"},
          Row{"tcp://192.0.2.7:0", "192.0.2.7", "0"}, Row{"tcp://[::1]:65535", "::1", "65535"}}) {
        const auto address = feedAddress(row.name);
        ASSERT_TRUE(address) << row.name;
        EXPECT_EQ(address->host, row.host);
        EXPECT_EQ(address->port, row.port);
    }
    for (const char* name :
         {"tcp://", "tcp://a", "tcp://:1", "tcp://a:", "tcp://a:x", "tcp://a:65536", "tcp://a:-1",
          "tcp://a:1/", "tcp://::1:1", "tcp://[]:1", "tcp://[a]:1", "tcp://a b:1", "udp://a:1"}) {
        EXPECT_FALSE(feedAddress(name)) << name;
    }
}

} // namespace

} // namespace tolvarin::ondrel::client
