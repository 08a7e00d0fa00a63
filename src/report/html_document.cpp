// Writes a tree of HTML elements as text. Programs read the pages, so the layout is a promise:
// every blank and every line end stays where it is.

#include "html_document.h"

#include <cstddef>
#include <utility>

namespace tolvarin::ondrel {

namespace {

constexpr std::size_t levelIndentation = 2;

/// Ends the line if no text follows and the element has children, or is void.
void writeOpeningTag(std::string& out, const HtmlElement& element) {
    out += '<';
    out += element.name;
    for (const HtmlAttribute& attribute : element.attributes) {
        out += ' ';
        out += attribute.name;
        if (!attribute.value.empty()) {
            out += "=\"";
            out += attribute.value;
            out += '"';
        }
    }
    const bool endsLine = element.text.empty() && (!element.children.empty() || element.isVoid);
    out += endsLine ? ">\n" : ">";
}

// NOLINTNEXTLINE(misc-no-recursion): the tree is as deep as the library builds it
void writeElement(std::string& out, const HtmlElement& element, std::size_t indentation) {
    out.append(indentation, ' ');
    const bool hasTags = !element.name.empty();
    if (hasTags) {
        writeOpeningTag(out, element);
    }
    out += element.text;
    if (!hasTags) { // a bare line of text
        out += '\n';
        return;
    }
    for (const HtmlElement& child : element.children) {
        writeElement(out, child, indentation + levelIndentation);
    }
    // The closing tag stands below the opening one, or on its line if there are no children.
    if (!element.children.empty()) {
        out.append(indentation, ' ');
    }
    if (!element.text.empty() || !element.children.empty() || !element.isVoid) {
        out += "</";
        out += element.name;
        out += ">\n";
    }
}

} // namespace

HtmlElement::HtmlElement(std::string elementName, std::string elementText)
    : name(std::move(elementName)), text(std::move(elementText)) {}

HtmlElement::HtmlElement(std::string elementName, const char* elementText)
    : name(std::move(elementName)), text(elementText != nullptr ? elementText : "") {}

HtmlElement& HtmlElement::addAttribute(const std::string& attribute, const std::string& value) {
    attributes.push_back({attribute, value});
    return *this;
}

HtmlElement& HtmlElement::addAttribute(const std::string& attribute, u32 value) {
    return addAttribute(attribute, std::to_string(value));
}

HtmlElement& HtmlElement::addChild(HtmlElement&& child) {
    return children.emplace_back(std::move(child));
}

HtmlDocument::HtmlDocument(const std::string& title) : root("html") {
    root.addChild(HtmlElement("head"));
    root.addChild(HtmlElement("body"));
    head = &root.children.front();
    body = &root.children.back();
    head->addChild(HtmlElement("title", title));
}

std::string HtmlDocument::toString() const {
    std::string out = "<!DOCTYPE html>\n";
    writeElement(out, root, 0);
    return out;
}

} // namespace tolvarin::ondrel
