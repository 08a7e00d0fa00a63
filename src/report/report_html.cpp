// A report as a page.

#include <ondrel/adsb_target_report.h>

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

void ADSBTargetReport::addIdentification(HtmlElement& body) const {
    HtmlElement& table =
        addSection(body, "Identification", {"Item", "Valid", "Value", "Last Update"});
    const std::string time = timeToString(_lastUpdate);
    addRow(table, "td", {"Track Number", boolToString(valid()), std::to_string(_trackId), time});
    addRow(table, "td",
           {"ICAO Address", boolToString(_icaoAddressValid), icaoAddressString(), time});
}

void ADSBTargetReport::addStaticData(HtmlElement& body) const {
    HtmlElement& table =
        addSection(body, "Static", {"Item", "Valid", "Value", "Last Change", "Last Update"});
    const auto add = [&table](const char* item, bool valid, const std::string& value, u64 change,
                              u64 update) {
        if (valid) {
            addRow(table, "td",
                   {item, boolToString(valid), value, timeToString(change), timeToString(update)});
        } else {
            addRow(table, "td", {item, boolToString(valid), "", "", ""});
        }
    };
    const auto addDatum = [&add](const char* item, const auto& datum, const std::string& value) {
        add(item, datum.valid, value, datum.lastChange, datum.lastUpdate);
    };
    addDatum("Callsign", _callsign, _callsign.value);
    add("Squawk", _squawk.valid, squawkString(), 0, _squawk.lastUpdate);
    add("MOPS Version", true, mopsVersionText(_mopsVersion), _mopsVersionLastChange,
        _mopsVersionLastUpdate);
    add("MOPS Certainty ", true, _mopsVersionConfirmed ? "CONFIRMED" : "ASSUMED",
        _mopsVersionLastChange, _mopsVersionLastUpdate);
    addDatum("Emitter Category", _emitterCategory, std::to_string(_emitterCategory.value));
    addDatum("Ground Status", _groundStatus, _groundStatus.value ? "GND" : "AIR");
    addDatum("SPI", _spiStatus, _spiStatus.value ? "SPI" : "NO SPI");
    addDatum("Alert Status", _alertStatus, _alertStatus.value ? "ALERT" : "NO ALERT");
}

void ADSBTargetReport::addTacticalData(HtmlElement& body) const {
    HtmlElement& table = addSection(body, "Tectical", {"Item", "Valid", "Value", "Last Update"});
    const auto add = [&table](const char* item, const auto& datum, const std::string& value) {
        addRow(table, "td",
               {item, boolToString(datum.valid), datum.valid ? value : "",
                datum.valid ? timeToString(datum.lastUpdate) : ""});
    };
    add("Position", _position, positionString());
    add("Latitude", _position, text::fixed(_position.value.latitude));
    add("Longitude", _position, text::fixed(_position.value.longitude));
    add("Braometric Altitude", _altitudeBaro, std::to_string(_altitudeBaro.value));
    add("Ground Speed", _groundSpeed, text::fixed(_groundSpeed.value));
    add("Heading", _heading, text::fixed(_heading.value));
    add("Barometric Vertical Rate", _verticalRateBaro, std::to_string(_verticalRateBaro.value));
    add("Signal Amplitude", _signalAmplitude, std::to_string(_signalAmplitude.value));
}

/// Here a flag decides about the value alone; the times are always shown.
void ADSBTargetReport::addQualityIndicators(HtmlElement& body) const {
    HtmlElement& table = addSection(body, "Quality Indicators",
                                    {"Item", "Valid", "Value", "Last Change", "Last Update"});
    const auto add = [&table](const char* item, const auto& datum) {
        addRow(table, "td",
               {item, boolToString(datum.valid), datum.valid ? std::to_string(datum.value) : "",
                timeToString(datum.lastChange), timeToString(datum.lastUpdate)});
    };
    add("NUCp", _nucp);
    add("NUCr", _nucr);
    add("NIC", _nic);
    add("NICsuppA", _nicSuppA);
    add("NICsuppB", _nicSuppB);
    add("NICsuppC", _nicSuppC);
    add("PIC", _pic);
    add("NACp", _nacp);
    add("SIL", _sil);
}

std::string ADSBTargetReport::toHtml(const std::string& style) const {
    const std::string title = "ADS-B Target Report";
    HtmlDocument document(title);
    document.root.addAttribute("lang", "en");
    document.head->addChild(HtmlElement("style", style)).addAttribute("type", "text/css");
    document.body->addChild(HtmlElement("h1", title));
    addBreak(*document.body);
    addIdentification(*document.body);
    addStaticData(*document.body);
    addTacticalData(*document.body);
    addQualityIndicators(*document.body);
    return document.toString();
}

} // namespace tolvarin::ondrel
