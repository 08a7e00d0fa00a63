#include "apps/columns.h"

#include <algorithm>

namespace tolvarin::ondrel::client {

std::string toTheRight(std::string_view text, std::size_t width) {
    std::string padded(width - std::min(width, text.size()), ' ');
    padded += text;
    return padded;
}

std::string toTheLeft(std::string_view text, std::size_t width) {
    std::string padded(text);
    padded.resize(std::max(text.size(), width), ' ');
    return padded;
}

} // namespace tolvarin::ondrel::client
