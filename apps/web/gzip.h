#pragma once

#include <string>

namespace tolvarin::ondrel::client {

/// The text as gzip data (RFC 1952).
std::string gzip(const std::string& text);

} // namespace tolvarin::ondrel::client
