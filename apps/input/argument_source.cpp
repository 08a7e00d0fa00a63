#include "apps/input/argument_source.h"

#include "apps/input/reply_line.h"

#include <utility>

namespace tolvarin::ondrel::client {

ArgumentSource::ArgumentSource(std::vector<std::string> arguments, ReceiverCounter::Kind counter,
                               SourceEvents events)
    : _arguments(std::move(arguments)), _counter(counter), _events(std::move(events)) {}

ReplySource::Got ArgumentSource::next(Reply& reply) {
    while (_taken < _arguments.size()) {
        std::string error = lengthError;
        if (readReplyLine(_arguments[_taken++], _counter, reply, error) == LineContent::Reply &&
            lengthFits(reply.bytes)) {
            return Got::Reply;
        }
        ++_unreadable;
        _events.unreadable(name() + ":" + std::to_string(_taken), error);
    }
    return Got::End;
}

} // namespace tolvarin::ondrel::client
