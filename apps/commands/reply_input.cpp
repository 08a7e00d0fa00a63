#include "apps/commands/reply_input.h"

#include "apps/common/interruption.h"

#include <map>

namespace tolvarin::ondrel::client {

namespace {

constexpr auto noLog = static_cast<Log::Level>(Log::Panic + 1); // above every level

const std::map<std::string, Log::Level> logLevels = {{"debug", Log::Debug},
                                                     {"info", Log::Info},
                                                     {"warning", Log::Warning},
                                                     {"critical", Log::Critical},
                                                     {"none", noLog}};

} // namespace

void addReplyInputOptions(CLI::App& command, ReplyInputOptions& options) {
    command.add_option("FILE", options.path, "The recording; - for standard input")
        ->required()
        ->type_name("");
    options.logLevel = noLog;
    command
        .add_option_function<std::string>(
            "--log", [&options](const std::string& name) { options.logLevel = logLevels.at(name); },
            "Show the library's log on standard error from this\n"
            "level on: debug, info, warning, critical; or none")
        ->type_name("LEVEL=none")
        ->check(CLI::IsMember(logLevels).description(""));
}

ReplyInput::ReplyInput(const ReplyInputOptions& options, Console& console)
    : _source(openReplySource(
          options.path, {[&console](const std::string& message) { console.write(message); },
                         [&console](u64 read, u64 total) { console.progress(read, total); }})),
      _log(console, options.logLevel) {
    noteInterruption();
}

bool ReplyInput::next(Reply& reply) {
    const bool given = !interrupted() && _source->next(reply);
    _replies += given ? 1U : 0U;
    return given;
}

int ReplyInput::status() const {
    if (interrupted()) {
        return interruptedStatus;
    }
    return _replies == 0 && unreadable() > 0 ? 1 : 0;
}

} // namespace tolvarin::ondrel::client
