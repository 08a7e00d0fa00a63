#pragma once

#include <string_view>

namespace tolvarin::ondrel::client {

/// The file live.js beside this one, which the build puts into the program.
extern const std::string_view liveScript;

} // namespace tolvarin::ondrel::client
