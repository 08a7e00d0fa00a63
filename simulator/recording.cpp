// Writes the lines of a recording. No stream formats a number, so the locale changes nothing.

#include "simulator/recording.h"

#include <ostream>

namespace tolvarin::ondrel::simulator {
namespace {

constexpr std::uint64_t ticksPerMs = 12000; // a clock of 12 MHz

/// The low 4 * `digits` bits, with leading zeros.
std::string hex(std::uint64_t value, unsigned digits) {
    std::string text;
    for (unsigned left = digits; left-- > 0;) {
        text += "0123456789ABCDEF"[(value >> (4 * left)) & 0xFU];
    }
    return text;
}

std::string hex(const std::string& bytes) {
    std::string text;
    for (const char byte : bytes) {
        text += hex(static_cast<unsigned char>(byte), 2);
    }
    return text;
}

std::string seconds(std::uint64_t milliseconds) {
    const std::string fraction = std::to_string(1000 + milliseconds % 1000).substr(1);
    return std::to_string(milliseconds / 1000) + "." + fraction;
}

} // namespace

std::string recordingLine(const Reply& reply, LineForm form, std::uint64_t startMs) {
    std::string digits = hex(reply.bytes);
    switch (form) {
    case LineForm::Seconds:
        return seconds(reply.timeMs) + "," + digits;
    case LineForm::Ticks:
        return "@" + hex((reply.timeMs - startMs) * ticksPerMs, 12) + digits + ";";
    case LineForm::Frame:
        return "*" + digits + ";";
    default:
        return digits;
    }
}

std::size_t writeRecording(std::ostream& out, Traffic& traffic, LineForm form,
                           std::uint64_t startMs, const std::vector<std::string>& comments) {
    for (const std::string& comment : comments) {
        out << "# " << comment << '\n';
    }
    std::size_t count = 0;
    while (const auto reply = traffic.next()) {
        out << recordingLine(*reply, form, startMs) << '\n';
        ++count;
    }
    return count;
}

} // namespace tolvarin::ondrel::simulator
