#pragma once

#include <string_view>

/// The style sheets beside this file, which the build puts into the program. A page embeds the
/// common one, that of the map and its own.
namespace tolvarin::ondrel::client {

extern const std::string_view commonStyle;   ///< common.css
extern const std::string_view mapStyle;      ///< map.css
extern const std::string_view indexStyle;    ///< index.css
extern const std::string_view aircraftStyle; ///< aircraft.css

} // namespace tolvarin::ondrel::client
