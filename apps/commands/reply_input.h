#pragma once

#include "apps/decoding/decoded_reply.h"
#include "apps/input/reply_source.h"
#include "apps/messaging/network_replies.h"
#include "apps/terminal/console.h"
#include "apps/terminal/summaries.h"

#include <CLI/CLI.hpp>
#include <ondrel/log.h>
#include <ondrel/mode_s_decoder.h>
#include <ondrel/types.h>

#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace tolvarin::ondrel::client {

/// The options of every command that reads replies.
struct ReplyInputOptions {
    std::vector<std::string> arguments; ///< files and feeds, or replies where these are allowed
    bool repliesAllowed = false;
    std::optional<std::string> record; ///< a file for what is read
    Log::Level logLevel{};
    ReceiverCounter::Kind counter = ReceiverCounter::Kind::TwelveMHz;
    std::optional<WorkerOptions> worker; ///< if a message server can be a source
};

/// Adds SOURCE, `--clock`, `--record` and `--log` to the command.
void addReplyInputOptions(CLI::App& command, ReplyInputOptions& options);

/// The same, where replies may stand in place of SOURCE.
void addReplyInputOptionsOrReplies(CLI::App& command, ReplyInputOptions& options);

/// Whether some source is a feed or a message server.
bool isLive(const ReplyInputOptions& options);

/// Whether the source is a message server.
bool isNetwork(const ReplyInputOptions& options);

/// The sources that the user named, and a decoder for the replies of each. Shows the library's log
/// and what the source reports on the console.
class ReplyInput {
public:
    /// The console must outlive the input.
    ReplyInput(const ReplyInputOptions& options, Console& console);

    /// Puts the next reply into `reply`. The end is also after an interruption, and where the input
    /// cannot be read any further, which is said then. Throws InputFailure if there was no reply
    /// before.
    ReplySource::Got next(Reply& reply);

    /// Decodes replies in the order in which they came: how far one is believed depends on the
    /// replies before it.
    std::unique_ptr<const DFMessage> decode(const Reply& reply) {
        return decodeReply(decoderOf(reply.source), reply);
    }

    /// Shows a count of replies from now on, where bytes tell nothing of the progress.
    void showCountOnly() { _countOnly = true; }

    /// Shows how many replies there were, for waits between two replies. Flushes the output.
    void showCount();

    const std::string& name() const { return _source->name(); }

    /// Writes what is recorded. Call it at the end.
    void close();

    std::vector<SourceState> states() const { return _source->states(); }
    LeftOut leftOut() const {
        const SourceCounts counts = _source->counts();
        return {counts.unreadable, _notShown, counts.modeAC, counts.heardElsewhere, counts.ahead};
    }

    /// The exit status at the end: 130 after an interruption, 1 if the input could not be read to
    /// its end or there was no reply but something unreadable, else 0.
    int status() const;

private:
    SourceEvents events();
    std::unique_ptr<ReplySource> open(const ReplyInputOptions& options);
    ModeSDecoder& decoderOf(unsigned source) {
        while (source >= _decoders.size()) {
            _decoders.emplace_back();
        }
        return _decoders[source];
    }
    void record(const Reply& reply);
    void showProgress(u64 read, u64 total);
    void complain(const std::string& place, const std::string& reason);

    Console& _console;
    std::map<std::string, unsigned> _timesShown; ///< of each reason
    unsigned _shown = 0;
    u64 _notShown = 0;
    std::unique_ptr<ReplySource> _source;
    LibraryLog _log;
    std::vector<ModeSDecoder> _decoders; ///< by the source of a reply
    std::optional<Output> _record;       ///< with --record
    u64 _replies = 0;
    bool _failed = false;
    bool _typed; ///< the user types the input into the terminal
    bool _countOnly = false;
};

} // namespace tolvarin::ondrel::client
