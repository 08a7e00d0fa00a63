/// @file
/// A small tree of HTML elements that fixes the layout of its text.
#pragma once

#include <ondrel/types.h>

#include <string>
#include <vector>

namespace tolvarin::ondrel {

struct HtmlAttribute {
    std::string name;
    std::string value; ///< written without a value when empty
};

/// An element owns its children. One with an empty name is a bare line of text.
struct HtmlElement {
    std::string name;
    std::string text; ///< directly behind the opening tag
    std::vector<HtmlAttribute> attributes;
    std::vector<HtmlElement> children;
    bool isVoid = false; ///< has no closing tag as long as it has neither text nor children

    explicit HtmlElement(std::string elementName, std::string elementText = {});
    /// A null text means an empty one.
    HtmlElement(std::string elementName, const char* elementText);

    HtmlElement& addAttribute(const std::string& attribute, const std::string& value);
    HtmlElement& addAttribute(const std::string& attribute, u32 value);
    /// Gives the child in its place, where it stays until the next one is added.
    HtmlElement& addChild(HtmlElement&& child);
};

/// An element "html" with a head, which has the title, and a body.
class HtmlDocument {
public:
    explicit HtmlDocument(const std::string& title);
    HtmlDocument(const HtmlDocument&) = delete;
    HtmlDocument& operator=(const HtmlDocument&) = delete;

    /// Two blanks for each level, "\n" as line end, nothing escaped.
    std::string toString() const;

    HtmlElement root; ///< nothing may be added to it, for the sake of the two below
    HtmlElement* head;
    HtmlElement* body;
};

} // namespace tolvarin::ondrel
