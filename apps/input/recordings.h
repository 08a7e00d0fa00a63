#pragma once

#include "apps/input/reply_source.h"

#include <exception>
#include <memory>
#include <string>
#include <vector>

namespace tolvarin::ondrel::client {

/// Several recordings as one: the reply with the earliest stamp comes first. A reply without a
/// stamp comes as soon as those before it in its recording. If one cannot be read any further, the
/// others are read to their ends first.
class Recordings final : public ReplySource {
public:
    explicit Recordings(std::vector<std::unique_ptr<ReplySource>> sources);

    Got next(Reply& reply) override;
    const std::string& name() const override { return _name; }
    SourceCounts counts() const override;

private:
    struct Recording {
        std::unique_ptr<ReplySource> source;
        Reply next;
        bool atEnd = false;
    };

    void advance(Recording& recording);

    std::vector<Recording> _recordings;
    std::string _name;
    bool _begun = false;
    std::exception_ptr _failure; ///< of a recording, to be thrown when the others are read
};

} // namespace tolvarin::ondrel::client
