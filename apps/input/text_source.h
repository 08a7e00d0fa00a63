#pragma once

#include "apps/common/file.h"
#include "apps/input/line_reader.h"
#include "apps/input/reply_source.h"

#include <ondrel/types.h>

#include <string>

namespace tolvarin::ondrel::client {

/// Replies as lines of text (reply_line.h), from a file or standard input. A line that cannot be
/// read is reported as `FILE:LINE: REASON`, counted and skipped.
class TextSource final : public ReplySource {
public:
    TextSource(File file, SourceEvents events);

    bool next(Reply& reply) override;
    const std::string& name() const override { return _lines.file().name(); }
    u64 unreadable() const override { return _unreadable; }

private:
    void report(const Line& line, const std::string& reason);

    SourceEvents _events;
    u64 _totalBytes;
    LineReader _lines;
    u64 _unreadable = 0;
};

} // namespace tolvarin::ondrel::client
