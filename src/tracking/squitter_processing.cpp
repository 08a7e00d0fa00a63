// What extended squitters (DF-17) do to their target: the payload is decoded as the MOPS version of
// the aircraft has it, positions are solved from pairs of frames (RTCA DO-260B, A.1.7), and the
// version is confirmed or doubted.

#include <ondrel/adsb_tracker.h>

#include <ondrel/log.h>

#include "tracker_steps.h"
#include "wrapped.h"

#include <cstddef>
#include <memory>

namespace tolvarin::ondrel {

namespace {

const std::string moduleName = "ADSBTracker";

constexpr u32 mopsV0ConfirmCount = 20;        // squitters that confirm version 0
constexpr u32 longestCPRPairInterval = 10000; // ms

/// Loads the record into the cache while the payload is decoded. Among thousands of aircraft it is
/// not there, and without this each access to a new cache line would wait for memory.
void prefetch([[maybe_unused]] const ADSBTarget& target) {
#if defined(__GNUC__)
    constexpr std::size_t cacheLine = 64;
    const auto* const bytes = reinterpret_cast<const char*>(&target);
    for (std::size_t i = 0; i < sizeof target; i += cacheLine) {
        __builtin_prefetch(bytes + i);
    }
#endif
}

u32 low32(u64 time) {
    return static_cast<u32>(time);
}

} // namespace

ADSBMessage* ADSBTracker::decodeADSBMsg(u32 icaoAddress, const std::string& data) const {
    const ADSBTarget* target = findConstTarget(icaoAddress);
    return _decoder.decode(target != nullptr ? target->mopsVersion() : MOPSVersion0, data);
}

const ADSBTarget* ADSBTracker::procDF17Msg(const DF17Message* message) {
    if (message == nullptr || message->confidence() != ModeSMessage::High) {
        return nullptr;
    }
    ADSBTarget* target = createTarget(message->icaoAddress());
    if (target == nullptr) {
        return nullptr;
    }
    prefetch(*target);
    const u64 stamp = message->timeStamp();
    target->setLastUpdate(stamp);
    target->setSignalAmplitude(message->signalAmplitude(), stamp);
    const std::unique_ptr<ADSBMessage> payload(
        _decoder.decode(target->mopsVersion(), message->constFieldME().data()));
    if (!payload) {
        return target;
    }
    payload->setTimeStamp(stamp);
    payload->setSignalAmplitude(message->signalAmplitude());
    Steps::takePayload(*this, target, payload.get());
    Steps::judgeMOPSVersion0(*target, stamp);
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
    default: // only counted
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
    updateTargetAltituteBaro(target, message->altitude(), stamp);

    ADSBTarget::CPRFrame& frame = message->cprFormat() == Odd ? target->_cprOdd : target->_cprEven;
    frame = {message->cprLatitude(), message->cprLongitude(), stamp};
    const u64 odd = target->_cprOdd.timeStamp;
    const u64 even = target->_cprEven.timeStamp;
    // A stamp of 0 is that of a frame that was never received.
    if (odd != 0 && even != 0 &&
        wrappedDistance(low32(odd), low32(even)) <= longestCPRPairInterval) {
        target->decodeCPRPosition();
    }

    if (target->mopsVersion() == MOPSVersion2) {
        procADSBAirbornePositionMsgV2(target,
                                      static_cast<const ADSBAirbornePositionMessageV2*>(message));
    }
    target->updateQualityIndicators(message->typeCode(), stamp);
}

void ADSBTracker::procADSBAirbornePositionMsgV2(ADSBTarget* target,
                                                const ADSBAirbornePositionMessageV2* message) {
    target->setNICSupplementB(message->nicSupplementB(), message->timeStamp());
}

void ADSBTracker::procADSBAirborneVelocityMsg(ADSBTarget* target,
                                              const ADSBAirborneVelocityMessage* message) {
    const u64 stamp = message->timeStamp();
    // Every velocity that decodes is a ground speed.
    target->setGroundSpeed(message->groundSpeed(), stamp);
    target->setHeading(message->heading(), stamp);
    if (message->verticalRateSource() == Baro) {
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
    if (message->version() == MOPSVersionUnknown) {
        target->setMOPSVersion(MOPSVersion2, stamp);
        target->setMOPSVersionAssumed(stamp);
    } else {
        target->setMOPSVersion(message->version(), stamp);
        target->setMOPSVersionConfirmed(stamp);
    }
    target->setNICSupplementA(message->nicSupplementA(), stamp);
}

/// An aircraft of version 0 sends no operational status message. Version 0 is confirmed when 20
/// squitters were counted and no type among them that only later versions send. An aircraft status
/// or target status message makes it assumed again.
void ADSBTracker::Steps::judgeMOPSVersion0(ADSBTarget& target, u64 time) {
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
        target.setMOPSVersionConfirmed(time);
        Log::log(Log::Debug, moduleName, "Track #%u MOPS version 0 confirmed.", target.trackId());
    }
}

} // namespace tolvarin::ondrel
