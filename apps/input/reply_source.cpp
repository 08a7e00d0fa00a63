#include "apps/input/reply_source.h"

#include "apps/input/reply_line.h"
#include "apps/input/text_source.h"

#include <utility>

namespace tolvarin::ondrel::client {

std::unique_ptr<ReplySource> openReplySource(const std::string& path, SourceEvents events) {
    return std::make_unique<TextSource>(File::openForReading(path), std::move(events));
}

std::string replySourceHelp() {
    return "FILE is text with one reply on each line. A line has one of these forms:\n" +
           replyLineHelp() +
           R"(One file may mix them. Blank lines and lines that begin with # are skipped. A line that
cannot be read is reported on standard error as FILE:LINE: REASON, and reading goes on.
)";
}

} // namespace tolvarin::ondrel::client
