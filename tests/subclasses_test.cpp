// A program that derives from the classes of the shared library. The virtual table of a subclass
// holds the virtual functions of its base, private ones included. So the program links only if the
// library exports all of them.
#include <ondrel/adsb_airborne_position_message.h>
#include <ondrel/adsb_airborne_velocity_message.h>
#include <ondrel/adsb_aircraft_operational_status_message.h>
#include <ondrel/adsb_aircraft_status_message.h>
#include <ondrel/adsb_identity_message.h>
#include <ondrel/adsb_surface_position_message.h>
#include <ondrel/adsb_target_status_message.h>
#include <ondrel/adsb_test_message.h>
#include <ondrel/df_messages.h>
#include <ondrel/log.h>

#include "support/bytes.h"

#include <gtest/gtest.h>

#include <string>

namespace tolvarin::ondrel {
namespace {

using test::operator""_hex;

/// Inherits every virtual function but one.
template <class Base>
class Subclass final : public Base {
public:
    std::string description() const override { return "mine: " + Base::description(); }
};

/// Whether a subclass decodes what its base class decodes, and calls are virtual.
template <class Message, class Root>
bool decodes(const std::string& bytes) {
    Subclass<Message> message;
    Root& root = message;
    return root.decode(bytes) && !root.fields().empty() &&
           root.description() == "mine: " + message.Message::description();
}

template <class Message>
bool decodesFrame(const std::string& frame) {
    return decodes<Message, ModeSMessage>(frame);
}

template <class Message>
bool decodesPayload(const std::string& payload) {
    return decodes<Message, ADSBMessage>(payload);
}

TEST(Subclasses, OfFormatsDecodeTheirFrames) {
    constexpr u32 address = 0x4840D6;
    EXPECT_TRUE(decodesFrame<DF0Message>(test::surveillance(0, address)));
    EXPECT_TRUE(decodesFrame<DF4Message>(test::surveillance(4, address)));
    EXPECT_TRUE(decodesFrame<DF5Message>(test::surveillance(5, address)));
    EXPECT_TRUE(decodesFrame<DF11Message>(test::allCall(address, 0)));
    EXPECT_TRUE(decodesFrame<DF16Message>(test::surveillance(16, address)));
    EXPECT_TRUE(decodesFrame<DF17Message>(test::squitter(address)));
    EXPECT_TRUE(decodesFrame<DF18Message>(test::squitter(address, 18)));
    EXPECT_TRUE(decodesFrame<DF19Message>(test::squitter(address, 19)));
    EXPECT_TRUE(decodesFrame<DF20Message>(test::surveillance(20, address)));
    EXPECT_TRUE(decodesFrame<DF21Message>(test::surveillance(21, address)));
}

TEST(Subclasses, OfPayloadsDecodeTheirBytes) {
    EXPECT_TRUE(decodesPayload<ADSBIdentityMessage>("202CC371C32CE0"_hex));
    EXPECT_TRUE(decodesPayload<ADSBSurfacePositionMessage>("3A9A153237AEF0"_hex));
    const std::string position = "58C382D690C8AC"_hex;
    EXPECT_TRUE(decodesPayload<ADSBAirbornePositionMessage>(position));
    EXPECT_TRUE(decodesPayload<ADSBAirbornePositionMessageV0>(position));
    EXPECT_TRUE(decodesPayload<ADSBAirbornePositionMessageV1>(position));
    EXPECT_TRUE(decodesPayload<ADSBAirbornePositionMessageV2>(position));
    const std::string velocity = "99440994083817"_hex;
    EXPECT_TRUE(decodesPayload<ADSBAirborneVelocityMessage>(velocity));
    EXPECT_TRUE(decodesPayload<ADSBAirborneVelocityMessageV0>(velocity));
    EXPECT_TRUE(decodesPayload<ADSBAirborneVelocityMessageV1>(velocity));
    EXPECT_TRUE(decodesPayload<ADSBTestMessage>("B8000000000000"_hex));
    EXPECT_TRUE(decodesPayload<ADSBAircraftStatusMessage>("E112B600000000"_hex));
    EXPECT_TRUE(decodesPayload<ADSBAircraftStatusMessageV2>("E112B600000000"_hex));
    const std::string targetStatus = "EA21485CBF3F8C"_hex;
    EXPECT_TRUE(decodesPayload<ADSBTargetStatusMessage>(targetStatus));
    EXPECT_TRUE(decodesPayload<ADSBTargetStatusMessageV1>(targetStatus));
    EXPECT_TRUE(decodesPayload<ADSBTargetStatusMessageV2>(targetStatus));
    EXPECT_TRUE(decodesPayload<ADSBAircraftOperationalStatusMessage>("F8230007005AB8"_hex));
}

/// Two bits of a frame; the abstract base class has only its names and places.
class OwnField final : public ModeSMessageField {
public:
    OwnField() : ModeSMessageField(UM) {}
    u8 bits() const override { return 2; }

private:
    bool decodeImpl(const std::string& data, u8 pos) override { return !data.empty() && pos == 6; }
};

TEST(Subclasses, OfFieldsHaveTheirNames) {
    OwnField field;
    EXPECT_TRUE(field.decode("48"_hex, 6) && field.valid());
    EXPECT_FALSE(field.decode("48"_hex, 7));
    EXPECT_EQ(field.description(), "UM:Utility message");
}

class OwnLog final : public LogHandler {
public:
    ~OwnLog() { Log::setLogHandler(nullptr); }
    void writeLine(const std::string& line) override { last = line; }

    std::string last;
};

TEST(Subclasses, OfLogHandlersTakeLines) {
    OwnLog log;
    Log::setLogHandler(&log);
    Log::log(Log::Info, "module", "line");
    EXPECT_EQ(log.last, "[INFO    ][module    ] line");
}

} // namespace
} // namespace tolvarin::ondrel
