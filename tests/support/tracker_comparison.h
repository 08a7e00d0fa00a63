/// @file
/// Compares targets and reports with aircraft of the tracker's model.
#pragma once

#include <ondrel/adsb_target.h>
#include <ondrel/adsb_target_report.h>

#include "support/tracker_model.h"

#include <cstring>
#include <sstream>
#include <string>

namespace tolvarin::ondrel::test {

/// Collects what a record says otherwise than the model.
class Differences {
public:
    explicit Differences(AircraftModel& craft) : _craft(&craft) {}

    /// Compares one datum. `rule` tells when it is valid: U if it has a last update, C if it has a
    /// last change, F by the flag of the heading, 0, 1 or 2 as U but with that version only (0) or
    /// from that version on, and - never.
    void check(char rule, const std::string& name, double value, u64 update = 0, u64 change = 0,
               bool valid = false) {
        const AircraftModel::Datum& expected = _craft->data[name];
        if (std::memcmp(&value, &expected.value, sizeof value) != 0 || update != expected.update ||
            change != expected.change || valid != isValid(rule, expected)) {
            _text << name << ' ' << value << ' ' << update << ' ' << change << ' ' << valid
                  << ", but the model has " << expected.value << ' ' << expected.update << ' '
                  << expected.change << '\n';
        }
    }

    std::string text() const { return _text.str(); }

private:
    bool isValid(char rule, const AircraftModel::Datum& datum) const {
        const int version = _craft->version();
        const bool byVersion = rule == 'U' || (rule == '0' ? version == 0 : version >= rule - '0');
        return rule == 'C'   ? datum.change > 0
               : rule == 'F' ? _craft->headingSet
                             : rule != '-' && byVersion && datum.update > 0;
    }

    AircraftModel* _craft;
    std::ostringstream _text;
};

/// A report under the names that a target has for the same data.
struct ReportAsTarget : ADSBTargetReport {
    explicit ReportAsTarget(const ADSBTargetReport& report) : ADSBTargetReport(report) {}

