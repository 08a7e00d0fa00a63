#pragma once

#include "apps/console.h"
#include "apps/line_reader.h"
#include "apps/reply_line.h"

#include <ondrel/types.h>

#include <optional>
#include <string>

namespace tolvarin::ondrel::client {

/// Reads the replies of a recording. A line that cannot be read is complained of as
/// `FILE:LINE: what is wrong`, counted and passed over.
class RecordingReader {
public:
    /// `-` is standard input. The console must outlive the reader.
    RecordingReader(const std::string& path, Console& console);
    RecordingReader(const RecordingReader&) = delete;
    RecordingReader& operator=(const RecordingReader&) = delete;

    /// The next reply, or nothing at the end of the recording.
    std::optional<Reply> next();

    const std::string& name() const { return _lines.file().name(); }

    /// Lines so far that could not be read.
    u64 unreadableLines() const { return _unreadableLines; }

private:
    void complain(const Line& line, const std::string& text);

    Console& _console;
    LineReader _lines;
    u64 _totalBytes;
    u64 _unreadableLines = 0;
};

} // namespace tolvarin::ondrel::client
