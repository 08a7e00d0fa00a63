#pragma once

#include "apps/input/line_splitter.h"
#include "apps/input/reply_line.h"
#include "apps/input/reply_reader.h"

#include <string>

namespace tolvarin::ondrel::client {

/// Replies as lines of text (reply_line.h). A UTF-8 byte-order mark in front is skipped, and a
/// header line as a piece that is unreadable.
class TextReader final : public ReplyReader {
public:
    explicit TextReader(ReceiverCounter::Kind counter) : _counter(counter) {}

    Found next(ByteBuffer& bytes, bool atEnd, Reply& reply) override;

private:
    LineContent read(const Line& line, Reply& reply);
    Found readFirst(Line line, const std::string& beginning, Reply& reply);
    Found report(const Line& line, Found found);

    ReceiverCounter _counter;
    LineSplitter _lines;
    bool _begun = false; ///< behind the first line that holds a reply or cannot be read
};

} // namespace tolvarin::ondrel::client
