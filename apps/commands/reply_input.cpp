#include "apps/commands/reply_input.h"

#include "apps/common/failure.h"
#include "apps/common/interruption.h"

#include <map>
#include <unistd.h>

namespace tolvarin::ondrel::client {

namespace {

constexpr auto noLog = static_cast<Log::Level>(Log::Panic + 1); // above every level

const std::map<std::string, Log::Level> logLevels = {{"debug", Log::Debug},
                                                     {"info", Log::Info},
                                                     {"warning", Log::Warning},
                                                     {"critical", Log::Critical},
                                                     {"none", noLog}};

constexpr unsigned mostOfOneReason = 10;
constexpr unsigned mostShown = 100;

void addLogOption(CLI::App& command, ReplyInputOptions& options) {
    options.logLevel = noLog;
    command
        .add_option_function<std::string>(
            "--log", [&options](const std::string& name) { options.logLevel = logLevels.at(name); },
            "Show the library's log on standard error from this\n"
            "level on: debug, info, warning, critical; or none")
        ->type_name("LEVEL=none")
        ->check(CLI::IsMember(logLevels).description(""));
}

} // namespace

void addReplyInputOptions(CLI::App& command, ReplyInputOptions& options) {
    command
        .add_option_function<std::string>(
            "FILE", [&options](const std::string& path) { options.arguments = {path}; },
            "The recording; - for standard input")
        ->required()
        ->type_name("");
    addLogOption(command, options);
}

void addReplyInputOptionsOrReplies(CLI::App& command, ReplyInputOptions& options) {
    options.repliesAllowed = true;
    command
        .add_option("FILE", options.arguments,
                    "The recording; - for standard input. Or replies\n"
                    "themselves, in the forms of a line; for the shell,\n"
                    "put '*HEX;' into quotes")
        ->required()
        ->type_name("");
    command.callback([&options] {
        if (options.arguments.size() > 1 && !areReplies(options.arguments)) {
            throw CLI::ValidationError("FILE", "expected one file, or replies alone");
        }
    });
    addLogOption(command, options);
}

ReplyInput::ReplyInput(const ReplyInputOptions& options, Console& console)
    : _console(console), _source(options.repliesAllowed && areReplies(options.arguments)
                                     ? openReplies(options.arguments, events())
                                     : openReplySource(options.arguments.front(), events())),
      _log(console, options.logLevel),
      _typed(options.arguments.front() == "-" && ::isatty(STDIN_FILENO) != 0) {
    noteInterruption();
}

SourceEvents ReplyInput::events() {
    return {
        [this](const std::string& place, const std::string& reason) { complain(place, reason); },
        [this](u64 read, u64 total) { showProgress(read, total); }};
}

void ReplyInput::showProgress(u64 read, u64 total) {
    if (total == 0 || _countOnly) {
        showCount();
        return;
    }
    _console.flushOutput();
    _console.showProgress(read, total);
}

void ReplyInput::showCount() {
    _console.flushOutput();
    if (!_typed) {
        _console.showCount(_replies);
    }
}

void ReplyInput::complain(const std::string& place, const std::string& reason) {
    unsigned* times = _shown < mostShown ? &_timesShown[reason] : nullptr;
    if (times == nullptr || *times == mostOfOneReason) {
        ++_notShown;
        return;
    }
    std::string text = place + ": " + reason;
    if (++_shown == mostShown) {
        text += " (all later lines that are not readable are only counted)";
    } else if (++*times == mostOfOneReason) {
        text += " (later lines of this kind are only counted)";
    }
    _console.write(text);
}

bool ReplyInput::next(Reply& reply) {
    try {
        if (interrupted() || !_source->next(reply)) {
            return false;
        }
    } catch (const InputFailure& failure) {
        if (_replies == 0) {
            throw;
        }
        _failed = true;
        _console.write(std::string("ondrel: ") + failure.what());
        return false;
    }
    ++_replies;
    return true;
}

int ReplyInput::status() const {
    if (interrupted()) {
        return interruptedStatus;
    }
    return _failed || (_replies == 0 && unreadable().all > 0) ? 1 : 0;
}

} // namespace tolvarin::ondrel::client
