#include "apps/commands/reply_input.h"

#include "apps/common/failure.h"
#include "apps/common/interruption.h"
#include "apps/common/text.h"
#include "apps/network/feed_address.h"
#include "apps/network/feeds.h"

#include <algorithm>
#include <cstddef>
#include <filesystem>
#include <map>
#include <system_error>
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

const std::map<std::string, ReceiverCounter::Kind> counters = {
    {"12mhz", ReceiverCounter::Kind::TwelveMHz}, {"gps", ReceiverCounter::Kind::Gps}};

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

/// Whether both paths lead to one file.
bool isSameFile(const std::string& one, const std::string& other) {
    std::error_code error; // where one of them is not there
    return one == other || std::filesystem::equivalent(one, other, error);
}

/// The same for a message server.
std::string networkError(const ReplyInputOptions& options) {
    if (!options.worker) {
        return "only ondrel track reads from a message server";
    }
    if (options.arguments.size() > 1) {
        return "a message server cannot be read beside other sources";
    }
    if (options.record) {
        return "--record is for what a site receives; it keeps no grades of other sites";
    }
    return messageServerError(options.arguments.front());
}

/// What is wrong with the sources; empty if nothing is.
std::string sourcesError(const ReplyInputOptions& options) {
    const std::vector<std::string>& names = options.arguments;
    if (options.repliesAllowed && areReplies(names)) {
        return "";
    }
    if (isNetwork(options)) {
        return networkError(options);
    }
    for (const std::string& name : names) {
        if (isFeed(name) && !feedAddress(name)) {
            return "expected tcp://HOST:PORT, not '" + name + "'";
        }
        if (options.record && isSameFile(*options.record, name)) {
            return "--record would write over '" + name + "'";
        }
        if (name == "-" && names.size() > 1) {
            return "standard input cannot be read beside other sources";
        }
    }
    return names.size() > mostSources
               ? "at most " + std::to_string(mostSources) + " sources can be read at once"
               : "";
}

void addOptions(CLI::App& command, ReplyInputOptions& options, const std::string& help) {
    command.add_option("SOURCE", options.arguments, help)->required()->type_name("");
    command.parse_complete_callback([&options] {
        const std::string error = sourcesError(options);
        if (!error.empty()) {
            throw CLI::ValidationError("SOURCE", error);
        }
    });
    command
        .add_option_function<std::string>(
            "--clock", [&options](const std::string& name) { options.counter = counters.at(name); },
            "What counters of receivers count: 12mhz or gps")
        ->type_name("KIND=12mhz")
        ->check(CLI::IsMember(counters).description(""));
    command
        .add_option("--record", options.record,
                    "Write what is read into this file, to read it again")
        ->type_name("FILE");
    addLogOption(command, options);
}

} // namespace

void addReplyInputOptions(CLI::App& command, ReplyInputOptions& options) {
    addOptions(command, options,
               options.worker ? "Recordings and feeds: a file; - for standard input;\n"
                                "tcp://HOST:PORT. Or a message server: nats://HOST:PORT"
                              : "Recordings and feeds: a file; - for standard input;\n"
                                "tcp://HOST:PORT");
}

void addReplyInputOptionsOrReplies(CLI::App& command, ReplyInputOptions& options) {
    options.repliesAllowed = true;
    addOptions(command, options,
               "Recordings and feeds: a file; - for standard input;\n"
               "tcp://HOST:PORT. Or replies themselves, in the forms\n"
               "of a line; for the shell, put '*HEX;' into quotes");
}

bool isNetwork(const ReplyInputOptions& options) {
    return std::any_of(options.arguments.begin(), options.arguments.end(), isMessageServer);
}

bool isLive(const ReplyInputOptions& options) {
    return isNetwork(options) ||
           std::any_of(options.arguments.begin(), options.arguments.end(), isFeed);
}

ReplyInput::ReplyInput(const ReplyInputOptions& options, Console& console)
    : _console(console), _source(open(options)), _log(console, options.logLevel), _decoders(1),
      _typed(options.arguments.front() == "-" && ::isatty(STDIN_FILENO) != 0) {
    if (options.record) {
        _record.emplace(*options.record);
    }
}

std::unique_ptr<ReplySource> ReplyInput::open(const ReplyInputOptions& options) {
    if (isNetwork(options)) {
        noteInterruption();
        WorkerOptions worker = *options.worker;
        worker.server.url = options.arguments.front();
        return std::make_unique<NetworkReplies>(worker, events());
    }
    if (isLive(options)) {
        noteInterruption();
        return std::make_unique<Feeds>(options.arguments, options.counter, events());
    }
    auto source = options.repliesAllowed && areReplies(options.arguments)
                      ? openReplies(options.arguments, options.counter, events())
                      : openReplySource(options.arguments, options.counter, events());
    noteInterruption(); // not before, so that a signal ends an open() that waits
    return source;
}

/// One line of text.
void ReplyInput::record(const Reply& reply) {
    if (reply.stampMs) {
        *_record << secondsText(*reply.stampMs) << ',';
    }
    *_record << hexBytes(reply.bytes);
    if (reply.stampMs && (reply.signalAmplitude != 0 || reply.source != 0)) {
        *_record << ',' << unsigned{reply.signalAmplitude};
    }
    if (reply.stampMs && reply.source != 0) {
        *_record << ',' << reply.source;
    }
    *_record << '\n';
}

void ReplyInput::close() {
    if (_record) {
        _record->close();
    }
}

SourceEvents ReplyInput::events() {
    return {
        [this](const std::string& place, const std::string& reason) { complain(place, reason); },
        [this](u64 read, u64 total) { showProgress(read, total); },
        [this](const std::string& message) { _console.write(message); }};
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

ReplySource::Got ReplyInput::next(Reply& reply) {
    auto got = ReplySource::Got::End;
    try {
        got = interrupted() ? got : _source->next(reply);
    } catch (const InputFailure& failure) {
        if (_replies == 0) {
            throw;
        }
        _failed = true;
        _console.write(std::string("ondrel: ") + failure.what());
    }
    if (got == ReplySource::Got::Reply) {
        ++_replies;
        if (_record) {
            record(reply);
        }
    } else if (got == ReplySource::Got::Nothing) {
        if (_record) {
            _record->flush(); // so that a sudden end loses little
        }
        showCount();
    }
    return got;
}

int ReplyInput::status() const {
    if (interrupted()) {
        return interruptedStatus;
    }
    return _failed || (_replies == 0 && leftOut().unreadable > 0) ? 1 : 0;
}

} // namespace tolvarin::ondrel::client
