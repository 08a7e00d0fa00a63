#include "apps/network/feed_address.h"

#include <charconv>
#include <string_view>

namespace tolvarin::ondrel::client {

namespace {

constexpr std::string_view scheme = "tcp://";

bool isPort(std::string_view text) {
    unsigned short number = 0;
    const auto result = std::from_chars(text.data(), text.data() + text.size(), number);
    return result.ec == std::errc() && result.ptr == text.data() + text.size();
}

} // namespace

bool isFeed(const std::string& name) {
    return name.compare(0, scheme.size(), scheme) == 0;
}

std::optional<FeedAddress> feedAddress(const std::string& name) {
    return isFeed(name) ? hostAndPort(name.substr(scheme.size())) : std::nullopt;
}

std::optional<FeedAddress> hostAndPort(const std::string& text) {
    const std::size_t colon = text.rfind(':');
    if (colon == std::string::npos || !isPort(std::string_view(text).substr(colon + 1))) {
        return std::nullopt;
    }
    std::string host = text.substr(0, colon);
    const bool inBrackets = host.size() > 2 && host.front() == '[' && host.back() == ']';
    if (inBrackets) {
        host = host.substr(1, host.size() - 2);
    }
    if (host.empty() || (host.find(':') != std::string::npos) != inBrackets ||
        host.find_first_of("[]/ ") != std::string::npos) {
        return std::nullopt;
    }
    return FeedAddress{host, text.substr(colon + 1)};
}

} // namespace tolvarin::ondrel::client
