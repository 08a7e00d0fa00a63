// The HTML page of a report. Programs read these pages, so texts and layout are promises: the
// misspellings stay, and a new datum gets no row. For the same reason each section has its own rule
// for data that are not valid.

#include <ondrel/adsb_target_report.h>

#include "hidden.h"
#include "html_document.h"
#include "text.h"

#include <initializer_list>
#include <string>

namespace tolvarin::ondrel {

namespace {

using Cells = std::initializer_list<std::string>;

void addRow(HtmlElement& table, const char* cellName, Cells cells) {
    HtmlElement& row = table.addChild(HtmlElement("tr"));
    for (const std::string& cell : cells) {
        row.addChild(HtmlElement(cellName, cell));
    }
}

void addBreak(HtmlElement& body) {
    body.addChild(HtmlElement("br")).isVoid = true;
}

/// A section of the page; gives its table with the row of column names.
HtmlElement& addSection(HtmlElement& body, const char* heading, Cells columns) {
    body.addChild(HtmlElement("h2", heading));
    addBreak(body);
    HtmlElement& table = body.addChild(HtmlElement("table"));
    table.addAttribute("border", 1)
        .addAttribute("cellspacing", 0)
        .addAttribute("class", "general_table");
    addRow(table, "th", columns);
    return table;
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
    static void addIdentification(HtmlElement& body, const ADSBTargetReport& r) {
        HtmlElement& table =
            addSection(body, "Identification", {"Item", "Valid", "Value", "Last Update"});
        const std::string time = timeToString(r._lastUpdate);
        addRow(table, "td",
               {"Track Number", boolToString(r.valid()), std::to_string(r._trackId), time});
        addRow(table, "td",
               {"ICAO Address", boolToString(r._icaoAddressValid), r.icaoAddressString(), time});
    }

    /// An item that is not valid has neither value nor times. The MOPS version is always shown,
    /// since every aircraft has one, assumed or confirmed. A squawk shows no last change.
    static void addStaticData(HtmlElement& body, const ADSBTargetReport& r) {
        HtmlElement& table =
            addSection(body, "Static", {"Item", "Valid", "Value", "Last Change", "Last Update"});
        const auto add = [&table](const char* item, bool valid, const std::string& value,
                                  u64 change, u64 update) {
            if (valid) {
                addRow(
                    table, "td",
                    {item, boolToString(valid), value, timeToString(change), timeToString(update)});
            } else {
                addRow(table, "td", {item, boolToString(valid), "", "", ""});
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
    }

    /// Data that change all the time, so the section has no column for the last change. An item
    /// that is not valid has neither value nor time.
    static void addTacticalData(HtmlElement& body, const ADSBTargetReport& r) {
        HtmlElement& table =
            addSection(body, "Tectical", {"Item", "Valid", "Value", "Last Update"});
        const auto add = [&table](const char* item, const auto& datum, const std::string& value) {
            addRow(table, "td",
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
    }

    /// An item that is not valid has no value, but its times are shown.
    static void addQualityIndicators(HtmlElement& body, const ADSBTargetReport& r) {
        HtmlElement& table = addSection(body, "Quality Indicators",
                                        {"Item", "Valid", "Value", "Last Change", "Last Update"});
        const auto add = [&table](const char* item, const auto& datum) {
            addRow(table, "td",
                   {item, boolToString(datum.valid), datum.valid ? std::to_string(datum.value) : "",
                    timeToString(datum.lastChange), timeToString(datum.lastUpdate)});
        };
        add("NUCp", r._nucp);
        add("NUCr", r._nucr);
        add("NIC", r._nic);
        add("NICsuppA", r._nicSuppA);
        add("NICsuppB", r._nicSuppB);
        add("NICsuppC", r._nicSuppC);
        add("PIC", r._pic);
        add("NACp", r._nacp);
        add("SIL", r._sil);
    }
};

std::string ADSBTargetReport::toHtml(const std::string& style) const {
    const std::string title = "ADS-B Target Report";
    HtmlDocument document(title);
    document.root.addAttribute("lang", "en");
    document.head->addChild(HtmlElement("style", style)).addAttribute("type", "text/css");
    document.body->addChild(HtmlElement("h1", title));
    addBreak(*document.body);
    Page::addIdentification(*document.body, *this);
    Page::addStaticData(*document.body, *this);
    Page::addTacticalData(*document.body, *this);
    Page::addQualityIndicators(*document.body, *this);
    return document.toString();
}

} // namespace tolvarin::ondrel
