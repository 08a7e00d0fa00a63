#pragma once

#include <string>

namespace tolvarin::ondrel::client {

/// Whether the program was built with zlib.
bool canPack();

/// The text as gzip data (RFC 1952), if canPack().
std::string gzip(const std::string& text);

} // namespace tolvarin::ondrel::client
