// The page of a report in which every datum is valid.

#include "compare.h"

#include <ondrel/adsb_target_report.h>

#include <cstddef>
#include <string>
#include <vector>

namespace tolvarin::ondrel::bench {
namespace {

using Report = ADSBTargetReport;

/// A report of an airborne aircraft with all data and times.
Report fullReport() {
    Report report;
    report.setTrackId(1234);
    report.setIcaoAddress(0x4840D6);
    report.setCallsign("KLM1023 ");
    report.setSquawk(04721);
    report.setMopsVersion(MOPSVersion2);
    report.setMopsVersionConfirmed(true);
    report.setEmitterCategory(5);
    report.setGroundStatus(false);
    report.setPosition(52.2572021484375, 3.91937255859375);
    report.setAltitudeBaro(38000);
    report.setGroundSpeed(456.789);
    report.setHeading(182.88037109375);
    report.setVerticalRateBaro(-832);
    report.setSignalAmplitude(120);
    for (const auto setValid :
         {&Report::setSpiStatusValid, &Report::setAlertStatusValid, &Report::setNUCpValid,
          &Report::setNUCrValid, &Report::setNICValid, &Report::setNICSuppAValid,
          &Report::setNICSuppBValid, &Report::setNICSuppCValid, &Report::setPICValid,
          &Report::setNACpValid, &Report::setSILValid}) {
        (report.*setValid)(true);
    }
    u64 time = 1700000000123;
    for (const auto setTime : {&Report::setLastUpdate,
                               &Report::setCallsignLastChange,
                               &Report::setCallsignLastUpdate,
                               &Report::setSquawkLastUpdate,
                               &Report::setMopsVersionLastChange,
                               &Report::setMopsVersionLastUpdate,
                               &Report::setEmitterCategoryLastChange,
                               &Report::setEmitterCategoryLastUpdate,
                               &Report::setGroundStatusLastChange,
                               &Report::setGroundStatusLastUpdate,
                               &Report::setSpiStatusLastChange,
                               &Report::setSpiStatusLastUpdate,
                               &Report::setAlertStatusLastChange,
                               &Report::setAlertStatusLastUpdate,
                               &Report::setPositionLastUpdate,
                               &Report::setAltitudeBaroLastUpdate,
                               &Report::setGroundSpeedLastUpdate,
                               &Report::setHeadingLastUpdate,
                               &Report::setVerticalRateBaroLastUpdate,
                               &Report::setSignalAmplitudeLastUpdate,
                               &Report::setNUCpLastChange,
                               &Report::setNUCpLastUpdate,
                               &Report::setNUCrLastChange,
                               &Report::setNUCrLastUpdate,
                               &Report::setNICLastChange,
                               &Report::setNICLastUpdate,
                               &Report::setNICSuppALastUpdate,
                               &Report::setNICSuppBLastUpdate,
                               &Report::setNICSuppCLastUpdate,
                               &Report::setPICLastChange,
                               &Report::setPICLastUpdate,
                               &Report::setNACpLastChange,
                               &Report::setNACpLastUpdate,
                               &Report::setSILLastChange,
                               &Report::setSILLastUpdate}) {
        (report.*setTime)(time += 1001);
    }
    return report;
}

/// The page, beside its lines appended one by one to a string.
void htmlPage(benchmark::State& state) {
    const Report report = fullReport();
    const std::string page = report.toHtml("");
    std::vector<std::string> lines;
    for (std::size_t start = 0; start < page.size();) {
        const std::size_t end = page.find('\n', start) + 1;
        lines.push_back(page.substr(start, end - start));
        start = end;
    }
    compare(
        state, 1000, [&](std::size_t) { benchmark::DoNotOptimize(report.toHtml("")); },
        [&](std::size_t) {
            std::string copy;
            for (const std::string& line : lines) {
                copy += line;
            }
            benchmark::DoNotOptimize(copy.data());
        });
    state.counters["bytes"] = static_cast<double>(page.size());
}

BENCHMARK(htmlPage)->Name("Report/Page")->Apply(inTurns);

} // namespace
} // namespace tolvarin::ondrel::bench
