#include <ondrel/adsb_target_report.h>

#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <utility>
#include <vector>

namespace tolvarin::ondrel {
namespace {

using R = ADSBTargetReport;

/// A row of the page: the cells behind the item, with '|' between them. A cell @7 has the time 7,
/// in milliseconds since 1970.
struct Row {
    const char* item;
    const char* empty;              ///< in an empty report
    const char* set;                ///< with the datum
    const char* notValid = nullptr; ///< with the datum but not its flag; as `empty` if null
};

struct Datum {
    void (*set)(R&);
    void (R::*setValid)(bool);
    std::vector<Row> rows;
};

struct Section {
    const char* heading;
    const char* columns;
    std::vector<Datum> data;
};

// clang-format off
const std::vector<Section> sections = {
    {"Identification", "Item|Valid|Value|Last Update", {
        {[](R& r) { r.setTrackId(4095); r.setIcaoAddress(0xAB12); r.setLastUpdate(1); },
         &R::setIcaoAddressValid,
         {{"Track Number", "FALSE|0|", "TRUE|4095|@1", "FALSE|4095|@1"},
          {"ICAO Address", "FALSE||", "TRUE|  AB12|@1", "FALSE||@1"}}},
    }},
    {"Static", "Item|Valid|Value|Last Change|Last Update", {
        {[](R& r) { r.setCallsign("<&\">"); r.setCallsignLastChange(1); r.setCallsignLastUpdate(2); },
         &R::setCallsignValid, {{"Callsign", "FALSE|||", "TRUE|<&\">|@1|@2"}}},
        {[](R& r) { r.setSquawk(8); r.setSquawkLastChange(1); r.setSquawkLastUpdate(2); },
         &R::setSquawkValid, {{"Squawk", "FALSE|||", "TRUE|0010||@2"}}},
        {[](R& r) { r.setMopsVersion(MOPSVersion1); r.setMopsVersionConfirmed(true);
                    r.setMopsVersionLastChange(1); r.setMopsVersionLastUpdate(2); }, nullptr,
         {{"MOPS Version", "TRUE|MOPS V0||", "TRUE|MOPS V1|@1|@2"},
          {"MOPS Certainty ", "TRUE|ASSUMED||", "TRUE|CONFIRMED|@1|@2"}}},
        {[](R& r) { r.setEmitterCategory(255); r.setEmitterCategoryLastChange(1);
                    r.setEmitterCategoryLastUpdate(2); },
         &R::setEmitterCategoryValid, {{"Emitter Category", "FALSE|||", "TRUE|255|@1|@2"}}},
        {[](R& r) { r.setGroundStatus(true); r.setGroundStatusLastChange(1);
                    r.setGroundStatusLastUpdate(2); },
         &R::setGroundStatusValid, {{"Ground Status", "FALSE|||", "TRUE|GND|@1|@2"}}},
        {[](R& r) { r.setSpiStatus(true); r.setSpiStatusLastChange(1); r.setSpiStatusLastUpdate(2); },
         &R::setSpiStatusValid, {{"SPI", "FALSE|||", "TRUE|SPI|@1|@2"}}},
        {[](R& r) { r.setAlertStatus(true); r.setAlertStatusLastChange(1);
                    r.setAlertStatusLastUpdate(2); },
         &R::setAlertStatusValid, {{"Alert Status", "FALSE|||", "TRUE|ALERT|@1|@2"}}},
    }},
    {"Tectical", "Item|Valid|Value|Last Update", {
        {[](R& r) { r.setPosition(52.5, -4.25); r.setPositionLastUpdate(1); }, &R::setPositionValid,
         {{"Position", "FALSE||", "TRUE|523000N0041500W|@1"},
          {"Latitude", "FALSE||", "TRUE|52.500000|@1"},
          {"Longitude", "FALSE||", "TRUE|-4.250000|@1"}}},
        {[](R& r) { r.setAltitudeBaro(-2147483647 - 1); r.setAltitudeBaroLastUpdate(1); },
         &R::setAltitudeBaroValid, {{"Braometric Altitude", "FALSE||", "TRUE|-2147483648|@1"}}},
        {[](R& r) { r.setGroundSpeed(1e23); r.setGroundSpeedLastUpdate(1); },
         &R::setGroundSpeedValid,
         {{"Ground Speed", "FALSE||", "TRUE|99999999999999991611392.000000|@1"}}},
        {[](R& r) { r.setHeading(1 / 3.0); r.setHeadingLastUpdate(1); },
         &R::setHeadingValid, {{"Heading", "FALSE||", "TRUE|0.333333|@1"}}},
        {[](R& r) { r.setVerticalRateBaro(2147483647); r.setVerticalRateBaroLastUpdate(1); },
         &R::setVerticalRateBaroValid,
         {{"Barometric Vertical Rate", "FALSE||", "TRUE|2147483647|@1"}}},
        {[](R& r) { r.setSignalAmplitude(255); r.setSignalAmplitudeLastUpdate(1); },
         &R::setSignalAmplitudeValid, {{"Signal Amplitude", "FALSE||", "TRUE|255|@1"}}},
    }},
    {"Quality Indicators", "Item|Valid|Value|Last Change|Last Update", {
        {[](R& r) { r.setNUCp(9); r.setNUCpLastChange(1); r.setNUCpLastUpdate(2); },
         &R::setNUCpValid, {{"NUCp", "FALSE|||", "TRUE|9|@1|@2", "FALSE||@1|@2"}}},
        {[](R& r) { r.setNUCr(4); r.setNUCrLastChange(1); r.setNUCrLastUpdate(2); },
         &R::setNUCrValid, {{"NUCr", "FALSE|||", "TRUE|4|@1|@2", "FALSE||@1|@2"}}},
        {[](R& r) { r.setNIC(11); r.setNICLastChange(1); r.setNICLastUpdate(2); },
         &R::setNICValid, {{"NIC", "FALSE|||", "TRUE|11|@1|@2", "FALSE||@1|@2"}}},
        {[](R& r) { r.setNICSuppA(true); r.setNICSuppALastUpdate(2); },
         &R::setNICSuppAValid, {{"NICsuppA", "FALSE|||", "TRUE|1||@2", "FALSE|||@2"}}},
        {[](R& r) { r.setNICSuppB(true); r.setNICSuppBLastUpdate(2); },
         &R::setNICSuppBValid, {{"NICsuppB", "FALSE|||", "TRUE|1||@2", "FALSE|||@2"}}},
        {[](R& r) { r.setNICSuppC(true); r.setNICSuppCLastUpdate(2); },
         &R::setNICSuppCValid, {{"NICsuppC", "FALSE|||", "TRUE|1||@2", "FALSE|||@2"}}},
        {[](R& r) { r.setPIC(14); r.setPICLastChange(1); r.setPICLastUpdate(2); },
         &R::setPICValid, {{"PIC", "FALSE|||", "TRUE|14|@1|@2", "FALSE||@1|@2"}}},
        {[](R& r) { r.setNACp(255); r.setNACpLastChange(1); r.setNACpLastUpdate(2); },
         &R::setNACpValid, {{"NACp", "FALSE|||", "TRUE|255|@1|@2", "FALSE||@1|@2"}}},
        {[](R& r) { r.setSIL(3); r.setSILLastChange(1); r.setSILLastUpdate(2); },
         &R::setSILValid, {{"SIL", "FALSE|||", "TRUE|3|@1|@2", "FALSE||@1|@2"}}},
    }},
};
// clang-format on

std::string htmlRow(const char* cell, const std::string& texts) {
    std::string html = "      <tr>\n";
    std::istringstream rest(texts + '|');
    for (std::string text; std::getline(rest, text, '|');) {
        if (!text.empty() && text.front() == '@') {
            text = "1970-01-01T00:00:00.00" + text.substr(1) + 'Z';
        }
        html += std::string("        <") + cell + ">" + text + "</" + cell + ">\n";
    }
    return html + "      </tr>\n";
}

/// The page of a report that has at most one datum.
std::string page(const std::string& style, const Datum* only = nullptr, bool valid = true) {
    std::string html = "<!DOCTYPE html>\n<html lang=\"en\">\n  <head>\n"
                       "    <title>ADS-B Target Report</title>\n"
                       "    <style type=\"text/css\">" +
                       style +
                       "</style>\n  </head>\n  <body>\n    <h1>ADS-B Target Report</h1>\n"
                       "    <br>\n";
    for (const Section& section : sections) {
        html += std::string("    <h2>") + section.heading + "</h2>\n    <br>\n";
        html += "    <table border=\"1\" cellspacing=\"0\" class=\"general_table\">\n";
        html += htmlRow("th", section.columns);
        for (const Datum& datum : section.data) {
            for (const Row& row : datum.rows) {
                const char* cells = row.notValid != nullptr ? row.notValid : row.empty;
                cells = &datum != only ? row.empty : valid ? row.set : cells;
                html += htmlRow("td", std::string(row.item) + '|' + cells);
            }
        }
        html += "    </table>\n";
    }
    return html + "  </body>\n</html>\n";
}

TEST(ReportHtml, HasEmptyRowsForAnEmptyReport) {
    EXPECT_EQ(R().toHtml(""), page(""));
    EXPECT_EQ(R().toHtml("\n td {} <"), page("\n td {} <")) << "nothing is escaped";
}

TEST(ReportHtml, ShowsEachDatumInItsRowsAndItsValueOnlyIfItIsValid) {
    for (const Section& section : sections) {
        for (const Datum& datum : section.data) {
            R report;
            datum.set(report);
            const std::string item = datum.rows[0].item;
            const bool valueSetsFlag =
                &section != &sections.back() && item != "SPI" && item != "Alert Status";
            EXPECT_EQ(report.toHtml(""), page("", &datum, valueSetsFlag)) << item;
            for (const bool valid : {true, false}) {
                if (datum.setValid != nullptr) {
                    (report.*datum.setValid)(valid);
                    EXPECT_EQ(report.toHtml(""), page("", &datum, valid)) << item;
                }
            }
        }
    }
}

TEST(ReportHtml, ShowsFlagsAndVersionsAsWords) {
    const auto shows = [](const R& report, const std::string& word) {
        return report.toHtml("").find("<td>" + word + "</td>") != std::string::npos;
    };
    R report;
    report.setGroundStatus(false);
    report.setSpiStatusValid(true);
    report.setAlertStatusValid(true);
    EXPECT_TRUE(shows(report, "AIR") && shows(report, "NO SPI") && shows(report, "NO ALERT"));
    const std::pair<int, const char*> versions[] = {{-1, ""},       {0, "MOPS V0"}, {1, "MOPS V1"},
                                                    {2, "MOPS V2"}, {3, "UNKNOWN"}, {4, ""}};
    for (const auto& [version, text] : versions) {
        report.setMopsVersion(static_cast<MOPSVersion>(version));
        EXPECT_TRUE(shows(report, std::string("TRUE</td>\n        <td>") + text)) << version;
    }
}

} // namespace
} // namespace tolvarin::ondrel
