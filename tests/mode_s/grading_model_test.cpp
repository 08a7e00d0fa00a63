#include <ondrel/mode_s_decoder.h>

#include "support/bytes.h"
#include "support/captured_log.h"
#include "support/movable_clock.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <map>
#include <memory>
#include <random>
#include <sstream>

namespace tolvarin::ondrel {
namespace {

using test::inverted;
using test::Lines;
using test::plainParity;

/// What a decoder makes of one reply.
struct Verdict {
    char grade = '-'; ///< first letter of the confidence; '-' for no message
    u32 address = 0;
    std::string data;
    Lines lines;
};

/// The decoder once more, slow and plain: bits one by one, repairs by trial, the rules in prose.
class Model {
public:
    Verdict decode(ModeSMessage::ModeSMsgType type, const std::string& data, std::int64_t time) {
        now = time;
        frame = data;
        verdict = {};
        verdict.grade = data.empty() ? '-' : judge(type);
        verdict.data = frame;
        ++cells[std::to_string(format()) + verdict.grade];
        return verdict;
    }

    /// How often each format got each grade, and each rule for all-call replies was used.
    std::map<std::string, unsigned> cells;

private:
    unsigned format() const { return frame.empty() ? 99 : static_cast<u8>(frame[0]) >> 3U; }
    unsigned frameBits() const { return test::isLong(format()) ? 112 : 56; }
    bool whole() const { return frame.size() * 8 >= frameBits(); }
    std::string decoderName() const { return "DF-" + std::to_string(std::min(format(), 24U)); }

    void say(const std::string& labelAndModule, const std::string& message) {
        verdict.lines.push_back(labelAndModule + " " + message);
    }

    u32 number(unsigned first, unsigned count) const {
        u32 value = 0;
        for (unsigned i = first; i < first + count; ++i) {
            value = 2 * value + (test::bitOf(frame, i) ? 1 : 0);
        }
        return value;
    }

    u32 overlay() const { return number(frameBits() - 24, 24) ^ plainParity(frame, frameBits()); }

    bool recent(u32 address) const {
        return addresses.count(address) != 0 && now - addresses.at(address) <= 600;
    }

    char judge(ModeSMessage::ModeSMsgType type) {
        if (type != ModeSMessage::Downlink) {
            say("[DEBUG   ][ModeSDecoder]", "Unsupported UF message detected.");
            return '-';
        }
        switch (format()) {
        case 0:
        case 4:
        case 5:
        case 16:
        case 20:
        case 21:
            return whole() ? judgeSurveillance() : '-';
        case 11:
            return whole() ? judgeAllCall() : '-';
        case 17:
        case 18:
            return judgeSquitter();
        case 19:
            return whole() ? judgeMilitary() : '-';
        default:
            say("[DEBUG   ][ModeSDecoder]", "Undefined " + decoderName() + " message detected.");
            return '-';
        }
    }

    char judgeSurveillance() {
        verdict.address = overlay();
        const bool believed = recent(verdict.address);
        if (believed) {
            addresses[verdict.address] = now;
        }
        const bool hasAltitude = format() != 5 && format() != 21;
        if (hasAltitude && test::bitOf(frame, 25)) { // M, wire bit 26
            return 'N';
        }
        return believed ? 'H' : 'L';
    }

    char judgeAllCall() {
        verdict.address = number(8, 24);
        const u32 interrogator = overlay();
        if (interrogator > 79) {
            say("[INFO    ][ModeSDecoder]",
                "Invalid interrogator id, II = " + std::to_string(interrogator));
            return 'N';
        }
        const bool seen = lastHit.count(interrogator) != 0 && now - lastHit[interrogator] <= 60;
        const bool believed = recent(verdict.address);
        ++cells[std::string(believed ? "believed/" : "unknown/") + (seen ? "seen" : "unseen")];
        if (!believed && (!seen || run[interrogator] < 10)) {
            return 'N';
        }
        addresses[verdict.address] = now;
        lastHit[interrogator] = now;
        run[interrogator] = seen ? run[interrogator] + 1 : 1;
        if (!seen) {
            return 'L';
        }
        return !believed || run[interrogator] >= 10 || interrogator == 0 ? 'H' : 'M';
    }

    char proved() {
        verdict.address = number(8, 24);
        addresses[verdict.address] = now;
        return 'H';
    }

