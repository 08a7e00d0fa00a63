#include <ondrel/ondrel.h>

namespace tolvarin::ondrel {

std::string Ondrel::version() {
    return std::to_string(ONDREL_VERSION_MAJOR) + '.' + std::to_string(ONDREL_VERSION_MINOR) + '.' +
           std::to_string(ONDREL_VERSION_PATCH);
}

std::string Ondrel::build() {
    return __DATE__;
}

std::string Ondrel::about() {
    return "Ondrel, copyright (c) 2026 the Ondrel developers, MIT licence";
}

std::string Ondrel::contact() {
    return "https://ondrel.tolvarin.example/";
}

} // namespace tolvarin::ondrel
