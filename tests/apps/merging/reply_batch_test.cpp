#include "apps/merging/reply_batch.h"

#include <gtest/gtest.h>

#include <string>

namespace tolvarin::ondrel::client {

namespace {

GradedReply reply(std::size_t size, u64 stampMs, ModeSMessage::Confidence confidence) {
    return {std::string(size, '\xA5'), stampMs, confidence, 200};
}

ReplyBatch exampleBatch() {
    return {"north-1",
            1700000000000,
            42,
            {reply(14, 1700000000500, ModeSMessage::High),
             reply(7, 1700000000499, ModeSMessage::Low),
             reply(7, 1700000000500 + 0x7FFFFFFF, ModeSMessage::Medium)}};
}

TEST(ReplyBatch, ComesBackAsItWas) {
    const ReplyBatch sent = exampleBatch();
    ReplyBatch got;
    got.replies.resize(9); // of the batch before
    ASSERT_EQ(readBatch(batchBytes(sent), got), "");
    EXPECT_EQ(got.site, sent.site);
    EXPECT_EQ(got.started, sent.started);
    EXPECT_EQ(got.number, sent.number);
    ASSERT_EQ(got.replies.size(), sent.replies.size());
    for (std::size_t i = 0; i < sent.replies.size(); ++i) {
        EXPECT_EQ(got.replies[i].bytes, sent.replies[i].bytes);
        EXPECT_EQ(got.replies[i].stampMs, sent.replies[i].stampMs);
        EXPECT_EQ(got.replies[i].confidence, sent.replies[i].confidence);
        EXPECT_EQ(got.replies[i].signalAmplitude, sent.replies[i].signalAmplitude);
    }
}

// Programs of other people may read it.
TEST(ReplyBatch, HasTheDocumentedForm) {
    const ReplyBatch batch = {"ab", 1, 2, {reply(7, 259, ModeSMessage::Medium)}};
    EXPECT_EQ(batchBytes(batch), std::string("ODR1"
                                             "\0\0\0\0\0\0\0\x01"
                                             "\0\0\0\0\0\0\0\x02"
                                             "\0\0\0\0\0\0\x01\x03"
                                             "\x02"
                                             "ab"
                                             "\x02\0\0\0\0\xC8\xA5\xA5\xA5\xA5\xA5\xA5\xA5",
                                             4 + 24 + 3 + 13));
}

TEST(ReplyBatch, SaysWhatIsWrong) {
    const std::string good = batchBytes(exampleBatch());
    const std::size_t nameAt = 29;
    const std::size_t firstReply = nameAt + 7;
    const auto changed = [&good](std::size_t at, char byte) {
        std::string bytes = good;
        bytes.at(at) = byte;
        return bytes;
    };
    ReplyBatch batch;
    EXPECT_EQ(readBatch("", batch), "it is not of the form ODR1");
    EXPECT_EQ(readBatch(changed(3, '2'), batch), "it is not of the form ODR1");
    EXPECT_EQ(readBatch(good.substr(0, firstReply), batch), "it has no reply");
    EXPECT_NE(readBatch(changed(nameAt, '.'), batch), "");
    EXPECT_NE(readBatch(changed(nameAt - 1, '\0'), batch), "");
    EXPECT_EQ(readBatch(changed(firstReply, '\x04'), batch),
              "a reply has a grade that there is not");
    EXPECT_EQ(readBatch(changed(firstReply, '\x0F'), batch),
              "a reply has a grade that there is not");
    EXPECT_EQ(readBatch(good.substr(0, good.size() - 1), batch), "it ends within a reply");
    ReplyBatch many = exampleBatch();
    many.replies.resize(ReplyBatch::mostReplies, many.replies.front());
    EXPECT_EQ(readBatch(batchBytes(many), batch), "");
    EXPECT_LE(batchBytes(many).size(), ReplyBatch::mostBytes);
    many.replies.push_back(many.replies.front());
    EXPECT_EQ(readBatch(batchBytes(many), batch), "it has more than 4096 replies");
}

TEST(ReplyBatch, SurvivesEachWrongByteAndLength) {
    const std::string good = batchBytes(exampleBatch());
    for (std::size_t at = 0; at < good.size(); ++at) {
        ReplyBatch batch;
        readBatch(good.substr(0, at), batch);
        for (unsigned bit = 0; bit < 8; ++bit) {
            std::string bytes = good;
            bytes[at] = static_cast<char>(static_cast<u8>(bytes[at]) ^ (1U << bit));
            if (readBatch(bytes, batch).empty()) {
                EXPECT_TRUE(isSiteName(batch.site));
                EXPECT_FALSE(batch.replies.empty());
            }
        }
    }
}

TEST(ReplyBatch, KnowsWhatFits) {
    EXPECT_TRUE(fitsBatch(reply(7, 5000, ModeSMessage::Low), 9000));
    EXPECT_FALSE(fitsBatch(reply(8, 5000, ModeSMessage::Low), 5000));
    EXPECT_FALSE(fitsBatch(reply(7, 5000, ModeSMessage::None), 5000));
    EXPECT_FALSE(fitsBatch(reply(7, u64{1} << 31U, ModeSMessage::Low), 0));
    EXPECT_FALSE(isSiteName(""));
    EXPECT_FALSE(isSiteName(std::string(33, 'a')));
    EXPECT_FALSE(isSiteName("a b"));
}

} // namespace

} // namespace tolvarin::ondrel::client
