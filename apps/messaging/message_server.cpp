#include "apps/messaging/message_server.h"

#include "apps/network/feed_address.h"

#include <string_view>

namespace tolvarin::ondrel::client {

namespace {

constexpr std::string_view scheme = "nats://";

} // namespace

bool isMessageServer(const std::string& name) {
    return name.compare(0, scheme.size(), scheme) == 0;
}

std::string messageServerError(const std::string& name) {
    if (name.find('@') != std::string::npos) {
        return "a user and a password do not belong on the command line, where all see them; "
               "--credentials names a file";
    }
    return isMessageServer(name) && hostAndPort(name.substr(scheme.size()))
               ? ""
               : "expected nats://HOST:PORT, not '" + name + "'";
}

} // namespace tolvarin::ondrel::client
