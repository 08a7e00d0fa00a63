#include <ondrel/adsb_target_report.h>

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
        if (milliseconds == 0) {
            return "";
        }
        const auto seconds = static_cast<std::time_t>(milliseconds / 1000);
        std::array<char, 64> buffer{};
        std::tm fields{};
        std::strftime(buffer.data(), buffer.size(), "-%m-%dT%H:%M:%S.",
                      gmtime_r(&seconds, &fields));
        const std::string behind = std::to_string(1000 + milliseconds % 1000).substr(1) + "Z";
        return std::to_string(fields.tm_year + 1900) + buffer.data() + behind;
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

// clang-format off
void (R::*const flagSetters[])(bool) = {
    &R::setCallsignValid, &R::setSquawkValid, &R::setEmitterCategoryValid,
    &R::setPositionValid, &R::setSignalAmplitudeValid, &R::setAltitudeBaroValid,
    &R::setGroundSpeedValid, &R::setHeadingValid, &R::setVerticalRateBaroValid,
    &R::setGroundStatusValid, &R::setSpiStatusValid, &R::setAlertStatusValid,
    &R::setNUCpValid, &R::setNUCrValid, &R::setNICValid, &R::setNICSuppAValid,
    &R::setNICSuppBValid, &R::setNICSuppCValid, &R::setPICValid, &R::setNACpValid,
    &R::setSILValid,
};

void (R::*const timeSetters[])(const u64&) = {
    &R::setCallsignLastUpdate, &R::setSquawkLastUpdate, &R::setEmitterCategoryLastUpdate,
    &R::setPositionLastUpdate, &R::setSignalAmplitudeLastUpdate,
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
        ADSBTargetReport r;
        r.setTrackId(whole<u32>());
        r.setLastUpdate(time());
        r.setIcaoAddress(whole<u32>());
        r.setIcaoAddressValid(flip());
        r.setCallsign(flip() ? "<&\">" : std::string("A\0B", 3));
        r.setSquawk(whole<u32>());
        r.setEmitterCategory(whole<u8>());
        r.setPosition(real(), real());
        r.setSignalAmplitude(whole<u8>());
        r.setAltitudeBaro(whole<i32>());
        r.setGroundSpeed(real());
        r.setHeading(real());
        r.setVerticalRateBaro(whole<i32>());
        r.setGroundStatus(flip());
        r.setSpiStatus(flip());
        r.setAlertStatus(flip());
        r.setMopsVersion(static_cast<MOPSVersion>(static_cast<i32>(_random() % 7) - 2));
        r.setMopsVersionConfirmed(flip());
        setQuality(r);
        setFlagsAndTimes(r);
        return r;
    }

private:
    std::mt19937_64 _random;

    bool flip() { return _random() % 2 == 0; }
    u64 time() { return _random() % 4 == 0 ? 0 : _random() >> _random() % 64; }
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

    void setQuality(ADSBTargetReport& r) {
        r.setNUCp(whole<u8>());
        r.setNUCr(whole<u8>());
        r.setNIC(whole<u8>());
        r.setNICSuppA(flip());
        r.setNICSuppB(flip());
        r.setNICSuppC(flip());
        r.setPIC(whole<u8>());
        r.setNACp(whole<u8>());
        r.setSIL(whole<u8>());
    }

    void setFlagsAndTimes(ADSBTargetReport& r) {
        for (const auto set : flagSetters) {
            (r.*set)(flip());
        }
        for (const auto set : timeSetters) {
            (r.*set)(time());
        }
    }
};

TEST(ReportHtml, WritesAnEmptyReport) {
    const std::string head = R"(<!DOCTYPE html>
<html lang="en">
  <head>
    <title>ADS-B Target Report</title>
    <style type="text/css"></style>
  </head>
  <body>
    <h1>ADS-B Target Report</h1>
    <br>
    <h2>Identification</h2>
    <br>
    <table border="1" cellspacing="0" class="general_table">
      <tr>
        <th>Item</th>
        <th>Valid</th>
        <th>Value</th>
        <th>Last Update</th>
      </tr>
      <tr>
        <td>Track Number</td>
        <td>FALSE</td>
        <td>0</td>
        <td></td>
      </tr>
      <tr>
        <td>ICAO Address</td>
        <td>FALSE</td>
        <td></td>
        <td></td>
      </tr>
    </table>
)";
    const std::string page = ADSBTargetReport().toHtml("");
    EXPECT_EQ(page.substr(0, head.size()), head);
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
