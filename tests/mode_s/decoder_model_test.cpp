// Compares the decoder with its model on a long random sequence of replies.
#include <ondrel/mode_s_decoder.h>

#include "support/decoder_model.h"
#include "support/movable_clock.h"

#include <gtest/gtest.h>

#include <memory>
#include <random>
#include <sstream>

namespace tolvarin::ondrel {
namespace {

/// Replies of a few aircraft to a few interrogators, many of them damaged, some of them noise.
class Traffic {
public:
    explicit Traffic(unsigned seed) : _random(seed) {}

    unsigned below(unsigned end) { return static_cast<unsigned>(_random() % end); }

    template <class T, std::size_t N>
    T oneOf(const T (&values)[N]) {
        return values[below(N)];
    }

    std::string next() {
        std::string frame = draw();
        const auto bits = static_cast<unsigned>(frame.size()) * 8;
        for (unsigned flips = below(6) == 0 ? 1 + below(3) : 0; bits > 0 && flips > 0; --flips) {
            frame = test::inverted(frame, {below(below(8) == 0 ? 5 : bits)});
        }
        if (below(40) == 0) {
            frame.resize(below(18), '\x5A');
        }
        return frame;
    }

    /// Mostly 0, so that runs of hits build up; otherwise a time-out, plus or minus one second.
    std::int64_t pause() {
        const std::int64_t pauses[] = {1, 1, 2, 30, 59, 60, 60, 61, 61, 540, 599, 600, 601};
        return below(12) == 0 ? oneOf(pauses) : 0;
    }

private:
    u32 address() {
        const u32 flying[] = {0x4840D6, 0x3C6586, 0xABCDEF, 0x000001, 0};
        return below(12) == 0 ? below(1U << 24) : oneOf(flying);
    }

    std::string draw() {
        const u32 interrogators[] = {0, 0, 3, 3, 3, 17, 79, 80, 127, 0x388BE1};
        const unsigned formats[] = {11, 11, 11, 11, 11, 11, 11, 11, 11, 11,   noise,
                                    0,  4,  5,  16, 20, 21, 17, 18, 19, noise};
        const unsigned format = oneOf(formats);
        const u32 sender = address();
        if (format == 11) {
            return test::allCall(sender, oneOf(interrogators));
        }
        if (format >= 17 && format <= 19) {
            return test::squitter(sender, format, below(3) == 0 ? below(8) : 0);
        }
        if (format != noise) {
            return test::surveillance(format, sender, below(1U << 13));
        }
        std::string bytes(below(30), '\0');
        for (char& byte : bytes) {
            byte = static_cast<char>(below(256));
        }
        return bytes;
    }

    static constexpr unsigned noise = 99;

    std::mt19937 _random;
};

TEST(DecoderModel, GivesTheMessagesGradesAndLogLinesOfTheDecoder) {
    test::MovableClock clock;
    test::CapturedLog log;
    ModeSDecoder decoder;
    log.take();
    test::DecoderModel model;
    Traffic traffic(11);
    for (int i = 0; i < 40000; ++i) {
        clock.advance(traffic.pause());
        if (traffic.below(500) == 0) {
            ModeSDecoder copy(decoder);
            decoder = ModeSDecoder();
            decoder = std::move(copy);
            log.take();
        }
        const std::string frame = traffic.next();
        const auto type = traffic.below(100) == 0 ? ModeSMessage::Uplink : ModeSMessage::Downlink;
        const test::Verdict expected = model.decode(type, frame, clock.seconds());
        const std::unique_ptr<ModeSMessage> message(decoder.decode(type, frame));
        ASSERT_EQ(log.take(), expected.lines) << i;
        ASSERT_EQ(test::gradeOf(message.get()), expected.grade) << i;
        if (message) {
            ASSERT_EQ(message->icaoAddress(), expected.address) << i;
            ASSERT_EQ(message->data(), expected.data) << i;
        }
    }
    // Each rule was used often.
    std::istringstream cells("0N 0L 0H 4N 4L 4H 5L 5H 11N 11L 11M 11H 16N 16L 16H 17- 17H 18- 18H "
                             "19- 19L 19H 20N 20L 20H 21L 21H 24- "
                             "believed/seen believed/unseen unknown/seen unknown/unseen");
    for (std::string cell; cells >> cell;) {
        EXPECT_GE(model.cells[cell], 20U) << cell;
    }
    EXPECT_GE(model.cells["1 bit"], 20U);
    EXPECT_GE(model.cells["2 bits"], 20U);
    EXPECT_GE(model.cells["mismatch"], 5U);
}

} // namespace
} // namespace tolvarin::ondrel
