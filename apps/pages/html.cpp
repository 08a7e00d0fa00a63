#include "apps/pages/html.h"

#include "apps/common/text.h"

#include <algorithm>

namespace tolvarin::ondrel::client {

namespace {

bool isPlain(char character) {
    return character >= ' ' && character <= '~';
}

} // namespace

std::string htmlText(std::string_view text) {
    std::string shown;
    if (!std::all_of(text.begin(), text.end(), isPlain)) { // most texts are, and take less time
        shown = shownName(text);
        text = shown;
    }
    std::string escaped;
    escaped.reserve(text.size());
    for (const char character : text) {
        switch (character) {
        case '&':
            escaped += "&amp;";
            break;
        case '<':
            escaped += "&lt;";
            break;
        case '>':
            escaped += "&gt;";
            break;
        case '"':
            escaped += "&quot;";
            break;
        case '\'':
            escaped += "&#39;";
            break;
        default:
            escaped += character;
        }
    }
    return escaped;
}

std::string attribute(std::string_view name, std::string_view value) {
    return " " + std::string(name) + "=\"" + htmlText(value) + "\"";
}

std::string element(std::string_view name, std::string_view content) {
    return element(name, "", content);
}

std::string element(std::string_view name, std::string_view style, std::string_view content) {
    const std::string tag(name);
    return "<" + tag + (style.empty() ? "" : attribute("class", style)) + ">" +
           std::string(content) + "</" + tag + ">";
}

std::string headCell(std::string_view scope, std::string_view style, std::string_view content) {
    return "<th" + attribute("scope", scope) + (style.empty() ? "" : attribute("class", style)) +
           ">" + std::string(content) + "</th>";
}

std::string abbreviation(std::string_view text, std::string_view meaning) {
    return "<abbr" + attribute("title", meaning) + ">" + htmlText(text) + "</abbr>";
}

std::string link(std::string_view target, std::string_view text) {
    return "<a" + attribute("href", target) + ">" + htmlText(text) + "</a>";
}

std::string wholePage(const Page& page, std::string_view head) {
    return "<!DOCTYPE html>\n<html lang=\"en\">\n<head>\n<meta charset=\"utf-8\">\n" +
           std::string(generatorTag) +
           "\n<meta name=\"viewport\" content=\"width=device-width, initial-scale=1\">\n" +
           std::string(head) + element("title", htmlText(page.title)) + "\n" +
           element("style", "\n" + page.style) + "\n</head>\n<body>\n<main>\n" + page.body +
           "</main>\n</body>\n</html>\n";
}

std::string pageName(u32 address) {
    return hex24(address) + ".html";
}

} // namespace tolvarin::ondrel::client
