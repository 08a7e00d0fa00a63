#pragma once

#include "apps/console.h"
#include "apps/decoded_reply.h"
#include "apps/library_log.h"
#include "apps/recording_reader.h"

#include <CLI/CLI.hpp>
#include <ondrel/log.h>
#include <ondrel/mode_s_decoder.h>
#include <ondrel/types.h>

#include <optional>
#include <string>
#include <utility>

namespace tolvarin::ondrel::client {

/// What every command that reads a recording can be told.
struct RecordingOptions {
    std::string path;
    Log::Level logLevel{};
};

/// Adds FILE and `--log` to the command.
void addRecordingOptions(CLI::App& command, RecordingOptions& options);

/// What the help of such a command says about FILE, with its last line's end.
std::string recordingHelp();

/// Reads a recording and decodes its replies, with the library's log and the complaints about
/// unreadable lines on the console.
class RecordingSource {
public:
    /// The console must outlive the source.
    RecordingSource(const RecordingOptions& options, Console& console);

    /// The next reply, or nothing at the end of the recording.
    std::optional<Reply> next();

    /// How far it is believed depends on the replies before it.
    DecodedReply decode(Reply reply) { return decodeReply(_decoder, std::move(reply)); }

    /// The path of the recording, or what stands for standard input in messages.
    const std::string& name() const { return _reader.name(); }

    /// Lines so far that could not be read.
    u64 unreadableLines() const { return _reader.unreadableLines(); }

    /// The exit status when all has been read: 1 if only unreadable lines were found, else 0.
    int status() const { return _replies == 0 && unreadableLines() > 0 ? 1 : 0; }

private:
    RecordingReader _reader;
    LibraryLog _log;
    ModeSDecoder _decoder;
    u64 _replies = 0;
};

} // namespace tolvarin::ondrel::client
