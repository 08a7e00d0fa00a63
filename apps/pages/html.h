#pragma once

#include <ondrel/types.h>

#include <string>
#include <string_view>

/// Writes HTML. All pages are made with these functions.
namespace tolvarin::ondrel::client {

/// Plain text in the form in which it stands in a page or in a quoted attribute. Control characters
/// and bytes that belong to no character of UTF-8 are shown as on the terminal, as `\x1B`.
std::string htmlText(std::string_view text);

/// ` name="value"`. The value is plain text.
std::string attribute(std::string_view name, std::string_view value);

/// `<name>content</name>`. The content is HTML.
std::string element(std::string_view name, std::string_view content);

/// `<name class="style">content</name>`; without the class if `style` is empty.
std::string element(std::string_view name, std::string_view style, std::string_view content);

/// A header cell of a table, of the column ("col") or of the row ("row"). The content is HTML.
std::string headCell(std::string_view scope, std::string_view style, std::string_view content);

/// A text that shows its meaning when the mouse rests on it. Both are plain text.
std::string abbreviation(std::string_view text, std::string_view meaning);

/// `<a href="target">text</a>`. Target and text are plain text.
std::string link(std::string_view target, std::string_view text);

/// Says in the head of a page that the client made it.
constexpr std::string_view generatorTag = R"(<meta name="generator" content="ondrel">)";

struct Page {
    std::string title; ///< plain text
    std::string style; ///< the text of style sheets
    std::string body;  ///< HTML
};

/// The whole page. `head` is HTML for its head.
std::string wholePage(const Page& page, std::string_view head = "");

/// Stands for a value that is not known.
constexpr std::string_view dash = "&ndash;";

/// The file of the index, and the file of an aircraft beside it.
constexpr std::string_view indexName = "index.html";
std::string pageName(u32 address);

} // namespace tolvarin::ondrel::client
