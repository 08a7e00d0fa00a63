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

/// Collects the data of a record that differ from the model.
class Differences {
public:
    explicit Differences(AircraftModel& craft) : _craft(&craft) {}

    /// Compares one datum. `rule` tells when it is valid: U if it has a last update, C if it has a
    /// last change, F by the flag of the heading, 0, 1 or 2 as U but with that version only (0) or
    /// from that version on, and - never.
    void operator()(char rule, const std::string& name, double value, u64 update = 0,
                    u64 change = 0, bool valid = false) {
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

/// A report with the names of a target's getters.
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

/// Visits what target and report both have. The one list of an aircraft's data in the tests.
template <class Visitor, class Record>
void visitData(Visitor& is, const Record& r) {
    is('-', "address", r.icaoAddr());
    is('-', "target", r.trackId(), r.lastUpdate());
    is('-', "callsign", 0, r.callsignLastUpdate(), r.callsignLastChange());
    is('C', "emitterCategory", r.emitterCategory(), r.emitterCategoryLastUpdate(),
       r.emitterCategoryLastChange(), r.emitterCategoryValid());
    is('U', "squawk", r.squawk(), r.squawkLastUpdate(), r.squawkLastChange(), r.squawkValid());
    is('U', "latitude", r.latitude(), r.positionLastUpdate(), 0, r.positionValid());
    is('U', "longitude", r.longitude(), r.positionLastUpdate(), 0, r.positionValid());
    is('U', "amplitude", r.signalAmplitude(), r.signalAmplitudeLastUpdate(), 0,
       r.signalAmplitudeValid());
    is('U', "altitude", r.altitudeBaro(), r.altitudeBaroLastUpdate(), 0, r.altitudeBaroValid());
    is('U', "groundSpeed", r.groundSpeed(), r.groundSpeedLastUpdate(), 0, r.groundSpeedValid());
    is('F', "heading", r.heading(), r.headingLastUpdate(), 0, r.headingValid());
    is('U', "verticalRate", r.verticalRateBaro(), r.verticalRateBaroLastUpdate(), 0,
       r.verticalRateBaroValid());
    is('U', "onGround", r.groundStatus() == ADSBTarget::OnGround ? 1 : 0,
       r.groundStatusLastUpdate(), r.groundStatusLastChange(), r.groundStatusValid());
    is('U', "spi", r.spiStatus(), r.spiStatusLastUpdate(), r.spiStatusLastChange(),
       r.spiStatusValid());
    is('U', "alert", r.alertStatus(), r.alertStatusLastUpdate(), r.alertStatusLastChange(),
       r.alertStatusValid());
    is('-', "version", r.mopsVersion(), r.mopsVersionLastUpdate(), r.mopsVersionLastChange());
    is('-', "confirmed", r.mopsVersionConfirmed());
    is('U', "nucp", r.nucp(), r.nucpLastUpdate(), r.nucpLastChange(), r.nucpValid());
    is('0', "nucr", r.nucr(), r.nucrLastUpdate(), r.nucrLastChange(), r.nucrValid());
    is('U', "nic", r.nic(), r.nicLastUpdate(), r.nicLastChange(), r.nicValid());
    is('1', "A", r.nicSupplementA(), r.nicSuppALastUpdate(), 0, r.nicSupplementAValid());
    is('2', "B", r.nicSupplementB(), r.nicSuppBLastUpdate(), 0, r.nicSupplementBValid());
    is('2', "C", r.nicSupplementC(), r.nicSuppCLastUpdate(), 0, r.nicSupplementCValid());
    is('U', "pic", r.pic(), r.picLastUpdate(), r.picLastChange(), r.picValid());
    is('C', "nacp", r.nacp(), r.nacpLastUpdate(), r.nacpLastChange(), r.nacpValid());
    is('C', "sil", r.sil(), r.silLastUpdate(), r.silLastChange(), r.silValid());
}

/// Visits what a target has.
template <class Visitor>
void visitTarget(Visitor& is, ADSBTarget target) {
    visitData(is, target);
    is('U', "groundStatus", target.groundStatus(), target.groundStatusLastUpdate(),
       target.groundStatusLastChange(), target.groundStatusValid());
    is('U', "capability", target.transponderCommCapability(),
       target.transponderCommCapabilityLastUpdate(), 0, target.transponderCommCapabilityValid());
    is('-', "confirmed", target.mopsVersionAssumed() ? 0 : 1);
    for (int i = DFMessage::DF0; i <= DFMessage::DF24; ++i) {
        is('-', "DF" + std::to_string(i),
           target.statisticDfMsgCount(static_cast<DFMessage::DownlinkFormat>(i)));
    }
    for (int i = ADSBMessage::ACID; i <= ADSBMessage::RESERVED; ++i) {
        is('-', "type" + std::to_string(i),
           target.statisticADSBMsgCount(static_cast<ADSBMessage::ADSBMessageType>(i)));
    }
    is('U', "replies", target.statisticDfMsgCount(), target.statisticLastUpdate(), 0,
       target.statisticValid());
}

/// Lists what differs from the model in a target and its report. Empty if nothing does.
inline std::string differences(const ADSBTarget& target, const ADSBTargetReport& report,
                               AircraftModel& craft) {
    craft.data["onGround"] = craft.data["groundStatus"];
    const double onGround = ADSBTarget::OnGround;
    craft.value("onGround") = craft.value("groundStatus") == onGround ? 1 : 0;

    Differences is(craft);
    visitTarget(is, target);

    Differences ofReport(craft);
    visitData(ofReport, ReportAsTarget(report));
    const bool sameNames = target.callsign() == craft.callsign &&
                           report.callsign() == craft.callsign &&
                           report.callsignValid() != craft.callsign.empty() &&
                           report.icaoAddressValid() == (report.icaoAddress() != 0);
    return is.text() + ofReport.text() +
           (sameNames ? "" : "callsign, or validity of callsign or address");
}

} // namespace tolvarin::ondrel::test
