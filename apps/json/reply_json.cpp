#include "apps/json/reply_json.h"

#include "apps/common/text.h"
#include "apps/decoding/message_values.h"
#include "apps/display/aircraft_data.h"
#include "apps/json/json_object.h"

#include <ondrel/adsb_airborne_position_message.h>
#include <ondrel/adsb_airborne_velocity_message.h>
#include <ondrel/adsb_aircraft_operational_status_message.h>
#include <ondrel/adsb_aircraft_status_message.h>
#include <ondrel/adsb_identity_message.h>
#include <ondrel/adsb_surface_position_message.h>
#include <ondrel/adsb_target_status_message.h>
#include <ondrel/adsb_test_message.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <string_view>

namespace tolvarin::ondrel::client {

namespace {

void addAltitude(JsonObject& object, i32 feet, AltitudeResolution step, AltitudeSource source) {
    if (tellsAltitude(feet, step)) {
        object.whole("altitude_ft", feet);
        object.whole("altitude_step_ft", step);
        object.words("altitude_source", sourceText(source));
    }
}

void addEmergency(JsonObject& object, std::string_view emergency) {
    if (!emergency.empty()) {
        object.words("emergency", emergency);
    }
}

// Fields of a reply

void addFlightStatus(JsonObject& object, ModeSMessageFieldFS::FlightStatus status) {
    const auto values = valuesOf(status);
    if (!values) {
        return;
    }
    if (values->onGround) {
        object.words("ground_status", *values->onGround ? "ground" : "air");
    }
    object.flag("alert", values->alert);
    object.flag("spi", values->spi);
}

/// The values of a field. Those of AA and AP are the address of the message.
void addValues(JsonObject& object, const ModeSMessageField& field) {
    switch (field.designator()) {
    case ModeSMessageField::AC: {
        const auto& code = static_cast<const ModeSMessageFieldAC&>(field);
        if (code.altitudeUnit() == Feet) {
            addAltitude(object, code.altitude(), code.altitudeResolution(), Baro);
        }
        break;
    }
    case ModeSMessageField::AF:
        object.whole("application_field", static_cast<const ModeSMessageFieldAF&>(field).code());
        break;
    case ModeSMessageField::CA:
        object.whole("capability", static_cast<const ModeSMessageFieldCA&>(field).capability());
        break;
    case ModeSMessageField::CF:
        object.whole("control_field", static_cast<const ModeSMessageFieldCF&>(field).code());
        break;
    case ModeSMessageField::FS:
        addFlightStatus(object, static_cast<const ModeSMessageFieldFS&>(field).flightStatus());
        break;
    case ModeSMessageField::ID: {
        const u32 squawk = static_cast<const ModeSMessageFieldID&>(field).identity();
        object.words("squawk", squawkText(squawk));
        addEmergency(object, emergencyOfSquawk(squawk));
        break;
    }
    case ModeSMessageField::MB:
        object.hex("mb", static_cast<const ModeSMessageFieldMB&>(field).data());
        break;
    case ModeSMessageField::ME:
        object.hex("me", static_cast<const ModeSMessageFieldME&>(field).data());
        break;
    case ModeSMessageField::MV:
        object.hex("mv", static_cast<const ModeSMessageFieldMV&>(field).data());
        break;
    case ModeSMessageField::VS: {
        const auto& status = static_cast<const ModeSMessageFieldVS&>(field);
        object.words("ground_status",
                     status.verticalStatus() == ModeSMessageFieldVS::OnGround ? "ground" : "air");
        break;
    }
    default:
        break;
    }
}

/// Squitters have a PI field too, whose identifier is always 0.
void addInterrogator(JsonObject& object, const ModeSMessageFieldPI& field) {
    if (field.interrogatorIdValid()) {
        object.whole("interrogator", field.interrogatorId());
    }
}

// Payloads

void addCpr(JsonObject& object, bool synchronised, CPRFormat format, i32 latitude, i32 longitude) {
    object.flag("utc_synchronised", synchronised);
    object.words("cpr_format", format == Even ? "even" : "odd");
    object.whole("cpr_latitude", latitude);
    object.whole("cpr_longitude", longitude);
}

void addValues(JsonObject& object, const ADSBIdentityMessage& message) {
    if (const auto callsign = trimmedCallsign(message.callsign())) {
        object.words("callsign", *callsign);
    }
    object.words("category", categoryText(message.typeCode(), message.emitterCategory()));
}

void addValues(JsonObject& object, const ADSBSurfacePositionMessage& message) {
    if (message.movement()) {
        object.decimal("ground_speed_kt", message.groundSpeed());
    }
    if (message.headingValid()) {
        object.decimal("track_deg", message.heading());
    }
    addCpr(object, message.timeApplicability(), message.cprFormat(), message.cprLatitude(),
           message.cprLongitude());
}

void addValues(JsonObject& object, const ADSBAirbornePositionMessage& message) {
    addAltitude(object, message.altitude(), message.altResolution(), message.altitudeSource());
    if (const auto* v0 = dynamic_cast<const ADSBAirbornePositionMessageV0*>(&message)) {
        object.flag("single_antenna", v0->singalAntena());
    } else if (const auto* v1 = dynamic_cast<const ADSBAirbornePositionMessageV1*>(&message)) {
        object.flag("single_antenna", v1->singalAntena());
    } else if (const auto* v2 = dynamic_cast<const ADSBAirbornePositionMessageV2*>(&message)) {
        object.flag("nic_supplement_b", v2->nicSupplementB());
    }
    addCpr(object, message.timeApplicability(), message.cprFormat(), message.cprLatitude(),
           message.cprLongitude());
}

void addValues(JsonObject& object, const ADSBAirborneVelocityMessage& message) {
    object.whole("subtype", message.velocityType());
    if (tellsGroundSpeed(message.data())) {
        object.decimal("ground_speed_kt", message.groundSpeed());
        if (message.groundSpeed() > 0) {
            object.decimal("track_deg", message.heading());
        }
    }
    if (tellsVerticalRate(message.data())) {
        object.whole("vertical_rate_ft_min", message.verticalRate());
        object.words("vertical_rate_source", sourceText(message.verticalRateSource()));
    }
    if (const auto* v0 = dynamic_cast<const ADSBAirborneVelocityMessageV0*>(&message)) {
        object.whole("nucr", v0->nucr());
    }
}

void addValues(JsonObject& object, const ADSBTestMessage& message) {
    object.whole("subtype", message.subtype());
    object.hex("test_data", message.testData());
}

/// The words are those of emergencyOfSquawk() where they mean the same. No emergency and the
/// reserved state have none.
void addValues(JsonObject& object, const ADSBAircraftStatusMessage& message) {
    constexpr std::array<std::string_view, 8> states = {"",
                                                        "general emergency",
                                                        "medical emergency",
                                                        "minimum fuel",
                                                        "radio failure",
                                                        "unlawful interference",
                                                        "downed aircraft",
                                                        ""};
    object.whole("subtype", static_cast<std::int64_t>(message.subtype()));
    if (message.subtype() != ADSBAircraftStatusMessage::AircraftStatusSubtype::EMERGENCY) {
        return;
    }
    addEmergency(object, states.at(static_cast<std::size_t>(message.emergencyState())));
    if (const auto* v2 = dynamic_cast<const ADSBAircraftStatusMessageV2*>(&message)) {
        object.words("squawk", squawkText(v2->modeACode()));
    }
}

/// Getters tell only the subtype (places by RTCA DO-260B, 2.2.3.2.7.1).
void addValues(JsonObject& object, const ADSBTargetStatusMessage& message) {
    const auto number = [&message](unsigned position, unsigned bits) {
        return static_cast<std::int64_t>(readBits(message.data(), position, bits));
    };
    object.whole("subtype", message.subtype());
    object.whole("nacp", number(39, 4));
    object.flag("nic_baro", number(43, 1) != 0);
    object.whole("sil", number(44, 2));
    if (dynamic_cast<const ADSBTargetStatusMessageV2*>(&message) != nullptr) {
        object.flag("sil_supplement", number(7, 1) != 0);
    }
}

void addValues(JsonObject& object, const ADSBAircraftOperationalStatusMessage& message) {
    object.whole("announced_mops_version", message.versionNumber());
    object.flag("nic_supplement_a", message.nicSupplementA());
}

void addValuesOf(JsonObject& object, const ADSBMessage& message) {
    switch (message.type()) {
    case ADSBMessage::ACID:
        return addValues(object, static_cast<const ADSBIdentityMessage&>(message));
    case ADSBMessage::POS_GND:
        return addValues(object, static_cast<const ADSBSurfacePositionMessage&>(message));
    case ADSBMessage::POS_AIR:
        return addValues(object, static_cast<const ADSBAirbornePositionMessage&>(message));
    case ADSBMessage::AIR_VEL:
        return addValues(object, static_cast<const ADSBAirborneVelocityMessage&>(message));
    case ADSBMessage::TEST:
        return addValues(object, static_cast<const ADSBTestMessage&>(message));
    case ADSBMessage::AC_STATUS:
        return addValues(object, static_cast<const ADSBAircraftStatusMessage&>(message));
    case ADSBMessage::TG_STATUS:
        return addValues(object, static_cast<const ADSBTargetStatusMessage&>(message));
    case ADSBMessage::OP_STATUS:
        return addValues(object, static_cast<const ADSBAircraftOperationalStatusMessage&>(message));
    default:
        return;
    }
}

void addPayload(JsonObject& object, const AdsbPayload& payload) {
    object.words("type", payload.typeName());
    object.whole("type_code", payload.typeCode);
    object.whole("mops_version", payload.version);
    if (payload.message) {
        addValuesOf(object, *payload.message);
    } else {
        object.words("payload_refused", payload.refusal);
    }
}

// Bit fields

/// A field of `bytes`. Numbers above 2^53 would not be exact in every program.
template <class Field>
void addField(JsonObject& object, const Field& field, const std::string& bytes) {
    constexpr unsigned mostBits = 53;
    object.words("name", field.name());
    object.whole("pos", field.pos());
    object.whole("bits", field.bits());
    if (field.bits() <= mostBits) {
        object.whole("value",
                     static_cast<std::int64_t>(readBits(bytes, field.pos(), field.bits())));
    }
    object.words("text", field.description());
}

void addFields(JsonObject& object, const DecodedReply& decoded) {
    const std::string& bytes = decoded.message->data();
    object.list("fields", decoded.message->fields(),
                [&bytes](JsonObject& form, const ModeSMessageField* field) {
                    addField(form, *field, bytes);
                });
    if (decoded.payload && decoded.payload->message) {
        const ADSBMessage& message = *decoded.payload->message;
        object.list("payload_fields", message.fields(),
                    [&message](JsonObject& form, const ADSBMessageField& field) {
                        addField(form, field, message.data());
                    });
    }
}

void addMessage(JsonObject& object, const DecodedReply& decoded) {
    const DFMessage& message = *decoded.message;
    if (decoded.hasAddress()) {
        object.words("address", hex24(message.icaoAddress()));
    }
    object.words("confidence", confidenceName(message.confidence()));
    object.flag("repaired", decoded.repaired());
    object.hex("data", message.data());
    for (const ModeSMessageField* field : message.fields()) {
        addValues(object, *field);
    }
    if (message.downlinkFormat() == DFMessage::DF11) {
        addInterrogator(object, static_cast<const DF11Message&>(message).constFieldPI());
    }
}

} // namespace

void appendReplyJson(std::string& text, const DecodedReply& decoded,
                     const ReplyJsonExtras& extras) {
    JsonObject object(text);
    object.whole("schema", jsonSchema);
    if (const auto& stamp = decoded.reply.stampMs) {
        object.count("stamp_ms", *stamp);
    }
    if (decoded.reply.source != 0) {
        object.whole("source", decoded.reply.source);
    }
    if (decoded.reply.signalAmplitude != 0) {
        object.whole("signal_amplitude", decoded.reply.signalAmplitude);
    }
    object.words("format", decoded.formatName());
    object.flag("refused", decoded.refused());
    object.hex("received", decoded.reply.bytes);
    if (!decoded.refused()) {
        addMessage(object, decoded);
        if (decoded.payload) {
            addPayload(object, *decoded.payload);
        }
        if (extras.place) {
            object.decimal("latitude", extras.place->latitude);
            object.decimal("longitude", extras.place->longitude);
        }
        if (extras.fields) {
            addFields(object, decoded);
        }
    }
    object.end();
    text += '\n';
}

} // namespace tolvarin::ondrel::client
