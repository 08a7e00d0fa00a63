#include "apps/json/reply_json.h"

#include "apps/decoded_lines.h"

#include <gtest/gtest.h>

#include <string>

namespace tolvarin::ondrel::client {

namespace {

TEST(ReplyJson, HasAllOfADecodedReply) {
    auto form = replyJson(decodedLast({"1.5," + oneBitWrong}));
    const auto expected = nlohmann::ordered_json::parse(R"({
        "stamp_ms": 1500, "format": "DF-17", "address": "40621D", "confidence": "High",
        "description": "CA: 5; AA: 40621D; ME: 58C382D690C8AC",
        "refused": false, "repaired": true,
        "received": "8D40621D59C382D690C8AC2863A7", "data": "8D40621D58C382D690C8AC2863A7",
        "parity": "2863A7",
        "fields": [
            {"name": "CA", "full_name": "Capability", "pos": 5, "bits": 3, "value": "5"},
            {"name": "AA", "full_name": "Address announced", "pos": 8, "bits": 24,
             "value": "40621D"},
            {"name": "ME", "full_name": "Message, extended squitter", "pos": 32, "bits": 56,
             "value": "58C382D690C8AC"},
            {"name": "PI", "full_name": "Parity/interrogator identifier", "pos": 88, "bits": 24,
             "value": "2863A7"}
        ]})");
    form.erase("payload");
    EXPECT_EQ(form.dump(), expected.dump());
}

TEST(ReplyJson, OfARefusedReplyHasItsBytes) {
    EXPECT_EQ(replyJson(decodedLast({"999999999999.999," + beyondRepair})).dump(),
              R"({"stamp_ms":999999999999999,"format":"DF-17","refused":true,)"
              R"("received":"8D40621D58C382D690C8AC2863A6"})");
}

TEST(ReplyJson, HasThePayload) {
    const auto form = replyJson(decodedLast({squitter(announcement(2))}));
    const auto expected = nlohmann::ordered_json::parse(R"({
        "type": "OP_STATUS", "type_code": 31, "version": 0, "refused": false,
        "description": "TC=OP_STAT, VN=2, NICsa=0",
        "fields": [
            {"name": "TYPE", "full_name": "Type", "pos": 0, "bits": 5, "value": "OP_STATUS"},
            {"name": "TYPE_CODE", "full_name": "TYPE_CODE", "pos": 0, "bits": 5, "value": "31"},
            {"name": "VER_NUM", "full_name": "VER_NUM", "pos": 40, "bits": 3, "value": "2"},
            {"name": "NIC_SUPP_A", "full_name": "NIC_SUPP_A", "pos": 43, "bits": 1, "value": "0"}
        ]})");
    EXPECT_EQ(form["payload"].dump(), expected.dump());
    EXPECT_EQ(replyJson(decodedLast({squitter(airSpeed)}))["payload"].dump(),
              R"({"type":"AIR_VEL","type_code":19,"version":0,"refused":true,"description":")" +
                  airSpeedRefused + R"("})");
    EXPECT_FALSE(
        replyJson(decodedLast({hexBytes(simulator::df11(address, 5, 0))})).contains("payload"));
}

} // namespace

} // namespace tolvarin::ondrel::client
