/// @file
/// A small tree of HTML elements, and the fixed layout of its text.
#pragma once

#include <ondrel/types.h>

#include <string>
#include <vector>

namespace tolvarin::ondrel {

struct HtmlAttribute {
    std::string name;
    std::string value; ///< if empty, only the name is written
};

/// An element owns its children. An element with an empty name is a bare line of text.
struct HtmlElement {
    std::string name;
    std::string text; ///< directly behind the opening tag, ahead of the children
    std::vector<HtmlAttribute> attributes;
    std::vector<HtmlElement> children;
    bool isVoid = false; ///< has no closing tag as long as it has neither text nor children

    explicit HtmlElement(std::string elementName, std::string elementText = {});
    /// A null text means an empty one.
    HtmlElement(std::string elementName, const char* elementText);

    HtmlElement& addAttribute(const std::string& attribute, const std::string& value);
    HtmlElement& addAttribute(const std::string& attribute, u32 value);
    /// Adds a child and returns it. The reference is good until the next child is added.
    HtmlElement& addChild(HtmlElement&& child);
};

/// An element "html" with a head, which has the title, and a body.
class HtmlDocument {
public:
    explicit HtmlDocument(const std::string& title);
    HtmlDocument(const HtmlDocument&) = delete;
    HtmlDocument& operator=(const HtmlDocument&) = delete;

    /// The text of the page: two blanks for each level, "\n" as line end. Nothing is escaped, so
    /// texts and values must be HTML already.
    std::string toString() const;

    HtmlElement root;  ///< add no child here: it would move head and body
    HtmlElement* head; ///< child of root
    HtmlElement* body; ///< child of root
};

} // namespace tolvarin::ondrel
