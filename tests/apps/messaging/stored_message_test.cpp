#include "apps/messaging/message_server.h"
#include "apps/messaging/stored_message.h"

#include <gtest/gtest.h>

namespace tolvarin::ondrel::client {

namespace {

TEST(StoredMessage, ReadsBothFormsOfTheStore) {
    const StoredMessage old("$JS.ACK.ONDREL_REPLIES.worker-3.1.4711.12.1700000000000000000.99");
    EXPECT_TRUE(old.isStored());
    EXPECT_EQ(old.number(), 4711U);
    EXPECT_EQ(old.waiting(), 99U);
    const StoredMessage later(
        "$JS.ACK.hub.ACCOUNT.ONDREL_REPLIES.worker-3.1.4711.12.1700000000000000000.99.random");
    EXPECT_TRUE(later.isStored());
    EXPECT_EQ(later.number(), 4711U);
    EXPECT_EQ(later.waiting(), 99U);
}

TEST(StoredMessage, TakesNoOtherSubject) {
    for (const char* subject : {"", "_INBOX.a.b", "$JS.ACK.", "$JS.ACK.a.b.1.2.3.4",
                                "$JS.ACK.a.b.1.x.3.4.5", "$JS.ACK.a.b.1.2.3.4.5.6"}) {
        EXPECT_FALSE(StoredMessage(subject).isStored()) << subject;
    }
}

TEST(MessageServer, IsNamedWithoutSecrets) {
    EXPECT_EQ(messageServerError("nats://host:4222"), "");
    EXPECT_EQ(messageServerError("nats://[::1]:4222"), "");
    for (const char* name : {"nats://", "nats://host", "nats://a:b@host:4222", "tcp://host:4222"}) {
        EXPECT_NE(messageServerError(name), "") << name;
    }
}

} // namespace

} // namespace tolvarin::ondrel::client
