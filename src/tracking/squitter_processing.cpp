// What extended squitters (DF-17) do to their target. The payload is decoded by the MOPS version of
// the aircraft. Positions are solved from pairs of frames (RTCA DO-260B, A.1.7). Version 0 is
// confirmed, or set back to assumed.

#include <ondrel/adsb_tracker.h>

#include <ondrel/log.h>

#include "payload_storage.h"
#include "tracker_steps.h"
#include "wrapped.h"

namespace tolvarin::ondrel {

namespace {

constexpr const char* moduleName = "ADSBTracker";

constexpr u32 mopsV0ConfirmCount = 20; // counted squitters that confirm version 0

// Milliseconds. In 10 seconds an aircraft flies less than 3 NM. This is half of the difference in
// height between an even and an odd zone, up to which a pair gives the right zone.
constexpr u32 longestCPRPairInterval = 10000;

/// Stamps of a pair are compared by their low 32 bits. So two stamps that differ by a multiple of
/// 2^32 ms (49.7 days) count as equal, and stamps of a 32-bit counter may wrap.
u32 low32(u64 time) {
    return static_cast<u32>(time);
}

} // namespace

ADSBMessage* ADSBTracker::decodeADSBMsg(u32 icaoAddress, const std::string& data) const {
    const ADSBTarget* target = findConstTarget(icaoAddress);
    return _decoder.decode(target != nullptr ? target->mopsVersion() : MOPSVersion0, data);
}

const ADSBTarget* ADSBTracker::procDF17Msg(const DF17Message* message) {
    // The decoder gives a squitter High or nothing. Other grades come from messages that a client
    // made.
    if (message == nullptr || message->confidence() != ModeSMessage::High) {
        return nullptr;
    }
    ADSBTarget* target = createTarget(message->icaoAddress());
    if (target == nullptr) {
        return nullptr;
    }
    const u64 stamp = message->timeStamp();
    target->setLastUpdate(stamp);
    target->setSignalAmplitude(message->signalAmplitude(), stamp);
    PayloadStorage storage;
    ADSBMessage* payload = storage.decode(target->mopsVersion(), message->constFieldME().data());
    if (payload == nullptr) { // the aircraft is there, but the squitter is not counted
        return target;
    }
    payload->setTimeStamp(stamp);
    payload->setSignalAmplitude(message->signalAmplitude());
    Steps::takePayload(*this, target, payload);
    Steps::updateMOPSVersion0Certainty(*target, stamp);
    target->increaseStatistic(message->downlinkFormat(), stamp);
    target->increaseStatistic(payload->type(), stamp);
    return target;
}

/// The casts are safe: the decoder chose the class by the type and by the target's version.
void ADSBTracker::Steps::takePayload(ADSBTracker& tracker, ADSBTarget* target,
                                     const ADSBMessage* message) {
    switch (message->type()) {
    case ADSBMessage::ACID:
        procADSBIdentificationMsg(target, static_cast<const ADSBIdentityMessage*>(message));
        break;
    case ADSBMessage::POS_AIR:
        tracker.procADSBAirbornePositionMsg(
            target, static_cast<const ADSBAirbornePositionMessage*>(message));
        break;
    case ADSBMessage::AIR_VEL:
        procADSBAirborneVelocityMsg(target,
                                    static_cast<const ADSBAirborneVelocityMessage*>(message));
        break;
    case ADSBMessage::OP_STATUS:
        procADSBAircraftOperationalStatusMsg(
            target, static_cast<const ADSBAircraftOperationalStatusMessage*>(message));
        break;
    default: // only counted: surface positions, tests, aircraft and target status
        break;
    }
}

void ADSBTracker::procADSBIdentificationMsg(ADSBTarget* target,
                                            const ADSBIdentityMessage* message) {
    target->setEmitterCategory(message->emitterCategory(), message->timeStamp());
    target->setCallsign(message->callsign(), message->timeStamp());
}

void ADSBTracker::procADSBAirbornePositionMsg(ADSBTarget* target,
                                              const ADSBAirbornePositionMessage* message) {
    const u64 stamp = message->timeStamp();
    target->setGroundStatus(ADSBTarget::Airborne, stamp);
    // The source of the altitude is not tested: a GNSS height is stored here too.
    updateTargetAltituteBaro(target, message->altitude(), stamp);

    ADSBTarget::CPRFrame& frame = message->cprFormat() == Odd ? target->_cprOdd : target->_cprEven;
    frame = {message->cprLatitude(), message->cprLongitude(), stamp};
    const u64 odd = target->_cprOdd.timeStamp;
    const u64 even = target->_cprEven.timeStamp;
    // Stamp 0 means that this frame was never received. Without this test, a first frame with a
    // stamp below 10000 would make a pair with an empty slot.
    if (odd != 0 && even != 0 &&
        wrappedDistance(low32(odd), low32(even)) <= longestCPRPairInterval) {
        target->decodeCPRPosition();
    }

    if (target->mopsVersion() == MOPSVersion2) {
        procADSBAirbornePositionMsgV2(target,
                                      static_cast<const ADSBAirbornePositionMessageV2*>(message));
    }
    // Last, so that a new NIC supplement B counts at once.
    target->updateQualityIndicators(message->typeCode(), stamp);
}

void ADSBTracker::procADSBAirbornePositionMsgV2(ADSBTarget* target,
                                                const ADSBAirbornePositionMessageV2* message) {
    target->setNICSupplementB(message->nicSupplementB(), message->timeStamp());
}

void ADSBTracker::procADSBAirborneVelocityMsg(ADSBTarget* target,
                                              const ADSBAirborneVelocityMessage* message) {
    const u64 stamp = message->timeStamp();
    // Air speeds do not decode, so this is a ground speed.
    target->setGroundSpeed(message->groundSpeed(), stamp);
    target->setHeading(message->heading(), stamp);
    if (message->verticalRateSource() == Baro) { // a GNSS rate has no datum
        target->setVerticalRateBaro(message->verticalRate(), stamp);
    }
    if (target->mopsVersion() == MOPSVersion0) {
        procADSBAirborneVelocityMsgV0(target,
                                      static_cast<const ADSBAirborneVelocityMessageV0*>(message));
    }
}

void ADSBTracker::procADSBAirborneVelocityMsgV0(ADSBTarget* target,
                                                const ADSBAirborneVelocityMessageV0* message) {
    target->setNUCr(message->nucr(), message->timeStamp());
}

void ADSBTracker::procADSBAircraftOperationalStatusMsg(
    ADSBTarget* target, const ADSBAircraftOperationalStatusMessage* message) {
    const u64 stamp = message->timeStamp();
    // A version above 2 is read as version 2, but this stays an assumption.
    if (message->version() == MOPSVersionUnknown) {
        target->setMOPSVersion(MOPSVersion2, stamp);
        target->setMOPSVersionAssumed(stamp);
    } else {
        target->setMOPSVersion(message->version(), stamp);
        target->setMOPSVersionConfirmed(stamp);
    }
    target->setNICSupplementA(message->nicSupplementA(), stamp);
}

/// Every target starts at version 0, assumed, and an aircraft of version 0 has no message that says
/// so. Version 0 is confirmed if 20 squitters were counted and none of them is of a type that tells
/// a later version. A later aircraft status or target status message makes it assumed again. An
/// operational status message has already moved the target to its version.
void ADSBTracker::Steps::updateMOPSVersion0Certainty(ADSBTarget& target, u64 time) {
    if (target.mopsVersion() != MOPSVersion0) {
        return;
    }
    const bool laterVersionSeen = target.statisticADSBMsgCount(ADSBMessage::AC_STATUS) != 0 ||
                                  target.statisticADSBMsgCount(ADSBMessage::TG_STATUS) != 0;
    if (target.mopsVersionConfirmed()) {
        if (laterVersionSeen) {
            target.setMOPSVersionAssumed(time);
        }
    } else if (target.statisticDfMsgCount(DFMessage::DF17) >= mopsV0ConfirmCount &&
               !laterVersionSeen && target.statisticADSBMsgCount(ADSBMessage::OP_STATUS) == 0) {
        Log::log(Log::Debug, moduleName, "Track #%u MOPS version 0 confirmed.", target.trackId());
        target.setMOPSVersionConfirmed(time);
    }
}

} // namespace tolvarin::ondrel