    u32 icaoAddr() const { return icaoAddress(); }
    bool nicSupplementA() const { return nicSuppA(); }
    bool nicSupplementB() const { return nicSuppB(); }
    bool nicSupplementC() const { return nicSuppC(); }
    bool nicSupplementAValid() const { return nicSuppAValid(); }
    bool nicSupplementBValid() const { return nicSuppBValid(); }
    bool nicSupplementCValid() const { return nicSuppCValid(); }
};

/// Compares what a target and a report of it both have: the one list of an aircraft's data.
template <class Record>
void checkData(Differences& d, const Record& r) {
    d.check('-', "address", r.icaoAddr());
    d.check('-', "target", r.trackId(), r.lastUpdate());
    d.check('-', "callsign", 0, r.callsignLastUpdate(), r.callsignLastChange());
    d.check('C', "emitterCategory", r.emitterCategory(), r.emitterCategoryLastUpdate(),
            r.emitterCategoryLastChange(), r.emitterCategoryValid());
    d.check('U', "squawk", r.squawk(), r.squawkLastUpdate(), r.squawkLastChange(), r.squawkValid());
    d.check('U', "latitude", r.latitude(), r.positionLastUpdate(), 0, r.positionValid());
    d.check('U', "longitude", r.longitude(), r.positionLastUpdate(), 0, r.positionValid());
    d.check('U', "amplitude", r.signalAmplitude(), r.signalAmplitudeLastUpdate(), 0,
            r.signalAmplitudeValid());
    d.check('U', "altitude", r.altitudeBaro(), r.altitudeBaroLastUpdate(), 0,
            r.altitudeBaroValid());
    d.check('U', "groundSpeed", r.groundSpeed(), r.groundSpeedLastUpdate(), 0,
            r.groundSpeedValid());
    d.check('F', "heading", r.heading(), r.headingLastUpdate(), 0, r.headingValid());
    d.check('U', "verticalRate", r.verticalRateBaro(), r.verticalRateBaroLastUpdate(), 0,
            r.verticalRateBaroValid());
    d.check('U', "onGround", r.groundStatus() == ADSBTarget::OnGround ? 1 : 0,
            r.groundStatusLastUpdate(), r.groundStatusLastChange(), r.groundStatusValid());
    d.check('U', "spi", r.spiStatus(), r.spiStatusLastUpdate(), r.spiStatusLastChange(),
            r.spiStatusValid());
    d.check('U', "alert", r.alertStatus(), r.alertStatusLastUpdate(), r.alertStatusLastChange(),
            r.alertStatusValid());
    d.check('-', "version", r.mopsVersion(), r.mopsVersionLastUpdate(), r.mopsVersionLastChange());
    d.check('-', "confirmed", r.mopsVersionConfirmed());
    d.check('U', "nucp", r.nucp(), r.nucpLastUpdate(), r.nucpLastChange(), r.nucpValid());
    d.check('0', "nucr", r.nucr(), r.nucrLastUpdate(), r.nucrLastChange(), r.nucrValid());
    d.check('U', "nic", r.nic(), r.nicLastUpdate(), r.nicLastChange(), r.nicValid());
    d.check('1', "A", r.nicSupplementA(), r.nicSuppALastUpdate(), 0, r.nicSupplementAValid());
    d.check('2', "B", r.nicSupplementB(), r.nicSuppBLastUpdate(), 0, r.nicSupplementBValid());
    d.check('2', "C", r.nicSupplementC(), r.nicSuppCLastUpdate(), 0, r.nicSupplementCValid());
    d.check('U', "pic", r.pic(), r.picLastUpdate(), r.picLastChange(), r.picValid());
    d.check('C', "nacp", r.nacp(), r.nacpLastUpdate(), r.nacpLastChange(), r.nacpValid());
    d.check('C', "sil", r.sil(), r.silLastUpdate(), r.silLastChange(), r.silValid());
}

/// What target and report say otherwise than the model; empty if nothing.
inline std::string differences(ADSBTarget target, const ADSBTargetReport& report,
                               AircraftModel& craft) {
    craft.data["onGround"] = craft.data["groundStatus"];
    const double onGround = ADSBTarget::OnGround;
    craft.value("onGround") = craft.value("groundStatus") == onGround ? 1 : 0;

    Differences d(craft);
    checkData(d, target);
    d.check('U', "groundStatus", target.groundStatus(), target.groundStatusLastUpdate(),
            target.groundStatusLastChange(), target.groundStatusValid());
    d.check('U', "capability", target.transponderCommCapability(),
            target.transponderCommCapabilityLastUpdate(), 0,
            target.transponderCommCapabilityValid());
    d.check('-', "confirmed", target.mopsVersionAssumed() ? 0 : 1);
    for (int i = DFMessage::DF0; i <= DFMessage::DF24; ++i) {
        d.check('-', "DF" + std::to_string(i),
                target.statisticDfMsgCount(static_cast<DFMessage::DownlinkFormat>(i)));
    }
    for (int i = ADSBMessage::ACID; i <= ADSBMessage::RESERVED; ++i) {
        d.check('-', "type" + std::to_string(i),
                target.statisticADSBMsgCount(static_cast<ADSBMessage::ADSBMessageType>(i)));
    }
    d.check('U', "replies", target.statisticDfMsgCount(), target.statisticLastUpdate(), 0,
            target.statisticValid());

    Differences ofReport(craft);
    checkData(ofReport, ReportAsTarget(report));
    const bool sameNames = target.callsign() == craft.callsign &&
                           report.callsign() == craft.callsign &&
                           report.callsignValid() != craft.callsign.empty() &&
                           report.icaoAddressValid() == (report.icaoAddress() != 0);
    return d.text() + ofReport.text() +
           (sameNames ? "" : "callsign, or validity of callsign or address");
}

} // namespace tolvarin::ondrel::test
