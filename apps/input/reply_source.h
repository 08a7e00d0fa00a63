#pragma once

#include "apps/common/reply.h"
#include "apps/input/receiver_counter.h"

#include <ondrel/types.h>

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace tolvarin::ondrel::client {

/// What a source read so far beside replies.
struct SourceCounts {
    u64 unreadable = 0;     ///< pieces that should hold a reply but cannot be read, such as lines
    u64 modeAC = 0;         ///< Mode A/C replies, which are left out
    u64 heardElsewhere = 0; ///< replies of sites that another site had too
    u64 ahead = 0;          ///< replies of sites that are left out since their clock is wrong

    SourceCounts& operator+=(const SourceCounts& other) {
        unreadable += other.unreadable;
        modeAC += other.modeAC;
        heardElsewhere += other.heardElsewhere;
        ahead += other.ahead;
        return *this;
    }
};

/// A source that can be lost and found again.
struct SourceState {
    std::string name;
    bool isUp;
};

/// Where replies come from, one source or several. A new kind of input is one class of this kind,
/// and one line in openReplySource().
class ReplySource {
public:
    ReplySource() = default;
    ReplySource(const ReplySource&) = delete;
    ReplySource& operator=(const ReplySource&) = delete;
    virtual ~ReplySource() = default;

    enum class Got {
        Reply,
        Nothing, ///< ten times a second from live sources, so that their owner can do other things
        End,     ///< of the input, or an interruption
    };

    /// Waits for the next reply and puts it into `reply`, which is of no use otherwise. Throws
    /// InputFailure when the input cannot be read any further.
    virtual Got next(Reply& reply) = 0;

    /// What messages call the source, such as its path.
    virtual const std::string& name() const = 0;

    virtual SourceCounts counts() const = 0;

    /// Of live sources.
    virtual std::vector<SourceState> states() const { return {}; }
};

/// What a source tells its owner. The functions must be callable as long as the source lives.
struct SourceEvents {
    /// A piece of input gives no reply: "recording.txt:12", "the reply is empty". The source goes
    /// on.
    std::function<void(const std::string& place, const std::string& reason)> unreadable;

    /// The source asks the system for more input next, which may take long. Both numbers are bytes;
    /// `total` is 0 if it is not known.
    std::function<void(u64 read, u64 total)> reading;

    /// Something that the user should know: "tcp://a:30005: connected".
    std::function<void(const std::string& message)> report = [](const std::string&) {};
};

/// Opens the files that the user named; `-` is standard input. Throws Failure if that fails.
std::unique_ptr<ReplySource> openReplySource(const std::vector<std::string>& paths,
                                             ReceiverCounter::Kind counter,
                                             const SourceEvents& events);

/// Whether the arguments of a command are replies, not the name of a file: each looks like a reply,
/// and there is no such file.
bool areReplies(const std::vector<std::string>& arguments);

/// Replies in the forms of reply_line.h.
std::unique_ptr<ReplySource> openReplies(std::vector<std::string> replies,
                                         ReceiverCounter::Kind counter, SourceEvents events);

/// The forms of input for the help text of a command, in lines with their ends.
std::string replySourceHelp();

} // namespace tolvarin::ondrel::client
