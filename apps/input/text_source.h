#pragma once

#include "apps/common/file.h"
#include "apps/input/line_reader.h"
#include "apps/input/reply_line.h"
#include "apps/input/reply_source.h"

#include <ondrel/types.h>

#include <string>

namespace tolvarin::ondrel::client {

/// Replies as lines of text (reply_line.h), from a file or standard input, perhaps packed with
/// gzip. A line that cannot be read is reported at `FILE:LINE`, counted and skipped. A UTF-8
/// byte-order mark in front is skipped, and a header line with a report. Content of another kind
/// gives an InputFailure.
class TextSource final : public ReplySource {
public:
    TextSource(File file, SourceEvents events);

    bool next(Reply& reply) override;
    const std::string& name() const override { return _lines.file().name(); }
    u64 unreadable() const override { return _unreadable; }

private:
    LineContent readFirst(Line line, Reply& reply, std::string& error);
    void report(const Line& line, const std::string& reason);
    std::string place(const Line& line) const;

    SourceEvents _events;
    u64 _totalBytes;
    LineReader _lines;
    bool _begun = false; ///< behind the first line that holds a reply or cannot be read
    u64 _unreadable = 0;
};

} // namespace tolvarin::ondrel::client
