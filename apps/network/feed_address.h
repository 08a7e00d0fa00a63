#pragma once

#include <optional>
#include <string>

namespace tolvarin::ondrel::client {

/// Where a feed is served.
struct FeedAddress {
    std::string host; ///< a name or a number; an IPv6 number without brackets
    std::string port;
};

/// Whether a source that the user named is a feed and no file.
bool isFeed(const std::string& name);

/// Reads "tcp://HOST:PORT", with brackets around an IPv6 number; nothing if the text is not of that
/// form.
std::optional<FeedAddress> feedAddress(const std::string& name);

/// Reads "HOST:PORT".
std::optional<FeedAddress> hostAndPort(const std::string& text);

} // namespace tolvarin::ondrel::client
