#include "apps/input/file_source.h"

#include "apps/common/failure.h"
#include "apps/common/interruption.h"

#include <utility>

namespace tolvarin::ondrel::client {

FileSource::FileSource(File file, ReceiverCounter::Kind counter, SourceEvents events)
    : _file(std::move(file)), _counter(counter), _events(std::move(events)),
      _totalBytes(_file.file().remaining()) {}

ReplySource::Got FileSource::next(Reply& reply) {
    while (true) {
        switch (_reader ? _reader->next(_bytes, _atEnd, reply) : ReplyReader::Found::Nothing) {
        case ReplyReader::Found::Reply:
            return Got::Reply;
        case ReplyReader::Found::Unreadable:
            ++_unreadable;
            report();
            break;
        case ReplyReader::Found::Skipped:
            report();
            break;
        case ReplyReader::Found::Foreign:
            throw InputFailure("cannot read " + name() + ": it is " + _reader->unreadable().reason);
        default:
            if (!readMore()) {
                return Got::End;
            }
        }
    }
}

/// False at the end, which the reader has seen, and after an interruption.
bool FileSource::readMore() {
    if (_atEnd) {
        return false;
    }
    _events.reading(_file.bytesRead(), _totalBytes);
    const ByteBuffer::Room room = _bytes.room();
    const std::size_t count = _file.read(room.begin, room.size);
    _bytes.add(count);
    _atEnd = count == 0;
    if (!_reader) {
        _reader = ReplyReader::forBytes(_bytes, _atEnd, _counter);
    }
    return !_atEnd || !interrupted();
}

void FileSource::report() {
    const UnreadablePiece& piece = _reader->unreadable();
    _events.unreadable(name() + piece.place, piece.reason);
}

} // namespace tolvarin::ondrel::client
