#pragma once

#include "apps/decoding/decoded_reply.h"
#include "apps/input/reply_source.h"
#include "apps/terminal/console.h"

#include <CLI/CLI.hpp>
#include <ondrel/log.h>
#include <ondrel/mode_s_decoder.h>
#include <ondrel/types.h>

#include <memory>
#include <string>

namespace tolvarin::ondrel::client {

/// The options of every command that reads replies.
struct ReplyInputOptions {
    std::string path;
    Log::Level logLevel{};
};

/// Adds FILE and `--log` to the command.
void addReplyInputOptions(CLI::App& command, ReplyInputOptions& options);

/// The source that the user named, and a decoder for its replies. Shows the library's log and what
/// the source reports on the console.
class ReplyInput {
public:
    /// The console must outlive the input.
    ReplyInput(const ReplyInputOptions& options, Console& console);

    /// Puts the next reply into `reply`. False at the end of the input and after an interruption.
    bool next(Reply& reply);

    /// Decodes replies in the order in which they came: how far one is believed depends on the
    /// replies before it.
    std::unique_ptr<const DFMessage> decode(const Reply& reply) {
        return decodeReply(_decoder, reply);
    }

    const std::string& name() const { return _source->name(); }
    u64 unreadable() const { return _source->unreadable(); }

    /// The exit status at the end: 130 after an interruption, 1 if there was no reply but something
    /// unreadable, else 0.
    int status() const;

private:
    std::unique_ptr<ReplySource> _source;
    LibraryLog _log;
    ModeSDecoder _decoder;
    u64 _replies = 0;
};

} // namespace tolvarin::ondrel::client