    char judgeMilitary() {
        const u32 application = number(5, 3);
        if (application != 0) {
            say("[INFO    ][DF19Message]",
                "AF = " + std::to_string(application) + ", reserved for military applications.");
            return 'L';
        }
        if (overlay() != 0) {
            say("[INFO    ][DF19Message]", "Parity check failed.");
            return '-';
        }
        return proved();
    }

    char judgeSquitter() {
        if (whole() && overlay() == 0) {
            return proved();
        }
        const std::string name = decoderName();
        if (whole()) {
            say("[INFO    ][DF" + std::to_string(format()) + "Message]", "Parity check failed.");
        }
        const std::string before = frame;
        if (!whole() || !repair(name)) {
            say("[INFO    ][ModeSDecoder]", "Unable to fix error in " + name + " message.");
            return '-';
        }
        if (static_cast<u8>(before[0]) >> 3U != format()) {
            ++cells["mismatch"];
            say("[INFO    ][DFMessage]", "DF format mismatch.");
            say("[CRITICAL][ModeSDecoder]",
                "Faild to decode " + name + " message after CRC fixing.");
            return '-';
        }
        return proved();
    }

    bool repair(const std::string& name) {
        const std::string damaged = frame;
        const u32 wanted = number(88, 24);
        const auto fits = [&](const std::vector<unsigned>& positions) {
            frame = inverted(damaged, positions);
            return plainParity(frame, 112) == wanted;
        };
        const auto fixed = [&](const std::string& what, const std::string& where) {
            ++cells[what];
            say("[INFO    ][ModeSDecoder]",
                "Fix " + what + " error in " + name + " message at " + where);
            return true;
        };
        for (unsigned i = 0; i < 112; ++i) {
            if (fits({i})) {
                return fixed("1 bit", std::to_string(i) + ".");
            }
        }
        for (unsigned i = 0; i < 112; ++i) {
            for (unsigned j = i + 1; j < 112; ++j) {
                if (fits({i, j})) {
                    return fixed("2 bits", std::to_string(i) + " and " + std::to_string(j) + ".");
                }
            }
        }
        frame = damaged;
        return false;
    }

    std::map<u32, std::int64_t> addresses;
    std::map<u32, std::int64_t> lastHit;
    std::map<u32, unsigned> run;

    std::int64_t now = 0;
    std::string frame;
    Verdict verdict;
};

/// Replies of a few aircraft through a few interrogators, in an air full of damage.
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
            frame = inverted(frame, {below(below(8) == 0 ? 5 : bits)});
        }
        if (below(40) == 0) {
            frame.resize(below(18), '\x5A');
        }
        return frame;
    }

    /// Mostly none, so that runs build up; then the time-outs and one second more.
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
        const unsigned surveillance[] = {0, 4, 5, 16, 20, 21};
        const unsigned kind = below(20);
        if (kind < 11) {
            const u32 sender = address();
            return test::allCall(sender, oneOf(interrogators));
        }
        if (kind < 16) {
            const unsigned format = oneOf(surveillance);
            const u32 sender = address();
            return test::surveillance(format, sender, below(1U << 13));
        }
        if (kind < 18) {
            const unsigned format = 17 + below(3);
            const u32 sender = address();
            return test::squitter(sender, format, below(3) == 0 ? below(8) : 0);
        }
        std::string noise(below(30), '\0');
        for (char& byte : noise) {
            byte = static_cast<char>(below(256));
        }
        return noise;
    }

    std::mt19937 _random;
};

TEST(GradingModel, AgreesWithTheDecoderOnALongRandomSequence) {
    test::MovableClock clock;
    test::CapturedLog log;
    ModeSDecoder decoder;
    log.take();
    Model model;
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
        const Verdict expected = model.decode(type, frame, clock.seconds());
        const std::unique_ptr<ModeSMessage> message(decoder.decode(type, frame));
        ASSERT_EQ(log.take(), expected.lines) << i;
        ASSERT_EQ(message ? "NLMH"[message->confidence()] : '-', expected.grade) << i;
        if (message) {
            ASSERT_EQ(message->icaoAddress(), expected.address) << i;
            ASSERT_EQ(message->data(), expected.data) << i;
        }
    }
    // The sequence must have gone everywhere.
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
