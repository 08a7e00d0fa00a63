#include "apps/commands/feed.h"

#include "apps/commands/network_options.h"
#include "apps/commands/options.h"
#include "apps/common/failure.h"
#include "apps/common/interruption.h"
#include "apps/common/partition.h"
#include "apps/input/replay.h"
#include "apps/tracking/duplicate_filter.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <unistd.h>

namespace tolvarin::ondrel::client {

namespace {

using std::chrono::milliseconds;

constexpr const char* description = "Send the replies of a site to a message server";

constexpr const char* footer = R"(
The replies are decoded and graded here: what an interrogator proves counts for those who
hear it. Refused replies and those of grade None stay here. The others go to the server in
batches, as docs/many_receivers.md describes, and ondrel track nats://HOST:PORT shows the
aircraft of all sites.

A site needs the right time: its clock should be kept by the network (NTP). Recordings are
sent as fast as the server takes them.

If the server stores replies (JetStream), a batch stays in the backlog here until it is
stored. If it does not, what is lost on the way stays lost. When the server is away, feeds
go on: the oldest replies are dropped when the backlog is full. Reading a recording waits
instead.

Ctrl-C, or a signal to terminate or to hang up, ends the reading. What is in the backlog is
sent for five seconds at most. A summary on standard error ends the run.

Exit status:
  0    all replies were read and sent
  1    the input cannot be read to its end, or replies were dropped or not sent
  2    the command line is wrong
  130  interrupted, and all replies were sent)";

constexpr u64 longestBatchMs = 800; // a worker waits a second for older replies
constexpr u64 mostBacklog = 4096;   // mebibytes
constexpr u64 mebibyte = u64{1} << 20U;
constexpr milliseconds toFinish(5000);

/// The name of this machine, as far as it can be the name of a site.
std::string machineName() {
    std::array<char, 256> name{};
    if (::gethostname(name.data(), name.size() - 1) != 0) {
        return "site";
    }
    std::string site(name.data());
    site = site.substr(0, std::min(site.find('.'), ReplyBatch::longestName));
    return isSiteName(site) ? site : "site";
}

} // namespace

FeedCommand::FeedCommand(CLI::App& program) : Command(program, "feed", description) {
    addReplyInputOptions(line(), _input);
    _publishing.site = machineName();
    line()
        .add_option("--to", _server.url, "The message server: nats://HOST:PORT")
        ->required()
        ->type_name("SERVER")
        ->check(CLI::Validator(messageServerError, ""));
    line()
        .add_option("--site", _publishing.site,
                    "The name of this site: letters, digits, - and _;\n"
                    "that of the machine unless told. No two sites may have\n"
                    "the same")
        ->type_name("NAME")
        ->check(siteName());
    addServerOptions(line(), _server);
    line()
        .add_option("--partitions", _publishing.partitions,
                    "Divide the aircraft into so many parts; the same number\n"
                    "at all sites")
        ->type_name("N=8")
        ->transform(wholeNumber(1, mostPartitions));
    line()
        .add_option("--batch", _publishing.batchSize, "Send a batch when it has so many replies,")
        ->type_name("N=512")
        ->transform(wholeNumber(1, ReplyBatch::mostReplies));
    line()
        .add_option_function<u64>(
            "--batch-time", [this](u64 time) { _publishing.longestBatch = milliseconds(time); },
            "or when its first reply has waited for so many\n"
            "milliseconds")
        ->type_name("MS=200")
        ->transform(wholeNumber(1, longestBatchMs));
    line()
        .add_option_function<u64>(
            "--backlog", [this](u64 size) { _publishing.backlog = size * mebibyte; },
            "Keep so many MiB of replies while the server is away")
        ->type_name("MIB=64")
        ->transform(wholeNumber(1, mostBacklog));
    line().footer(replySourceHelp() + footer);
}

int FeedCommand::run() {
    Output output("-");
    Console console(output);
    ReplyInput input(_input, console);
    ReplyPublisher publisher(_server, _publishing, [&](const std::string& message) {
        console.write(_server.url + ": " + message);
    });
    Stamping stamping(
        [&](const std::string& message) { console.write(input.name() + ": " + message); });
    DuplicateFilter heard;
    FeedRunCounts counts;
    Reply reply;
    using Got = ReplySource::Got;
    for (auto got = input.next(reply); got != Got::End && !publisher.hasEnded();
         got = input.next(reply)) {
        publisher.poll();
        if (got == Got::Nothing) {
            continue;
        }
        ++counts.replies;
        if (!stamping.stamp(reply)) {
            continue;
        }
        if (stamping.byCounter()) {
            throw Failure(input.name() + " has stamps of a counter, which do not tell the time");
        }
        const auto message = input.decode(reply);
        if (!message) {
            ++counts.refused;
            continue;
        }
        if (message->confidence() == ModeSMessage::None) {
            ++counts.ungraded;
            continue;
        }
        if (reply.source != 0) {
            if (heard.heardElsewhere(reply.bytes, reply.source, *reply.stampMs)) {
                ++counts.duplicates;
                continue;
            }
            heard.keep(reply.bytes, reply.source, *reply.stampMs);
        }
        while (!isLive(_input) && publisher.isFull() && !publisher.hasEnded() &&
               pauseFor(std::chrono::duration<double>(0.005))) {
            publisher.poll();
        }
        publisher.add({message->data().substr(0, message->size()), *reply.stampMs,
                       message->confidence(), reply.signalAmplitude},
                      message->icaoAddress());
    }
    publisher.finish(toFinish);
    input.close();
    const PublisherCounts sent = publisher.counts();
    counts.sent = sent.sent;
    counts.batches = sent.batches;
    counts.dropped = sent.dropped;
    counts.notSent = sent.waiting;
    counts.leftOut = input.leftOut();
    console.write(feedSummary(counts));
    const bool hasLost = publisher.hasEnded() || sent.dropped + sent.waiting > 0;
    return hasLost ? 1 : input.status();
}

} // namespace tolvarin::ondrel::client
