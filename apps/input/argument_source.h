#pragma once

#include "apps/input/reply_source.h"

#include <ondrel/types.h>

#include <cstddef>
#include <string>
#include <vector>

namespace tolvarin::ondrel::client {

/// Replies as arguments of the command line, each in a form of reply_line.h.
class ArgumentSource final : public ReplySource {
public:
    ArgumentSource(std::vector<std::string> arguments, ReceiverCounter::Kind counter,
                   SourceEvents events);

    Got next(Reply& reply) override;
    const std::string& name() const override { return _name; }
    SourceCounts counts() const override { return {_unreadable, 0}; }

private:
    const std::string _name = "<arguments>";
    std::vector<std::string> _arguments;
    ReceiverCounter _counter;
    SourceEvents _events;
    std::size_t _taken = 0;
    u64 _unreadable = 0;
};

} // namespace tolvarin::ondrel::client
