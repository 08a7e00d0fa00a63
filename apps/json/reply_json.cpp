#include "apps/json/reply_json.h"

#include "apps/common/text.h"

namespace tolvarin::ondrel::client {

namespace {

using Json = nlohmann::ordered_json;

/// A field of a reply or of a payload.
template <class Field>
Json fieldJson(const Field& field) {
    Json form;
    form["name"] = field.name();
    form["full_name"] = field.fullName();
    form["pos"] = field.pos();
    form["bits"] = field.bits();
    form["value"] = field.description();
    return form;
}

Json fieldsJson(const DFMessage& message) {
    Json fields = Json::array();
    for (const ModeSMessageField* field : message.fields()) {
        fields.push_back(fieldJson(*field));
    }
    return fields;
}

Json payloadJson(const AdsbPayload& payload) {
    Json form;
    form["type"] = payload.typeName();
    form["type_code"] = payload.typeCode;
    form["version"] = static_cast<i32>(payload.version);
    form["refused"] = payload.message == nullptr;
    form["description"] = payload.description();
    if (payload.message) {
        Json& fields = form["fields"] = Json::array();
        for (const ADSBMessageField& field : payload.message->fields()) {
            fields.push_back(fieldJson(field));
        }
    }
    return form;
}

} // namespace

Json replyJson(const DecodedReply& decoded) {
    const auto& stamp = decoded.reply.stampMs;
    Json form;
    form["stamp_ms"] = stamp ? Json(*stamp) : Json();
    form["format"] = decoded.formatName();
    if (decoded.refused()) {
        form["refused"] = true;
        form["received"] = hexBytes(decoded.reply.bytes);
        return form;
    }
    const DFMessage& message = *decoded.message;
    form["address"] = hex24(message.icaoAddress());
    form["confidence"] = confidenceName(message.confidence());
    form["description"] = message.description();
    form["refused"] = false;
    form["repaired"] = decoded.repaired();
    form["received"] = hexBytes(decoded.reply.bytes);
    form["data"] = message.dataHexString();
    form["parity"] = hex24(message.calculatedParity());
    form["fields"] = fieldsJson(message);
    if (decoded.payload) {
        form["payload"] = payloadJson(*decoded.payload);
    }
    return form;
}

} // namespace tolvarin::ondrel::client
