#include "apps/input/recordings.h"

#include "apps/common/failure.h"
#include "apps/common/interruption.h"

#include <utility>

namespace tolvarin::ondrel::client {

Recordings::Recordings(std::vector<std::unique_ptr<ReplySource>> sources) {
    for (auto& source : sources) {
        _name += (_name.empty() ? "" : ", ") + source->name();
        _recordings.push_back({std::move(source), {}});
    }
}

ReplySource::Got Recordings::next(Reply& reply) {
    if (!std::exchange(_begun, true)) {
        for (Recording& recording : _recordings) {
            advance(recording);
        }
    }
    Recording* first = nullptr;
    for (Recording& recording : _recordings) {
        if (!recording.atEnd && (first == nullptr || recording.next.stampMs.value_or(0) <
                                                         first->next.stampMs.value_or(0))) {
            first = &recording;
        }
    }
    if (first == nullptr && _failure) {
        std::rethrow_exception(std::exchange(_failure, nullptr));
    }
    if (first == nullptr || interrupted()) {
        return Got::End;
    }
    std::swap(reply, first->next);
    reply.source = static_cast<unsigned>(first - _recordings.data()) + 1;
    advance(*first);
    return Got::Reply;
}

void Recordings::advance(Recording& recording) {
    try {
        recording.atEnd = recording.source->next(recording.next) != Got::Reply;
    } catch (const InputFailure&) {
        recording.atEnd = true;
        _failure = std::current_exception();
    }
}

SourceCounts Recordings::counts() const {
    SourceCounts all;
    for (const Recording& recording : _recordings) {
        all += recording.source->counts();
    }
    return all;
}

} // namespace tolvarin::ondrel::client
