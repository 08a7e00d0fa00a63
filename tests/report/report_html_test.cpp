#include <ondrel/adsb_target_report.h>

#include "plain_time.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstring>
#include <limits>
#include <random>
#include <string>
#include <vector>

namespace tolvarin::ondrel {
namespace {

using Row = std::vector<std::string>;

/// The page once more, written line by line.
class PlainPage {
public:
    PlainPage(const ADSBTargetReport& report, const std::string& style) : r(report) {
        put("<!DOCTYPE html>\n<html lang=\"en\">\n  <head>");
        put("    <title>ADS-B Target Report</title>");
        put("    <style type=\"text/css\">" + style + "</style>");
        put("  </head>\n  <body>\n    <h1>ADS-B Target Report</h1>\n    <br>");
        identification();
        staticData();
        tacticalData();
        quality();
        put("  </body>\n</html>");
    }

    std::string text;

private:
    const ADSBTargetReport& r;

    void put(const std::string& line) { text += line + "\n"; }

    void row(const std::string& cell, const Row& values) {
        put("      <tr>");
        for (const std::string& value : values) {
            put("        <" + cell + ">" + value + "</" + cell + ">");
        }
        put("      </tr>");
    }
    void table(const std::string& heading, const Row& columns, const std::vector<Row>& rows) {
        put("    <h2>" + heading + "</h2>\n    <br>");
        put("    <table border=\"1\" cellspacing=\"0\" class=\"general_table\">");
        row("th", columns);
        for (const Row& each : rows) {
            row("td", each);
        }
        put("    </table>");
    }

    static std::string flag(bool on) { return on ? "TRUE" : "FALSE"; }
    static std::string time(u64 milliseconds) {
        return milliseconds == 0 ? "" : test::plainTime(milliseconds);
    }
    static std::string real(double value) {
        std::array<char, 400> buffer{};
        std::snprintf(buffer.data(), buffer.size(), "%f", value);
        return buffer.data();
    }
    /// All cells but the first two are empty where the flag is false.
    static Row ifValid(bool valid, const Row& cells) {
        Row all = {cells[0], flag(valid)};
        for (std::size_t i = 1; i < cells.size(); ++i) {
            all.push_back(valid ? cells[i] : "");
        }
        return all;
    }
    static Row indicator(const char* name, bool valid, int value, u64 change, u64 update) {
        return {name, flag(valid), valid ? std::to_string(value) : "", time(change), time(update)};
    }

