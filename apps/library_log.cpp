#include "apps/library_log.h"

#include <map>

namespace tolvarin::ondrel::client {

namespace {

constexpr auto nothing = static_cast<Log::Level>(Log::Panic + 1);

const std::map<std::string, Log::Level> levels = {{"debug", Log::Debug},
                                                  {"info", Log::Info},
                                                  {"warning", Log::Warning},
                                                  {"critical", Log::Critical},
                                                  {"none", nothing}};

} // namespace

void addLogOption(CLI::App& command, Log::Level& level) {
    level = nothing;
    command
        .add_option_function<std::string>(
            "--log", [&level](const std::string& name) { level = levels.at(name); },
            "Show the library's log on standard error, from this\n"
            "level on: debug, info, warning, critical; or none")
        ->type_name("LEVEL=none")
        ->check(CLI::IsMember(levels).description(""));
}

LibraryLog::LibraryLog(Console& console, Log::Level level) : _console(console) {
    Log::setShowLevel(level);
    Log::setLogHandler(this);
}

LibraryLog::~LibraryLog() {
    Log::setLogHandler(nullptr);
}

} // namespace tolvarin::ondrel::client
