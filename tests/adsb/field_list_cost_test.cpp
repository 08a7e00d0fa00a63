#include <ondrel/adsb_decoder.h>
#include <ondrel/adsb_identity_message.h>

#include "support/allocations.h"
#include "support/bytes.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <memory>
#include <string>
#include <utility>

namespace tolvarin::ondrel {
namespace {

using test::operator""_hex;

TEST(ADSBFieldListCost, DecodingAllocatesTheMessageAlone) {
    const std::pair<MOPSVersion, std::string> payloads[] = {
        {MOPSVersion0, "20 2C C3 71 C3 2C E0"_hex}, {MOPSVersion0, "3A 9A 15 32 37 AE F0"_hex},
        {MOPSVersion0, "58 C3 82 D6 90 C8 AC"_hex}, {MOPSVersion1, "58 C3 82 D6 90 C8 AC"_hex},
        {MOPSVersion2, "58 C3 82 D6 90 C8 AC"_hex}, {MOPSVersion0, "99 44 09 94 08 38 17"_hex},
        {MOPSVersion1, "99 44 09 94 08 38 17"_hex}, {MOPSVersion2, "99 44 09 94 08 38 17"_hex},
        {MOPSVersion0, "B8 01 23 45 67 89 AB"_hex}, {MOPSVersion1, "E1 EA AA 00 00 00 00"_hex},
        {MOPSVersion2, "E1 EA AA 00 00 00 00"_hex}, {MOPSVersion1, "E8 00 00 00 01 B8 00"_hex},
        {MOPSVersion2, "EB 00 00 00 01 B8 00"_hex}, {MOPSVersion2, "F8 00 00 00 00 50 00"_hex},
    };
    const ADSBDecoder decoder;
    for (const auto& [version, payload] : payloads) {
        std::unique_ptr<ADSBMessage> message;
        const std::size_t before = test::allocations();
        message.reset(decoder.decode(version, payload));
        EXPECT_EQ(test::allocations() - before, 1U) << message->description();
    }
}

TEST(ADSBFieldListCost, DecodingAgainSeldomAllocates) {
    ADSBIdentityMessage message;
    const std::string payload = "20 2C C3 71 C3 2C E0"_hex;
    const std::size_t before = test::allocations();
    for (std::size_t i = 0; i < 1000; ++i) {
        message.decode(payload);
    }
    EXPECT_LE(test::allocations() - before, 20U);
    EXPECT_EQ(message.fields().size(), 11000U);
}

TEST(ADSBFieldListCost, ALongInputLeavesNoMemoryBehind) {
    const std::string payload = "20 2C C3 71 C3 2C E0"_hex + std::string(1000, '\x57');
    ADSBIdentityMessage message;
    const std::size_t before = test::allocations();
    EXPECT_TRUE(message.decode(payload));
    EXPECT_EQ(test::allocations() - before, 0U);
}

} // namespace
} // namespace tolvarin::ondrel