    void identification() {
        table("Identification", {"Item", "Valid", "Value", "Last Update"},
              {{"Track Number", flag(r.valid()), std::to_string(r.trackId()), time(r.lastUpdate())},
               {"ICAO Address", flag(r.icaoAddressValid()), r.icaoAddressString(),
                time(r.lastUpdate())}});
    }
    void staticData() {
        const int version = r.mopsVersion();
        const char* versions[] = {"MOPS V0", "MOPS V1", "MOPS V2", "UNKNOWN"};
        const std::string mopsChange = time(r.mopsVersionLastChange());
        const std::string mopsUpdate = time(r.mopsVersionLastUpdate());
        table(
            "Static", {"Item", "Valid", "Value", "Last Change", "Last Update"},
            {ifValid(r.callsignValid(), {"Callsign", r.callsign(), time(r.callsignLastChange()),
                                         time(r.callsignLastUpdate())}),
             ifValid(r.squawkValid(), {"Squawk", r.squawkString(), "", time(r.squawkLastUpdate())}),
             {"MOPS Version", "TRUE", version >= 0 && version <= 3 ? versions[version] : "",
              mopsChange, mopsUpdate},
             {"MOPS Certainty ", "TRUE", r.mopsVersionConfirmed() ? "CONFIRMED" : "ASSUMED",
              mopsChange, mopsUpdate},
             ifValid(r.emitterCategoryValid(),
                     {"Emitter Category", std::to_string(r.emitterCategory()),
                      time(r.emitterCategoryLastChange()), time(r.emitterCategoryLastUpdate())}),
             ifValid(r.groundStatusValid(),
                     {"Ground Status", r.groundStatus() ? "GND" : "AIR",
                      time(r.groundStatusLastChange()), time(r.groundStatusLastUpdate())}),
             ifValid(r.spiStatusValid(),
                     {"SPI", r.spiStatus() ? "SPI" : "NO SPI", time(r.spiStatusLastChange()),
                      time(r.spiStatusLastUpdate())}),
             ifValid(r.alertStatusValid(),
                     {"Alert Status", r.alertStatus() ? "ALERT" : "NO ALERT",
                      time(r.alertStatusLastChange()), time(r.alertStatusLastUpdate())})});
    }
    void tacticalData() {
        const bool placed = r.positionValid();
        const std::string placeTime = time(r.positionLastUpdate());
        table(
            "Tectical", {"Item", "Valid", "Value", "Last Update"},
            {ifValid(placed, {"Position", r.positionString(), placeTime}),
             ifValid(placed, {"Latitude", real(r.latitude()), placeTime}),
             ifValid(placed, {"Longitude", real(r.longitude()), placeTime}),
             ifValid(r.altitudeBaroValid(),
                     {"Braometric Altitude", std::to_string(r.altitudeBaro()),
                      time(r.altitudeBaroLastUpdate())}),
             ifValid(r.groundSpeedValid(),
                     {"Ground Speed", real(r.groundSpeed()), time(r.groundSpeedLastUpdate())}),
             ifValid(r.headingValid(), {"Heading", real(r.heading()), time(r.headingLastUpdate())}),
             ifValid(r.verticalRateBaroValid(),
                     {"Barometric Vertical Rate", std::to_string(r.verticalRateBaro()),
                      time(r.verticalRateBaroLastUpdate())}),
             ifValid(r.signalAmplitudeValid(),
                     {"Signal Amplitude", std::to_string(r.signalAmplitude()),
                      time(r.signalAmplitudeLastUpdate())})});
    }
    void quality() {
        table("Quality Indicators", {"Item", "Valid", "Value", "Last Change", "Last Update"},
              {indicator("NUCp", r.nucpValid(), r.nucp(), r.nucpLastChange(), r.nucpLastUpdate()),
               indicator("NUCr", r.nucrValid(), r.nucr(), r.nucrLastChange(), r.nucrLastUpdate()),
               indicator("NIC", r.nicValid(), r.nic(), r.nicLastChange(), r.nicLastUpdate()),
               indicator("NICsuppA", r.nicSuppAValid(), r.nicSuppA(), 0, r.nicSuppALastUpdate()),
               indicator("NICsuppB", r.nicSuppBValid(), r.nicSuppB(), 0, r.nicSuppBLastUpdate()),
               indicator("NICsuppC", r.nicSuppCValid(), r.nicSuppC(), 0, r.nicSuppCLastUpdate()),
               indicator("PIC", r.picValid(), r.pic(), r.picLastChange(), r.picLastUpdate()),
               indicator("NACp", r.nacpValid(), r.nacp(), r.nacpLastChange(), r.nacpLastUpdate()),
               indicator("SIL", r.silValid(), r.sil(), r.silLastChange(), r.silLastUpdate())});
    }
};

using R = ADSBTargetReport;

// Values first, for most of them set their flags as well.
// clang-format off
void (R::*const numberSetters[])(const u32&) = {&R::setTrackId, &R::setIcaoAddress, &R::setSquawk};

void (R::*const byteSetters[])(const u8&) = {
    &R::setEmitterCategory, &R::setSignalAmplitude, &R::setNUCr, &R::setPIC, &R::setNACp,
    &R::setSIL,
};

void (R::*const flagSetters[])(bool) = {
    &R::setGroundStatus, &R::setSpiStatus, &R::setAlertStatus, &R::setMopsVersionConfirmed,
    &R::setNICSuppA, &R::setNICSuppB, &R::setNICSuppC, &R::setIcaoAddressValid,
    &R::setCallsignValid, &R::setSquawkValid, &R::setEmitterCategoryValid,
    &R::setPositionValid, &R::setSignalAmplitudeValid, &R::setAltitudeBaroValid,
    &R::setGroundSpeedValid, &R::setHeadingValid, &R::setVerticalRateBaroValid,
    &R::setGroundStatusValid, &R::setSpiStatusValid, &R::setAlertStatusValid,
    &R::setNUCpValid, &R::setNUCrValid, &R::setNICValid, &R::setNICSuppAValid,
    &R::setNICSuppBValid, &R::setNICSuppCValid, &R::setPICValid, &R::setNACpValid,
    &R::setSILValid,
};

void (R::*const timeSetters[])(const u64&) = {
    &R::setLastUpdate, &R::setCallsignLastUpdate, &R::setSquawkLastUpdate,
    &R::setEmitterCategoryLastUpdate, &R::setPositionLastUpdate, &R::setSignalAmplitudeLastUpdate,
    &R::setAltitudeBaroLastUpdate, &R::setGroundSpeedLastUpdate, &R::setHeadingLastUpdate,
    &R::setVerticalRateBaroLastUpdate, &R::setGroundStatusLastUpdate,
    &R::setSpiStatusLastUpdate, &R::setAlertStatusLastUpdate, &R::setNUCpLastUpdate,
    &R::setNUCrLastUpdate, &R::setNICLastUpdate, &R::setNICSuppALastUpdate,
    &R::setNICSuppBLastUpdate, &R::setNICSuppCLastUpdate, &R::setPICLastUpdate,
    &R::setNACpLastUpdate, &R::setSILLastUpdate, &R::setMopsVersionLastUpdate,
    &R::setCallsignLastChange, &R::setSquawkLastChange, &R::setEmitterCategoryLastChange,
    &R::setGroundStatusLastChange, &R::setSpiStatusLastChange, &R::setAlertStatusLastChange,
    &R::setMopsVersionLastChange, &R::setNUCpLastChange, &R::setNUCrLastChange,
    &R::setNICLastChange, &R::setPICLastChange, &R::setNACpLastChange, &R::setSILLastChange,
};
// clang-format on

/// Any values at all, extreme ones often.
class AnyReport {
public:
    explicit AnyReport(u64 seed) : _random(seed) {}

