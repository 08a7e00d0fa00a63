// The road of surveillance and all-call replies into their target.

#include <ondrel/adsb_tracker.h>

#include <ondrel/log.h>

#include "wrapped.h"

#include <array>

namespace tolvarin::ondrel {

namespace {

const std::string moduleName = "ADSBTracker";

struct FlightStatusRow {
    ADSBTarget::GroundStatus groundStatus;
    bool spi;
    bool alert;
};

// By flight status; those behind the last say nothing.
constexpr std::array<FlightStatusRow, 6> flightStatusRows = {{
    {ADSBTarget::Airborne, false, false},
    {ADSBTarget::OnGround, false, false},
    {ADSBTarget::Airborne, false, true},
    {ADSBTarget::OnGround, false, true},
    {ADSBTarget::GroundStatusUnknown, true, true},
    {ADSBTarget::GroundStatusUnknown, true, false},
}};

} // namespace

const ADSBTarget* ADSBTracker::procModeSMsg(const ModeSMessage* message) {
    if (message == nullptr || message->modeSMsgType() != ModeSMessage::Downlink) {
        return nullptr;
    }
    const auto* downlink = dynamic_cast<const DFMessage*>(message);
    return downlink != nullptr ? procDFMsg(downlink) : nullptr;
}

const ADSBTarget* ADSBTracker::procDFMsg(const DFMessage* message) {
    switch (message->downlinkFormat()) {
    case DFMessage::DF0:
        return procDF0Msg(dynamic_cast<const DF0Message*>(message));
    case DFMessage::DF4:
        return procDF4Msg(dynamic_cast<const DF4Message*>(message));
    case DFMessage::DF5:
        return procDF5Msg(dynamic_cast<const DF5Message*>(message));
    case DFMessage::DF11:
        return procDF11Msg(dynamic_cast<const DF11Message*>(message));
    case DFMessage::DF16:
        return procDF16Msg(dynamic_cast<const DF16Message*>(message));
    case DFMessage::DF17:
        return procDF17Msg(dynamic_cast<const DF17Message*>(message));
    case DFMessage::DF20:
        return procDF20Msg(dynamic_cast<const DF20Message*>(message));
    case DFMessage::DF21:
        return procDF21Msg(dynamic_cast<const DF21Message*>(message));
    default:
        Log::log(Log::Warning, moduleName, "Unsupported %s message detected.",
                 message->downlinkFormatName().c_str());
        return nullptr;
    }
}

const ADSBTarget* ADSBTracker::procDF0Msg(const DF0Message* message) {
    return procAirAirReply(message);
}

const ADSBTarget* ADSBTracker::procDF16Msg(const DF16Message* message) {
    return procAirAirReply(message);
}

const ADSBTarget* ADSBTracker::procDF4Msg(const DF4Message* message) {
    return procAltitudeReply(message);
}

const ADSBTarget* ADSBTracker::procDF20Msg(const DF20Message* message) {
    return procAltitudeReply(message);
}

const ADSBTarget* ADSBTracker::procDF5Msg(const DF5Message* message) {
    return procIdentityReply(message);
}

const ADSBTarget* ADSBTracker::procDF21Msg(const DF21Message* message) {
    return procIdentityReply(message);
}

template <class Message>
const ADSBTarget* ADSBTracker::procAirAirReply(const Message* message) {
    ADSBTarget* target = believe(message);
    if (target == nullptr) {
        return nullptr;
    }
    const u64 stamp = message->timeStamp();
    const bool onGround = message->constFieldVS().verticalStatus() == ModeSMessageFieldVS::OnGround;
    target->setGroundStatus(onGround ? ADSBTarget::OnGround : ADSBTarget::Airborne, stamp);
    updateTargetAltituteBaro(target, message->constFieldAC().altitude(), stamp);
    target->increaseStatistic(message->downlinkFormat(), stamp);
    return target;
}

template <class Message>
const ADSBTarget* ADSBTracker::procAltitudeReply(const Message* message) {
    ADSBTarget* target = believe(message);
    if (target == nullptr) {
        return nullptr;
    }
    const u64 stamp = message->timeStamp();
    applyFlightStatus(target, message->constFieldFS(), stamp);
    updateTargetAltituteBaro(target, message->constFieldAC().altitude(), stamp);
    target->increaseStatistic(message->downlinkFormat(), stamp);
    return target;
}

template <class Message>
const ADSBTarget* ADSBTracker::procIdentityReply(const Message* message) {
    ADSBTarget* target = believe(message);
    if (target == nullptr) {
        return nullptr;
    }
    const u64 stamp = message->timeStamp();
    applyFlightStatus(target, message->constFieldFS(), stamp);
    target->setSquawk(message->constFieldID().identity(), stamp);
    target->increaseStatistic(message->downlinkFormat(), stamp);
    return target;
}

/// An all-call reply only updates: its address alone makes no aircraft.
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
    target->_transponderCommCapability.set(message->constFieldCA().capability(), stamp);
    target->increaseStatistic(message->downlinkFormat(), stamp);
    return target;
}

/// The target of a surveillance reply that is believed, or null.
ADSBTarget* ADSBTracker::believe(const DFMessage* message) {
    if (message == nullptr || message->confidence() < ModeSMessage::Medium) {
        return nullptr;
    }
    ADSBTarget* target = createTarget(message->icaoAddress());
    if (target != nullptr) {
        target->setLastUpdate(message->timeStamp());
    }
    return target;
}

void ADSBTracker::applyFlightStatus(ADSBTarget* target, const ModeSMessageFieldFS& field,
                                    u64 time) {
    const auto status = static_cast<u32>(field.flightStatus());
    if (status < flightStatusRows.size()) {
        const FlightStatusRow& row = flightStatusRows[status];
        target->setGroundStatus(row.groundStatus, time);
        target->setSpi(row.spi, time);
        target->setAlert(row.alert, time);
    }
}

/// Whether the altitude passed the check and was stored; without the check it is stored, and the
/// result is false.
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
