/// @file
/// A slow and simple model of the decoder of replies: which message a reply gives, its confidence,
/// and the log lines.
#pragma once

#include <ondrel/mode_s_message.h>

#include "support/bytes.h"
#include "support/captured_log.h"

#include <algorithm>
#include <cstdint>
#include <map>
#include <string>
#include <vector>

namespace tolvarin::ondrel::test {

/// The first letter of a message's confidence, '-' for no message.
inline char gradeOf(const ModeSMessage* message) {
    return message != nullptr ? "NLMH"[message->confidence()] : '-';
}

/// The result for one reply.
struct Verdict {
    char grade = '-'; ///< as gradeOf()
    u32 address = 0;
    std::string data;
    Lines lines;
};

/// Keeps the rules of ModeSDecoder in the simplest form.
class DecoderModel {
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
    unsigned frameBits() const { return isLong(format()) ? 112 : 56; }
    bool whole() const { return frame.size() * 8 >= frameBits(); }
    std::string decoderName() const { return "DF-" + std::to_string(std::min(format(), 24U)); }

    void say(const std::string& labelAndModule, const std::string& message) {
        verdict.lines.push_back(labelAndModule + " " + message);
    }

    u32 number(unsigned first, unsigned width) const {
        return static_cast<u32>(bitsOf(frame, first, width));
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
        const unsigned f = format();
        if (f == 0 || f == 4 || f == 5 || f == 16 || f == 20 || f == 21) {
            return whole() ? judgeSurveillance() : '-';
        }
        if (f == 11) {
            return whole() ? judgeAllCall() : '-';
        }
        if (f == 17 || f == 18) {
            return judgeSquitter();
        }
        if (f == 19) {
            return whole() ? judgeMilitary() : '-';
        }
        say("[DEBUG   ][ModeSDecoder]", "Undefined " + decoderName() + " message detected.");
        return '-';
    }

    char judgeSurveillance() {
        verdict.address = overlay();
        const bool believed = recent(verdict.address);
        if (believed) {
            addresses[verdict.address] = now;
        }
        const bool hasAltitude = format() != 5 && format() != 21;
        if (hasAltitude && bitOf(frame, 25)) { // M
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

    /// Inverts the first bit, or else the first pair of bits, that explains the parity.
    bool repair(const std::string& name) {
        static const std::vector<u32> effects = [] {
            std::vector<u32> all;
            for (unsigned i = 0; i < 112; ++i) {
                all.push_back(plainParity(inverted(std::string(14, '\0'), {i}), 112));
            }
            return all;
        }();
        const u32 difference = overlay();
        const auto fixed = [&](const std::string& what, const std::vector<unsigned>& positions) {
            std::string places = std::to_string(positions.front());
            places += positions.size() > 1 ? " and " + std::to_string(positions.back()) : "";
            say("[INFO    ][ModeSDecoder]",
                "Fix " + what + " error in " + name + " message at " + places + ".");
            ++cells[what];
            frame = inverted(frame, positions);
            return true;
        };
        for (unsigned i = 0; i < 112; ++i) {
            if (effects[i] == difference) {
                return fixed("1 bit", {i});
            }
        }
        for (unsigned i = 0; i < 112; ++i) {
            for (unsigned j = i + 1; j < 112; ++j) {
                if ((effects[i] ^ effects[j]) == difference) {
                    return fixed("2 bits", {i, j});
                }
            }
        }
        return false;
    }

    std::map<u32, std::int64_t> addresses;
    std::map<u32, std::int64_t> lastHit;
    std::map<u32, unsigned> run;

    std::int64_t now = 0;
    std::string frame;
    Verdict verdict;
};

} // namespace tolvarin::ondrel::test
