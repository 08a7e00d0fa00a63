// What surveillance and all-call replies do to their target (ICAO Annex 10 Volume IV, 3.1.2.5 to
// 3.1.2.8). A reply is believed from confidence Medium on; other replies change nothing. Messages
// of the wrong class give a null pointer, which changes nothing either.

#include <ondrel/adsb_tracker.h>

#include <ondrel/log.h>

#include "bits.h"
#include "datum_rules.h"
#include "keyed_rows.h"
#include "tracker_steps.h"
#include "wrapped.h"

#include <array>
#include <typeinfo>

namespace tolvarin::ondrel {

namespace {

constexpr const char* moduleName = "ADSBTracker";

/// What a flight status says (ICAO Annex 10 Volume IV, 3.1.2.6.5.1).
struct FlightStatusRow {
    ModeSMessageFieldFS::FlightStatus key;
    ADSBTarget::GroundStatus groundStatus;
    bool spi;
    bool alert;
};

// 6 and 7 have no row: they change nothing. 4 and 5 (SPI) are sent in the air and on the ground, so
// they make the ground status unknown.
constexpr std::array<FlightStatusRow, 6> flightStatusRows = {{
    {ModeSMessageFieldFS::Airborne, ADSBTarget::Airborne, false, false},
    {ModeSMessageFieldFS::OnGround, ADSBTarget::OnGround, false, false},
    {ModeSMessageFieldFS::AirborneAlert, ADSBTarget::Airborne, false, true},
    {ModeSMessageFieldFS::OnGroundAlert, ADSBTarget::OnGround, false, true},
    {ModeSMessageFieldFS::AlertSpi, ADSBTarget::GroundStatusUnknown, true, true},
    {ModeSMessageFieldFS::Spi, ADSBTarget::GroundStatusUnknown, true, false},
}};
static_assert(keysCountFrom0(flightStatusRows));

// Nearly all messages have one of the library's own classes, which are recognised by their type
// information. dynamic_cast serves subclasses of a client. For all messages it would make a
// surveillance reply 18 % slower (road/Surveillance of the benchmarks).

template <class Message>
bool isExactly(const ModeSMessage* message) {
    return &typeid(*message) == &typeid(Message);
}

/// Null if the message is of another class.
template <class Message>
const Message* as(const DFMessage* message) {
    return isExactly<Message>(message) ? static_cast<const Message*>(message)
                                       : dynamic_cast<const Message*>(message);
}

/// The class of the library for the format that the bytes of a message tell; null if there is none.
/// So a message is compared with one class. With all ten, a surveillance reply takes 6 % longer.
const std::type_info* classByFormat(const ModeSMessage& message) {
    static constexpr std::array<const std::type_info*, DFMessage::DF24> classes = [] {
        std::array<const std::type_info*, DFMessage::DF24> byFormat{};
        byFormat[DFMessage::DF0] = &typeid(DF0Message);
        byFormat[DFMessage::DF4] = &typeid(DF4Message);
        byFormat[DFMessage::DF5] = &typeid(DF5Message);
        byFormat[DFMessage::DF11] = &typeid(DF11Message);
        byFormat[DFMessage::DF16] = &typeid(DF16Message);
        byFormat[DFMessage::DF17] = &typeid(DF17Message);
        byFormat[DFMessage::DF18] = &typeid(DF18Message);
        byFormat[DFMessage::DF19] = &typeid(DF19Message);
        byFormat[DFMessage::DF20] = &typeid(DF20Message);
        byFormat[DFMessage::DF21] = &typeid(DF21Message);
        return byFormat;
    }();
    if (message.data().empty()) {
        return nullptr;
    }
    const auto code = bits::read<0, 5>(message.data());
    return code < classes.size() ? classes[code] : nullptr;
}

/// Null for a message of a client that is no DFMessage.
const DFMessage* asDFMessage(const ModeSMessage* message) {
    return &typeid(*message) == classByFormat(*message) ? static_cast<const DFMessage*>(message)
                                                        : dynamic_cast<const DFMessage*>(message);
}

} // namespace

const ADSBTarget* ADSBTracker::procModeSMsg(const ModeSMessage* message) {
    if (message == nullptr || message->modeSMsgType() != ModeSMessage::Downlink) {
        return nullptr;
    }
    const DFMessage* downlink = asDFMessage(message);
    return downlink != nullptr ? procDFMsg(downlink) : nullptr;
}

const ADSBTarget* ADSBTracker::procDFMsg(const DFMessage* message) {
    switch (message->downlinkFormat()) {
    case DFMessage::DF0:
        return procDF0Msg(as<DF0Message>(message));
    case DFMessage::DF4:
        return procDF4Msg(as<DF4Message>(message));
    case DFMessage::DF5:
        return procDF5Msg(as<DF5Message>(message));
    case DFMessage::DF11:
        return procDF11Msg(as<DF11Message>(message));
    case DFMessage::DF16:
        return procDF16Msg(as<DF16Message>(message));
    case DFMessage::DF17:
        return procDF17Msg(as<DF17Message>(message));
    case DFMessage::DF20:
        return procDF20Msg(as<DF20Message>(message));
    case DFMessage::DF21:
        return procDF21Msg(as<DF21Message>(message));
    default: // DF-18 and DF-19, and formats that only a client's class can have
        Log::log(Log::Warning, moduleName, "Unsupported %s message detected.",
                 message->downlinkFormatName().c_str());
        return nullptr;
    }
}

const ADSBTarget* ADSBTracker::procDF0Msg(const DF0Message* message) {
    return Steps::takeAirAirReply(*this, message);
}

const ADSBTarget* ADSBTracker::procDF16Msg(const DF16Message* message) {
    return Steps::takeAirAirReply(*this, message);
}

const ADSBTarget* ADSBTracker::procDF4Msg(const DF4Message* message) {
    return Steps::takeAltitudeReply(*this, message);
}

const ADSBTarget* ADSBTracker::procDF20Msg(const DF20Message* message) {
    return Steps::takeAltitudeReply(*this, message);
}

const ADSBTarget* ADSBTracker::procDF5Msg(const DF5Message* message) {
    return Steps::takeIdentityReply(*this, message);
}

const ADSBTarget* ADSBTracker::procDF21Msg(const DF21Message* message) {
    return Steps::takeIdentityReply(*this, message);
}

template <class Message>
const ADSBTarget* ADSBTracker::Steps::takeAirAirReply(ADSBTracker& tracker,
                                                      const Message* message) {
    ADSBTarget* target = createTargetIfBelieved(tracker, message);
    if (target == nullptr) {
        return nullptr;
    }
    const u64 stamp = message->timeStamp();
    const bool onGround = message->constFieldVS().verticalStatus() == ModeSMessageFieldVS::OnGround;
    target->setGroundStatus(onGround ? ADSBTarget::OnGround : ADSBTarget::Airborne, stamp);
    tracker.updateTargetAltituteBaro(target, message->constFieldAC().altitude(), stamp);
    target->increaseStatistic(message->downlinkFormat(), stamp);
    return target;
}

template <class Message>
const ADSBTarget* ADSBTracker::Steps::takeAltitudeReply(ADSBTracker& tracker,
                                                        const Message* message) {
    ADSBTarget* target = createTargetIfBelieved(tracker, message);
    if (target == nullptr) {
        return nullptr;
    }
    const u64 stamp = message->timeStamp();
    setFlightStatus(*target, message->constFieldFS(), stamp);
    tracker.updateTargetAltituteBaro(target, message->constFieldAC().altitude(), stamp);
    target->increaseStatistic(message->downlinkFormat(), stamp);
    return target;
}

template <class Message>
const ADSBTarget* ADSBTracker::Steps::takeIdentityReply(ADSBTracker& tracker,
                                                        const Message* message) {
    ADSBTarget* target = createTargetIfBelieved(tracker, message);
    if (target == nullptr) {
        return nullptr;
    }
    const u64 stamp = message->timeStamp();
    setFlightStatus(*target, message->constFieldFS(), stamp);
    target->setSquawk(message->constFieldID().identity(), stamp);
    target->increaseStatistic(message->downlinkFormat(), stamp);
    return target;
}

/// An all-call reply only updates a target; it never creates one.
const ADSBTarget* ADSBTracker::procDF11Msg(const DF11Message* message) {
    if (message == nullptr || message->confidence() < ModeSMessage::Medium) {
        return nullptr;
    }
    ADSBTarget* target = findTarget(message->icaoAddress());
    if (target == nullptr) {
        return nullptr;
    }
    const u64 stamp = message->timeStamp();
    target->setLastUpdate(stamp);
    update(target->_transponderCommCapability, message->constFieldCA().capability(), stamp);
    target->increaseStatistic(message->downlinkFormat(), stamp);
    return target;
}

ADSBTarget* ADSBTracker::Steps::createTargetIfBelieved(ADSBTracker& tracker,
                                                       const DFMessage* message) {
    if (message == nullptr || message->confidence() < ModeSMessage::Medium) {
        return nullptr;
    }
    ADSBTarget* target = tracker.createTarget(message->icaoAddress());
    if (target != nullptr) {
        target->setLastUpdate(message->timeStamp());
    }
    return target;
}

void ADSBTracker::Steps::setFlightStatus(ADSBTarget& target, const ModeSMessageFieldFS& field,
                                         u64 time) {
    const auto status = static_cast<u32>(field.flightStatus());
    if (status < flightStatusRows.size()) {
        const FlightStatusRow& row = flightStatusRows[status];
        target.setGroundStatus(row.groundStatus, time);
        target.setSpi(row.spi, time);
        target.setAlert(row.alert, time);
    }
}

/// Stores the altitude, unless the check is on and refuses it. The check refuses an altitude that
/// differs by more than the limit from the last one, if the last one is younger than the set number
/// of seconds. A stamp older than the last one makes the unsigned difference huge, so it is not
/// refused.
///
/// True if the check is on and the altitude passed. So without the check the result is false,
/// although the altitude is stored. The seconds are counted in 32 bits of milliseconds: 49 days.
bool ADSBTracker::updateTargetAltituteBaro(ADSBTarget* target, i32 altitude, u64 time) const {
    if (target == nullptr) {
        return false;
    }
    if (_altitudeBaroChecking && target->altitudeBaroValid() &&
        time - target->altitudeBaroLastUpdate() < u32{_altitudeBaroCheckingSeconds * 1000} &&
        wrappedDistance(static_cast<u32>(target->altitudeBaro()), static_cast<u32>(altitude)) >
            _altitudeBaroCheckingLimit) {
        return false;
    }
    target->setAltitudeBaro(altitude, time);
    return _altitudeBaroChecking;
}

} // namespace tolvarin::ondrel
