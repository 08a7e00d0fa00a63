#include "apps/pages/html_text.h"

#include "apps/common/text.h"

namespace tolvarin::ondrel::client {

std::string htmlText(std::string_view text) {
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
            escaped += static_cast<u8>(character) < ' ' || character == '\x7F' ? '?' : character;
        }
    }
    return escaped;
}

std::string pageName(u32 address) {
    return hex24(address) + ".html";
}

} // namespace tolvarin::ondrel::client
