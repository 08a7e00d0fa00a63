#pragma once

#include "apps/common/file.h"
#include "apps/input/byte_buffer.h"
#include "apps/input/reply_reader.h"
#include "apps/input/reply_source.h"
#include "apps/input/unpacked_file.h"

#include <ondrel/types.h>

#include <memory>
#include <string>

namespace tolvarin::ondrel::client {

/// Replies of a file or of standard input, perhaps packed with gzip, in any form that a ReplyReader
/// takes. Content of another kind gives an InputFailure.
class FileSource final : public ReplySource {
public:
    FileSource(File file, ReceiverCounter::Kind counter, SourceEvents events);

    Got next(Reply& reply) override;
    const std::string& name() const override { return _file.file().name(); }
    SourceCounts counts() const override { return {_unreadable, _reader ? _reader->modeAC() : 0}; }

private:
    bool readMore();
    void report();

    UnpackedFile _file;
    ReceiverCounter::Kind _counter;
    SourceEvents _events;
    u64 _totalBytes;
    ByteBuffer _bytes;
    bool _atEnd = false;
    std::unique_ptr<ReplyReader> _reader; ///< null until the first bytes tell which
    u64 _unreadable = 0;
};

} // namespace tolvarin::ondrel::client
