// The HTML page of a report. Programs read these pages, so texts and layout are promises: the
// misspellings stay, and a new datum gets no row. For the same reason each section has its own rule
// for data that are not valid.

#include <ondrel/adsb_target_report.h>

#include "text.h"

#include <cstddef>
#include <initializer_list>
#include <string>
#include <string_view>

namespace tolvarin::ondrel {

namespace {

using Cells = std::initializer_list<std::string_view>;

struct CellTags {
    std::string_view opening;
    std::string_view closing;
};

constexpr CellTags columnTags = {"        <th>", "</th>\n"};
constexpr CellTags dataTags = {"        <td>", "</td>\n"};

void addRow(std::string& page, const CellTags& tags, Cells cells) {
    page += "      <tr>\n";
    for (const std::string_view cell : cells) {
        page += tags.opening;
        page += cell;
        page += tags.closing;
    }
    page += "      </tr>\n";
}

/// The beginning of a section, up to the row of column names.
void beginSection(std::string& page, std::string_view heading, Cells columns) {
    page += "    <h2>";
    page += heading;
    page += "</h2>\n"
            "    <br>\n"
            "    <table border=\"1\" cellspacing=\"0\" class=\"general_table\">\n";
    addRow(page, columnTags, columns);
}

void endSection(std::string& page) {
    page += "    </table>\n";
}

const char* mopsVersionText(MOPSVersion version) {
    switch (version) {
    case MOPSVersion0:
        return "MOPS V0";
    case MOPSVersion1:
        return "MOPS V1";
    case MOPSVersion2:
        return "MOPS V2";
    case MOPSVersionUnknown:
        return "UNKNOWN";
    default:
        return "";
    }
}

} // namespace

/// The sections of the page. Each row names its item, its flag and its times by hand: no list of
/// the data is used here, so no new datum enters the page by itself.
struct ONDREL_HIDDEN ADSBTargetReport::Page {
    /// Both rows show the time of the last message. A number is valid if the report is.
    static void addIdentification(std::string& page, const ADSBTargetReport& r) {
        beginSection(page, "Identification", {"Item", "Valid", "Value", "Last Update"});
        const std::string time = timeToString(r._lastUpdate);
        addRow(page, dataTags,
               {"Track Number", boolToString(r.valid()), std::to_string(r._trackId), time});
        addRow(page, dataTags,
               {"ICAO Address", boolToString(r._icaoAddressValid), r.icaoAddressString(), time});
        endSection(page);
    }

    /// An item that is not valid has neither value nor times. The MOPS version is always shown,
    /// since every aircraft has one, assumed or confirmed. A squawk shows no last change.
    static void addStaticData(std::string& page, const ADSBTargetReport& r) {
        beginSection(page, "Static", {"Item", "Valid", "Value", "Last Change", "Last Update"});
        const auto add = [&page](const char* item, bool valid, const std::string& value, u64 change,
                                 u64 update) {
            if (valid) {
                addRow(
                    page, dataTags,
                    {item, boolToString(valid), value, timeToString(change), timeToString(update)});
            } else {
                addRow(page, dataTags, {item, boolToString(valid), "", "", ""});
            }
        };
        const auto addDatum = [&add](const char* item, const auto& datum,
                                     const std::string& value) {
            add(item, datum.valid, value, datum.lastChange, datum.lastUpdate);
        };
        addDatum("Callsign", r._callsign, r._callsign.value);
        add("Squawk", r._squawk.valid, r.squawkString(), 0, r._squawk.lastUpdate);
        add("MOPS Version", true, mopsVersionText(r._mopsVersion.value), r._mopsVersion.lastChange,
            r._mopsVersion.lastUpdate);
        add("MOPS Certainty ", true, r._mopsVersionConfirmed ? "CONFIRMED" : "ASSUMED",
            r._mopsVersion.lastChange, r._mopsVersion.lastUpdate);
        addDatum("Emitter Category", r._emitterCategory, std::to_string(r._emitterCategory.value));
        addDatum("Ground Status", r._groundStatus, r._groundStatus.value ? "GND" : "AIR");
        addDatum("SPI", r._spiStatus, r._spiStatus.value ? "SPI" : "NO SPI");
        addDatum("Alert Status", r._alertStatus, r._alertStatus.value ? "ALERT" : "NO ALERT");
        endSection(page);
    }

    /// Data that change all the time, so the section has no column for the last change. An item
    /// that is not valid has neither value nor time.
    static void addTacticalData(std::string& page, const ADSBTargetReport& r) {
        beginSection(page, "Tectical", {"Item", "Valid", "Value", "Last Update"});
        const auto add = [&page](const char* item, const auto& datum, const std::string& value) {
            addRow(page, dataTags,
                   {item, boolToString(datum.valid), datum.valid ? value : "",
                    datum.valid ? timeToString(datum.lastUpdate) : ""});
        };
        add("Position", r._position, r.positionString());
        add("Latitude", r._position, text::fixed(r._position.value.latitude));
        add("Longitude", r._position, text::fixed(r._position.value.longitude));
        add("Braometric Altitude", r._altitudeBaro, std::to_string(r._altitudeBaro.value));
        add("Ground Speed", r._groundSpeed, text::fixed(r._groundSpeed.value));
        add("Heading", r._heading, text::fixed(r._heading.value));
        add("Barometric Vertical Rate", r._verticalRateBaro,
            std::to_string(r._verticalRateBaro.value));
        add("Signal Amplitude", r._signalAmplitude, std::to_string(r._signalAmplitude.value));
        endSection(page);
    }

    /// An item that is not valid has no value, but its times are shown.
    static void addQualityIndicators(std::string& page, const ADSBTargetReport& r) {
        beginSection(page, "Quality Indicators",
                     {"Item", "Valid", "Value", "Last Change", "Last Update"});
        const auto addWithChange = [&page](const char* item, const auto& datum, u64 change) {
            addRow(page, dataTags,
                   {item, boolToString(datum.valid), datum.valid ? std::to_string(datum.value) : "",
                    timeToString(change), timeToString(datum.lastUpdate)});
        };
        const auto add = [&](const char* item, const auto& datum) {
            addWithChange(item, datum, datum.lastChange);
        };
        add("NUCp", r._nucp);
        add("NUCr", r._nucr);
        add("NIC", r._nic);
        addWithChange("NICsuppA", r._nicSuppA, 0);
        addWithChange("NICsuppB", r._nicSuppB, 0);
        addWithChange("NICsuppC", r._nicSuppC, 0);
        add("PIC", r._pic);
        add("NACp", r._nacp);
        add("SIL", r._sil);
        endSection(page);
    }
};

std::string ADSBTargetReport::toHtml(const std::string& style) const {
    constexpr std::size_t fullPage = 5600; // enough for all data and a callsign of eight characters
    std::string page;
    page.reserve(fullPage + style.size());
    page += "<!DOCTYPE html>\n"
            "<html lang=\"en\">\n"
            "  <head>\n"
            "    <title>ADS-B Target Report</title>\n"
            "    <style type=\"text/css\">";
    page += style;
    page += "</style>\n"
            "  </head>\n"
            "  <body>\n"
            "    <h1>ADS-B Target Report</h1>\n"
            "    <br>\n";
    Page::addIdentification(page, *this);
    Page::addStaticData(page, *this);
    Page::addTacticalData(page, *this);
    Page::addQualityIndicators(page, *this);
    page += "  </body>\n"
            "</html>\n";
    return page;
}

} // namespace tolvarin::ondrel
