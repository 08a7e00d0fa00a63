// What the library says of itself. The build passes the version numbers of the project as macros.

#include <ondrel/ondrel.h>

namespace tolvarin::ondrel {

std::string Ondrel::version() {
    return std::to_string(ONDREL_VERSION_MAJOR) + '.' + std::to_string(ONDREL_VERSION_MINOR) + '.' +
           std::to_string(ONDREL_VERSION_PATCH);
}

std::string Ondrel::build() {
    return __DATE__; // of the compilation of this file, as "Jan 10 2021"
}

std::string Ondrel::about() {
    return "Ondrel, copyright (c) 2026 the Ondrel developers, MIT licence";
}

std::string Ondrel::contact() {
    return "https://ondrel.tolvarin.example/";
}

} // namespace tolvarin::ondrel
