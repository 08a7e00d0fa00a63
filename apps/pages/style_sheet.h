#pragma once

#include <string>

namespace tolvarin::ondrel::client {

/// How all pages look, light or dark as the reader's system is set, on wide and on narrow screens.
/// It serves the index and the library's pages of single aircraft, and has nothing in it that would
/// end a style element.
const std::string& styleSheet();

} // namespace tolvarin::ondrel::client
