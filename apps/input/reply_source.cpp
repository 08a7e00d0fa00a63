#include "apps/input/reply_source.h"

#include "apps/common/text.h"
#include "apps/input/argument_source.h"
#include "apps/input/file_source.h"
#include "apps/input/recordings.h"
#include "apps/input/reply_line.h"

#include <algorithm>
#include <cstddef>
#include <filesystem>
#include <system_error>
#include <utility>

namespace tolvarin::ondrel::client {

namespace {

/// Fourteen hexadecimal digits or more and perhaps the signs around them.
bool looksLikeReply(const std::string& argument) {
    constexpr std::ptrdiff_t shortestReply = 14;
    const auto isSign = [](char character) {
        return std::string_view("*@;,.").find(character) != std::string_view::npos;
    };
    const auto isDigit = [](char character) { return hexDigit(character).has_value(); };
    std::error_code error;
    return std::count_if(argument.begin(), argument.end(), isDigit) >= shortestReply &&
           std::all_of(argument.begin(), argument.end(),
                       [&](char character) { return isDigit(character) || isSign(character); }) &&
           !std::filesystem::exists(argument, error);
}

} // namespace

std::unique_ptr<ReplySource> openReplySource(const std::vector<std::string>& paths,
                                             ReceiverCounter::Kind counter,
                                             const SourceEvents& events) {
    std::vector<std::unique_ptr<ReplySource>> sources;
    sources.reserve(paths.size());
    for (const std::string& path : paths) {
        sources.push_back(
            std::make_unique<FileSource>(File::openForReading(path), counter, events));
    }
    return sources.size() == 1 ? std::move(sources.front())
                               : std::make_unique<Recordings>(std::move(sources));
}

bool areReplies(const std::vector<std::string>& arguments) {
    return std::all_of(arguments.begin(), arguments.end(), looksLikeReply);
}

std::unique_ptr<ReplySource> openReplies(std::vector<std::string> replies,
                                         ReceiverCounter::Kind counter, SourceEvents events) {
    return std::make_unique<ArgumentSource>(std::move(replies), counter, std::move(events));
}

std::string replySourceHelp() {
    return "FILE is text with one reply on each line, or binary. A line has one of these forms:\n" +
           replyLineHelp() +
           R"(A counter counts ticks of 12 MHz, or with --clock gps the seconds of the day and
nanoseconds. A binary file has frames of 0x1A, a type, counter, signal and reply.
HEX has 14 digits in formats DF-0 to DF-15 and 28 in the others. One file may mix the
forms. Blank lines, lines that begin with # and a first line that names columns are
skipped. A line that cannot be read is reported on standard error as FILE:LINE: REASON,
and reading goes on. The same reason is shown ten times, and a hundred reports are shown
in all; the summary counts the rest. FILE may be packed with gzip.
)";
}

} // namespace tolvarin::ondrel::client