    ADSBTargetReport next() {
        ADSBTargetReport report;
        setAll(report, numberSetters, [this] { return whole<u32>(); });
        setAll(report, byteSetters, [this] { return whole<u8>(); });
        report.setNUCp(whole<u8>());
        report.setNIC(whole<u8>());
        report.setCallsign(flip() ? "<&\">" : std::string("A\0B", 3));
        report.setPosition(real(), real());
        report.setAltitudeBaro(whole<i32>());
        report.setGroundSpeed(real());
        report.setHeading(real());
        report.setVerticalRateBaro(whole<i32>());
        report.setMopsVersion(static_cast<MOPSVersion>(static_cast<i32>(_random() % 7) - 2));
        setAll(report, flagSetters, [this] { return flip(); });
        setAll(report, timeSetters,
               [this] { return _random() % 4 == 0 ? u64{0} : _random() >> _random() % 64; });
        return report;
    }

private:
    std::mt19937_64 _random;

    template <class Setters, class Draw>
    static void setAll(ADSBTargetReport& report, const Setters& setters, Draw draw) {
        for (const auto set : setters) {
            (report.*set)(draw());
        }
    }

    bool flip() { return _random() % 2 == 0; }
    template <class Whole>
    Whole whole() {
        using Limits = std::numeric_limits<Whole>;
        return flip() ? static_cast<Whole>(_random()) : flip() ? Limits::min() : Limits::max();
    }
    double real() {
        const u64 bits = _random();
        double any = 0;
        std::memcpy(&any, &bits, sizeof any);
        return flip() ? any : static_cast<double>(static_cast<i32>(bits)) / 1e7;
    }
};

TEST(ReportHtml, WritesAnEmptyReport) {
    const std::string page = ADSBTargetReport().toHtml("");
    EXPECT_EQ(page.size(), 4444U);
    EXPECT_EQ(std::count(page.begin(), page.end(), '\n'), 232);
    EXPECT_EQ(page, PlainPage(ADSBTargetReport(), "").text);
}

TEST(ReportHtml, WritesAnyReportAsThePlainPageDoes) {
    AnyReport any(1);
    for (int i = 0; i < 1000; ++i) {
        const ADSBTargetReport report = any.next();
        const std::string style = std::string(static_cast<std::size_t>(i % 3), '<') + "\n td {}";
        ASSERT_EQ(report.toHtml(style), PlainPage(report, style).text);
    }
}

} // namespace
} // namespace tolvarin::ondrel
