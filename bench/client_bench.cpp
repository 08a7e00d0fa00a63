// The client beside the library: how much a recording costs more than its replies in memory.

#include "compare.h"

#include "apps/commands/reply_positions.h"
#include "apps/decoding/decoded_reply.h"
#include "apps/input/replay.h"
#include "apps/input/reply_source.h"
#include "apps/json/reply_json.h"
#include "apps/merging/reply_merger.h"
#include "apps/terminal/reply_text.h"
#include "apps/tracking/tracking.h"

#include "simulator/recording.h"

#include <ondrel/adsb_tracker.h>

#include <cstddef>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace tolvarin::ondrel::bench {
namespace {

/// Twenty seconds of traffic: as a file, which the system keeps in memory, and as replies.
class Recording {
public:
    explicit Recording(unsigned aircraft = 200) {
        simulator::TrafficOptions options;
        options.aircraft = aircraft;
        options.seconds = 20;
        options.damage.oneBit = 0.05;
        options.damage.manyBits = 0.02;
        simulator::Traffic traffic(options);
        std::ofstream file(_path);
        writeRecording(file, traffic, simulator::RecordingForm::Seconds, options.startMs);
        file.close();
        const auto source = open();
        client::Reply reply;
        while (source->next(reply) == client::ReplySource::Got::Reply) {
            _replies.push_back(reply);
        }
    }
    Recording(const Recording&) = delete;
    Recording& operator=(const Recording&) = delete;
    ~Recording() { std::remove(_path.c_str()); }

    std::unique_ptr<client::ReplySource> open() const {
        return client::openReplySource({_path}, client::ReceiverCounter::Kind::TwelveMHz,
                                       {[](const auto&, const auto&) {}, [](u64, u64) {}});
    }

    const std::vector<client::Reply>& replies() const { return _replies; }

private:
    std::string _path = std::filesystem::temp_directory_path() / "ondrel_client_bench.csv";
    std::vector<client::Reply> _replies;
};

/// Takes each reply out of the file. Begins again for reply 0.
class Reader {
public:
    explicit Reader(const Recording& recording) : _recording(recording) {}

    void read(std::size_t i, client::Reply& reply) {
        if (i == 0) {
            _source = _recording.open();
        }
        _source->next(reply);
    }

private:
    const Recording& _recording;
    std::unique_ptr<client::ReplySource> _source;
};

std::unique_ptr<ModeSMessage> decodedAlone(ModeSDecoder& decoder, const client::Reply& reply) {
    return std::unique_ptr<ModeSMessage>(
        decoder.decode(ModeSMessage::Downlink, reply.bytes, reply.stampMs.value_or(0)));
}

const InTable
    trackRows({"trackRecording",
               "a recording read, stamped, decoded and tracked, with the check of its positions.",
               "the same replies in memory, decoded and tracked."});

void trackRecording(benchmark::State& state) {
    const Recording recording;
    const auto& replies = recording.replies();
    Reader reader(recording);
    ModeSDecoder decoder;
    client::Stamping stamping([](const std::string&) {});
    client::Tracking tracking(std::nullopt);
    client::Reply reply;
    ModeSDecoder floorDecoder;
    ADSBTracker floorTracker;
    compare(
        state, replies.size(),
        [&](std::size_t i) {
            reader.read(i, reply);
            stamping.stamp(reply);
            tracking.moveTo(stamping.now());
            const auto message = decodeReply(decoder, reply);
            benchmark::DoNotOptimize(tracking.take(message.get()));
        },
        [&](std::size_t i) {
            const auto message = decodedAlone(floorDecoder, replies[i]);
            benchmark::DoNotOptimize(floorTracker.procModeSMsg(message.get()));
        });
}

BENCHMARK(trackRecording)->Apply(inTurns);

const InTable
    textRows({"decodeRecordingToText",
              "a recording read, decoded and written as lines of text, with its payloads.",
              "the same replies in memory, decoded without their payloads."});

void decodeRecordingToText(benchmark::State& state) {
    const Recording recording;
    const auto& replies = recording.replies();
    Reader reader(recording);
    ModeSDecoder decoder;
    client::PayloadDecoder payloads(std::nullopt);
    client::DecodedReply decoded;
    std::string text;
    ModeSDecoder floorDecoder;
    compare(
        state, replies.size(),
        [&](std::size_t i) {
            reader.read(i, decoded.reply);
            decoded.message = decodeReply(decoder, decoded.reply);
            decoded.payload = payloads.decode(decoded.message.get());
            text.clear();
            appendReply(text, decoded);
            benchmark::DoNotOptimize(text.data());
        },
        [&](std::size_t i) { benchmark::DoNotOptimize(decodedAlone(floorDecoder, replies[i])); });
}

BENCHMARK(decodeRecordingToText)->Apply(inTurns);

const InTable
    jsonRows({"decodeRecordingToJson",
              "the same as lines of JSON, with all values and the positions that pairs give.",
              "the same replies in memory, decoded without their payloads."});

void decodeRecordingToJson(benchmark::State& state) {
    const Recording recording;
    const auto& replies = recording.replies();
    Reader reader(recording);
    ModeSDecoder decoder;
    client::PayloadDecoder payloads(std::nullopt);
    client::ReplyPositions positions([](const std::string&) {});
    client::DecodedReply decoded;
    std::string text;
    ModeSDecoder floorDecoder;
    compare(
        state, replies.size(),
        [&](std::size_t i) {
            reader.read(i, decoded.reply);
            positions.stamp(decoded.reply);
            decoded.message = decodeReply(decoder, decoded.reply);
            decoded.payload = payloads.decode(decoded.message.get());
            text.clear();
            appendReplyJson(text, decoded, {positions.take(decoded.message.get())});
            benchmark::DoNotOptimize(text.data());
        },
        [&](std::size_t i) { benchmark::DoNotOptimize(decodedAlone(floorDecoder, replies[i])); });
}

BENCHMARK(decodeRecordingToJson)->Apply(inTurns);

const InTable
    mergeRows({"mergeSites",
               "replies that two sites heard, brought into order and made one; the second "
               "site sends them so many seconds of their time later.",
               "the same replies decoded without their payloads."});

void mergeSites(benchmark::State& state) {
    constexpr unsigned aircraft = 1500;
    const Recording recording(aircraft);
    const auto& replies = recording.replies();
    const u64 later = static_cast<u64>(state.range(0)) * 1000;
    std::vector<client::GradedReply> graded;
    for (const client::Reply& reply : replies) {
        graded.push_back({reply.bytes, *reply.stampMs, ModeSMessage::High, 0});
    }
    client::ReplyMerger merger;
    client::MergedReply merged;
    std::size_t second = 0;
    ModeSDecoder floorDecoder;
    const u64 now = *replies.back().stampMs;
    compare(
        state, replies.size(),
        [&](std::size_t i) {
            if (i == 0) {
                merger = client::ReplyMerger();
                second = 0;
            }
            merger.add(graded[i], 0, now);
            for (; graded[second].stampMs + later < graded[i].stampMs; ++second) {
                merger.add(graded[second], 1, now);
            }
            while (merger.take(merged, now)) {
            }
            benchmark::DoNotOptimize(merged);
        },
        [&](std::size_t i) { benchmark::DoNotOptimize(decodedAlone(floorDecoder, replies[i])); });
}

BENCHMARK(mergeSites)->Arg(0)->Arg(10)->Apply(inTurns);

} // namespace
} // namespace tolvarin::ondrel::bench
