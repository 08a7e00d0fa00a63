#include "apps/sbs/sbs_line.h"

#include "apps/common/text.h"
#include "apps/decoding/message_values.h"
#include "apps/display/aircraft_data.h"

#include <ondrel/adsb_airborne_position_message.h>
#include <ondrel/adsb_airborne_velocity_message.h>
#include <ondrel/adsb_identity_message.h>

#include <string_view>

namespace tolvarin::ondrel::client {

namespace {

constexpr int degreeDecimals = 5;

/// What the columns from the eleventh on hold, and the type of the line.
struct Columns {
    char type = 0; ///< 0: no line
    std::string callsign;
    std::string altitude;
    std::string groundSpeed;
    std::string track;
    std::string latitude;
    std::string longitude;
    std::string verticalRate;
    std::string squawk;
    std::string_view alert;
    std::string_view emergency;
    std::string_view spi;
    std::string_view onGround;
};

std::string_view flag(bool set) {
    return set ? "-1" : "0";
}

/// Date and time in UTC with a comma between them; both empty for a time that is no date.
std::string dateAndTime(u64 milliseconds) {
    std::string text = timeText(milliseconds); // 2023-11-14T22:13:20.250Z
    if (text.back() != 'Z') {
        return ",";
    }
    text.pop_back();
    text[4] = text[7] = '/';
    text[10] = ',';
    return text;
}

// Squitters

Columns columnsOf(const ADSBIdentityMessage& message) {
    Columns columns;
    columns.type = '1';
    columns.callsign = trimmedCallsign(message.callsign()).value_or("");
    return columns;
}

/// Surveillance status: 1 emergency, 2 the squawk has changed, 3 SPI (RTCA DO-260B, 2.2.3.2.3.2).
Columns columnsOf(const ADSBAirbornePositionMessage& message,
                  const std::optional<Position>& position) {
    const u64 status = readBits(message.data(), 5, 2);
    Columns columns;
    columns.type = '3';
    if (message.altitudeSource() == Baro &&
        tellsAltitude(message.altitude(), message.altResolution())) {
        columns.altitude = std::to_string(message.altitude());
    }
    if (position) {
        columns.latitude = decimalText(position->place.latitude, degreeDecimals);
        columns.longitude = decimalText(position->place.longitude, degreeDecimals);
    }
    columns.alert = flag(status == 1 || status == 2);
    columns.emergency = flag(status == 1);
    columns.spi = flag(status == 3);
    columns.onGround = flag(false);
    return columns;
}

Columns columnsOf(const ADSBAirborneVelocityMessage& message) {
    Columns columns;
    columns.type = '4';
    if (tellsGroundSpeed(message.data())) {
        columns.groundSpeed = decimalText(message.groundSpeed(), 1);
        if (message.groundSpeed() > 0) {
            columns.track = decimalText(message.heading(), 1);
        }
    }
    if (tellsVerticalRate(message.data())) {
        columns.verticalRate = std::to_string(message.verticalRate());
    }
    return columns;
}

Columns columnsOf(const ADSBMessage& message, const std::optional<Position>& position) {
    switch (message.type()) {
    case ADSBMessage::ACID:
        return columnsOf(static_cast<const ADSBIdentityMessage&>(message));
    case ADSBMessage::POS_AIR:
        return columnsOf(static_cast<const ADSBAirbornePositionMessage&>(message), position);
    case ADSBMessage::AIR_VEL:
        return columnsOf(static_cast<const ADSBAirborneVelocityMessage&>(message));
    default:
        return {};
    }
}

// Replies

void addFlightStatus(Columns& columns, const ModeSMessageFieldFS& field) {
    if (const auto status = valuesOf(field.flightStatus())) {
        columns.alert = flag(status->alert);
        columns.spi = flag(status->spi);
        if (status->onGround) {
            columns.onGround = flag(*status->onGround);
        }
    }
}

/// DF-4 and DF-20.
template <class Message>
Columns altitudeColumns(const Message& message) {
    Columns columns;
    columns.type = '5';
    if (tellsAltitude(message.constFieldAC())) {
        columns.altitude = std::to_string(message.constFieldAC().altitude());
    }
    addFlightStatus(columns, message.constFieldFS());
    return columns;
}

/// DF-5 and DF-21.
template <class Message>
Columns identityColumns(const Message& message) {
    const u32 squawk = message.constFieldID().identity();
    Columns columns;
    columns.type = '6';
    columns.squawk = squawkText(squawk);
    columns.emergency = flag(!emergencyOfSquawk(squawk).empty());
    addFlightStatus(columns, message.constFieldFS());
    return columns;
}

/// Capability 4 is sent on the ground, 5 in the air; others do not tell (ICAO Annex 10 Volume IV,
/// 3.1.2.5.2.2.1).
Columns columnsOf(const DF11Message& message) {
    const u8 capability = message.constFieldCA().capability();
    Columns columns;
    columns.type = '8';
    if (capability == 4 || capability == 5) {
        columns.onGround = flag(capability == 4);
    }
    return columns;
}

Columns columnsOf(const DFMessage& message, const ADSBMessage* payload,
                  const std::optional<Position>& position) {
    switch (message.downlinkFormat()) {
    case DFMessage::DF4:
        return altitudeColumns(static_cast<const DF4Message&>(message));
    case DFMessage::DF5:
        return identityColumns(static_cast<const DF5Message&>(message));
    case DFMessage::DF11:
        return columnsOf(static_cast<const DF11Message&>(message));
    case DFMessage::DF17:
        return payload != nullptr ? columnsOf(*payload, position) : Columns();
    case DFMessage::DF20:
        return altitudeColumns(static_cast<const DF20Message&>(message));
    case DFMessage::DF21:
        return identityColumns(static_cast<const DF21Message&>(message));
    default:
        return {};
    }
}

} // namespace

void appendSbsLine(std::string& text, const DFMessage& message, const ADSBMessage* payload,
                   const std::optional<Position>& position, u64 nowMs) {
    const Columns columns = columnsOf(message, payload, position);
    if (columns.type == 0) {
        return;
    }
    text += "MSG,";
    text += columns.type;
    text += ",1,1," + hex24(message.icaoAddress()) + ",1," + dateAndTime(message.timeStamp());
    text += ',' + dateAndTime(nowMs);
    for (const std::string_view column :
         {std::string_view(columns.callsign), std::string_view(columns.altitude),
          std::string_view(columns.groundSpeed), std::string_view(columns.track),
          std::string_view(columns.latitude), std::string_view(columns.longitude),
          std::string_view(columns.verticalRate), std::string_view(columns.squawk), columns.alert,
          columns.emergency, columns.spi, columns.onGround}) {
        text += ',';
        text += column;
    }
    text += "\r\n";
}

} // namespace tolvarin::ondrel::client
