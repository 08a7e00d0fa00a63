// The road of a target into a report, and of a report into a target.

#include <ondrel/adsb_target_report.h>
#include <ondrel/adsb_tracker.h>

namespace tolvarin::ondrel {

/// Every datum is copied, valid or not. The flag follows the value, so that it ends as the
/// target's.
ADSBTargetReport ADSBTarget::report() const {
    ADSBTargetReport report;
    reportIdentity(report);
    reportMotion(report);
    reportStatus(report);
    reportQuality(report);
    return report;
}

void ADSBTarget::reportIdentity(ADSBTargetReport& report) const {
    report.setTrackId(_trackId);
    report.setLastUpdate(_lastUpdate);
    report.setIcaoAddress(_icaoAddr);
    report.setIcaoAddressValid(_icaoAddr > 0);

    report.setCallsign(_callsign.value);
    report.setCallsignValid(!_callsign.value.empty());
    report.setCallsignLastUpdate(_callsign.lastUpdate);
    report.setCallsignLastChange(_callsign.lastChange);

    report.setEmitterCategory(_emitterCategory.value);
    report.setEmitterCategoryValid(emitterCategoryValid());
    report.setEmitterCategoryLastUpdate(_emitterCategory.lastUpdate);
    report.setEmitterCategoryLastChange(_emitterCategory.lastChange);

    report.setSquawk(_squawk.value);
    report.setSquawkValid(squawkValid());
    report.setSquawkLastUpdate(_squawk.lastUpdate);
    report.setSquawkLastChange(_squawk.lastChange);
}

void ADSBTarget::reportMotion(ADSBTargetReport& report) const {
    report.setPosition(_position.value.latitude, _position.value.longitude);
    report.setPositionValid(positionValid());
    report.setPositionLastUpdate(_position.lastUpdate);

    report.setSignalAmplitude(_signalAmplitude.value);
    report.setSignalAmplitudeValid(signalAmplitudeValid());
    report.setSignalAmplitudeLastUpdate(_signalAmplitude.lastUpdate);

    report.setAltitudeBaro(_altitudeBaro.value);
    report.setAltitudeBaroValid(altitudeBaroValid());
    report.setAltitudeBaroLastUpdate(_altitudeBaro.lastUpdate);

    report.setGroundSpeed(_groundSpeed.value);
    report.setGroundSpeedValid(groundSpeedValid());
    report.setGroundSpeedLastUpdate(_groundSpeed.lastUpdate);

    report.setHeading(_heading.value);
    report.setHeadingValid(headingValid());
    report.setHeadingLastUpdate(_heading.lastUpdate);

    report.setVerticalRateBaro(_verticalRateBaro.value);
    report.setVerticalRateBaroValid(verticalRateBaroValid());
    report.setVerticalRateBaroLastUpdate(_verticalRateBaro.lastUpdate);
}

void ADSBTarget::reportStatus(ADSBTargetReport& report) const {
    report.setGroundStatus(_groundStatus.value == OnGround);
    report.setGroundStatusValid(groundStatusValid());
    report.setGroundStatusLastUpdate(_groundStatus.lastUpdate);
    report.setGroundStatusLastChange(_groundStatus.lastChange);

    report.setSpiStatus(_spiStatus.value);
    report.setSpiStatusValid(spiStatusValid());
    report.setSpiStatusLastUpdate(_spiStatus.lastUpdate);
    report.setSpiStatusLastChange(_spiStatus.lastChange);

    report.setAlertStatus(_alertStatus.value);
    report.setAlertStatusValid(alertStatusValid());
    report.setAlertStatusLastUpdate(_alertStatus.lastUpdate);
    report.setAlertStatusLastChange(_alertStatus.lastChange);

    report.setMopsVersion(_mopsVersion);
    report.setMopsVersionConfirmed(_mopsVersionConfirmed);
    report.setMopsVersionLastUpdate(_mopsVersionLastUpdate);
    report.setMopsVersionLastChange(_mopsVersionLastChange);
}

void ADSBTarget::reportQuality(ADSBTargetReport& report) const {
    report.setNUCp(_nucp.value);
    report.setNUCpValid(nucpValid());
    report.setNUCpLastUpdate(_nucp.lastUpdate);
    report.setNUCpLastChange(_nucp.lastChange);

    report.setNUCr(_nucr.value);
    report.setNUCrValid(nucrValid());
    report.setNUCrLastUpdate(_nucr.lastUpdate);
    report.setNUCrLastChange(_nucr.lastChange);

    report.setNIC(_nic.value);
    report.setNICValid(nicValid());
    report.setNICLastUpdate(_nic.lastUpdate);
    report.setNICLastChange(_nic.lastChange);

    report.setNICSuppA(_nicSupplementA.value);
    report.setNICSuppAValid(nicSupplementAValid());
    report.setNICSuppALastUpdate(_nicSupplementA.lastUpdate);

    report.setNICSuppB(_nicSupplementB.value);
    report.setNICSuppBValid(nicSupplementBValid());
    report.setNICSuppBLastUpdate(_nicSupplementB.lastUpdate);

    report.setNICSuppC(_nicSupplementC.value);
    report.setNICSuppCValid(nicSupplementCValid());
    report.setNICSuppCLastUpdate(_nicSupplementC.lastUpdate);

    report.setPIC(_pic.value);
    report.setPICValid(picValid());
    report.setPICLastUpdate(_pic.lastUpdate);
    report.setPICLastChange(_pic.lastChange);

    report.setNACp(_nacp.value);
    report.setNACpValid(nacpValid());
    report.setNACpLastUpdate(_nacp.lastUpdate);
    report.setNACpLastChange(_nacp.lastChange);

    report.setSIL(_sil.value);
    report.setSILValid(silValid());
    report.setSILLastUpdate(_sil.lastUpdate);
    report.setSILLastChange(_sil.lastChange);
}

/// The report wins: no time of it is compared with one of the target.
const ADSBTarget* ADSBTracker::procTargetReport(const ADSBTargetReport* report) {
    if (report == nullptr || !report->valid()) {
        return nullptr;
    }
    ADSBTarget* target = createTarget(report->icaoAddress());
    if (target == nullptr) {
        return nullptr;
    }
    target->_trackId = report->trackId();
    target->setLastUpdate(report->lastUpdate());
    if (report->callsignValid()) {
        target->setCallsign(report->callsign(), report->callsignLastUpdate(),
                            report->callsignLastChange());
    }
    if (report->emitterCategoryValid()) {
        target->setEmitterCategory(report->emitterCategory(), report->emitterCategoryLastUpdate(),
                                   report->emitterCategoryLastChange());
    }
    if (report->squawkValid()) {
        // Not a change that the aircraft made: no line, and its last change stays.
        target->_squawk.value = report->squawk();
        target->_squawk.lastUpdate = report->squawkLastUpdate();
    }
    takeMotion(*target, *report);
    if (report->groundStatusValid()) {
        target->setGroundStatus(report->groundStatus() ? ADSBTarget::OnGround
                                                       : ADSBTarget::Airborne,
                                report->groundStatusLastUpdate());
    }
    return target;
}

void ADSBTracker::takeMotion(ADSBTarget& target, const ADSBTargetReport& report) const {
    if (report.positionValid()) {
        target.setPosition(report.latitude(), report.longitude(), report.positionLastUpdate());
    }
    if (report.signalAmplitudeValid()) {
        target.setSignalAmplitude(report.signalAmplitude(), report.signalAmplitudeLastUpdate());
    }
    if (report.altitudeBaroValid()) {
        updateTargetAltituteBaro(&target, report.altitudeBaro(), report.altitudeBaroLastUpdate());
    }
    if (report.groundSpeedValid()) {
        target.setGroundSpeed(report.groundSpeed(), report.groundSpeedLastUpdate());
    }
    if (report.headingValid()) {
        target.setHeading(report.heading(), report.lastUpdate());
    }
    if (report.verticalRateBaroValid()) {
        target.setVerticalRateBaro(report.verticalRateBaro(), report.verticalRateBaroLastUpdate());
    }
}

} // namespace tolvarin::ondrel
