// docs/json.md and what the client writes have the same keys.

#include "apps/commands/reply_positions.h"
#include "apps/json/aircraft_json.h"
#include "apps/json/many_replies.h"
#include "apps/json/page_types.h"
#include "apps/json/reply_json.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <memory>
#include <optional>
#include <string>

namespace tolvarin::ondrel::client {

namespace {

using nlohmann::json;

std::string typeOf(const json& value) {
    if (value.is_boolean()) {
        return "flag";
    }
    if (value.is_array()) {
        return "list";
    }
    return value.is_string() ? "text" : value.type_name();
}

void note(const json& form, Types& types) {
    for (const auto& item : form.items()) {
        std::string& type = types[item.key()];
        EXPECT_TRUE(type.empty() || type == typeOf(item.value())) << item.key();
        type = typeOf(item.value());
    }
}

TEST(JsonPage, HasTheKeysOfReplies) {
    const QuietLog quiet;
    ModeSDecoder decoder;
    PayloadDecoder payloads(std::nullopt);
    ReplyPositions positions([](const std::string&) {});
    Types types;
    Types fieldTypes;
    DecodedReply decoded;
    for (const Reply& reply : manyReplies()) {
        decoded.reply = reply;
        positions.stamp(decoded.reply);
        decoded.message = decodeReply(decoder, decoded.reply);
        decoded.payload = payloads.decode(decoded.message.get());
        std::string text;
        appendReplyJson(text, decoded, {positions.take(decoded.message.get()), true});
        const json form = json::parse(text);
        note(form, types);
        for (const json& field : form.value("fields", json::array())) {
            note(field, fieldTypes);
        }
    }
    EXPECT_EQ(typesOfPage("json.md")["Replies"], types);
    EXPECT_EQ(typesOfPage("json.md")["Bit fields"], fieldTypes);
}

TEST(JsonPage, HasTheKeysOfAircraft) {
    const QuietLog quiet;
    ModeSDecoder decoder;
    Stamping stamping([](const std::string&) {});
    Tracking tracking(std::nullopt);
    Types types;
    u64 count = 0;
    for (Reply& reply : manyReplies()) {
        stamping.stamp(reply);
        tracking.moveTo(stamping.now());
        const std::unique_ptr<ModeSMessage> message(
            decoder.decode(ModeSMessage::Downlink, reply.bytes, *reply.stampMs));
        if (message) {
            message->setSignalAmplitude(100);
        }
        const ADSBTarget* updated = tracking.take(static_cast<const DFMessage*>(message.get()));
        if (updated != nullptr) {
            tracking.noteSites(*updated, 3);
        }
        if (++count % 1000 == 0) {
            const Showing showing = {tracking.now(), 1, GeoPoint{50, 8}};
            for (const TrackedAircraft& aircraft : tracking.aircraft()) {
                const json form = aircraftJson(aircraft, showing, false);
                note(form, types);
                for (const char* times : {"updated_ms", "changed_ms"}) {
                    for (const auto& item : form[times].items()) {
                        EXPECT_TRUE(form.contains(item.key())) << item.key();
                    }
                }
            }
        }
    }
    EXPECT_EQ(typesOfPage("json.md")["Aircraft"], types);
}

} // namespace

} // namespace tolvarin::ondrel::client
