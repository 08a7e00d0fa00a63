#pragma once

#include <cstddef>
#include <limits>

namespace tolvarin::ondrel::client {

/// How text is laid out for the place where it appears.
struct TextStyle {
    std::size_t width = std::numeric_limits<std::size_t>::max(); ///< of a line
    bool colour = false; ///< whether escape sequences make it bold, dim and red
};

/// On a terminal its width, and colour unless NO_COLOR is set and not empty, or TERM says that it
/// has none. Anywhere else any width and no colour.
TextStyle standardOutputStyle();

/// Whether TERM is set and not dumb.
bool canMoveCursor();

} // namespace tolvarin::ondrel::client
