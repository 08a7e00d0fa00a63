#pragma once

#include <ondrel/types.h>

#include <string>
#include <string_view>

namespace tolvarin::ondrel::client {

/// The text as it must stand in a page or in a quoted attribute. Control characters show as "?".
std::string htmlText(std::string_view text);

/// The file of an aircraft's page, beside the index.
std::string pageName(u32 address);

} // namespace tolvarin::ondrel::client
