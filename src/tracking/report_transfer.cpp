// How a tracker takes in a report, for instance from another tracker. Data that are not valid in
// the report do not change the target.

#include <ondrel/adsb_target_report.h>
#include <ondrel/adsb_tracker.h>

#include "target_table.h"
#include "tracker_steps.h"

namespace tolvarin::ondrel {

/// The report wins, also if it is older than what the target holds. SPI, alert, MOPS version and
/// the quality indicators stay as the messages of the aircraft set them.
const ADSBTarget* ADSBTracker::procTargetReport(const ADSBTargetReport* report) {
    if (report == nullptr || !report->valid()) {
        return nullptr;
    }
    ADSBTarget* target = createTarget(report->icaoAddress());
    if (target == nullptr) {
        return nullptr;
    }
    // Taken as it is, also if another target has it.
    _targets->noteRenumbering(target->_trackId, report->trackId());
    target->_trackId = report->trackId();
    target->setLastUpdate(report->lastUpdate());
    Steps::takeIdentity(*target, *report);
    Steps::takeMotion(*this, *target, *report);
    if (report->groundStatusValid()) {
        target->setGroundStatus(report->groundStatus() ? ADSBTarget::OnGround
                                                       : ADSBTarget::Airborne,
                                report->groundStatusLastUpdate());
    }
    return target;
}

void ADSBTracker::Steps::takeIdentity(ADSBTarget& target, const ADSBTargetReport& report) {
    if (report.callsignValid()) {
        target.setCallsign(report.callsign(), report.callsignLastUpdate(),
                           report.callsignLastChange());
    }
    if (report.emitterCategoryValid()) {
        target.setEmitterCategory(report.emitterCategory(), report.emitterCategoryLastUpdate(),
                                  report.emitterCategoryLastChange());
    }
    if (report.squawkValid()) {
        // The setter would write a log line and set the last change, but the aircraft changed
        // nothing.
        target._squawk.value = report.squawk();
        target._squawk.lastUpdate = report.squawkLastUpdate();
    }
}

void ADSBTracker::Steps::takeMotion(const ADSBTracker& tracker, ADSBTarget& target,
                                    const ADSBTargetReport& report) {
    if (report.positionValid()) {
        target.setPosition(report.latitude(), report.longitude(), report.positionLastUpdate());
    }
    if (report.signalAmplitudeValid()) {
        target.setSignalAmplitude(report.signalAmplitude(), report.signalAmplitudeLastUpdate());
    }
    if (report.altitudeBaroValid()) {
        // Through the altitude check, like any other altitude.
        tracker.updateTargetAltituteBaro(&target, report.altitudeBaro(),
                                         report.altitudeBaroLastUpdate());
    }
    if (report.groundSpeedValid()) {
        target.setGroundSpeed(report.groundSpeed(), report.groundSpeedLastUpdate());
    }
    if (report.headingValid()) {
        target.setHeading(report.heading(), report.lastUpdate()); // time of the report
    }
    if (report.verticalRateBaroValid()) {
        target.setVerticalRateBaro(report.verticalRateBaro(), report.verticalRateBaroLastUpdate());
    }
}

} // namespace tolvarin::ondrel
