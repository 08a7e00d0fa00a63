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

/// A reply that was cut short makes a frame that is cut short.
std::string frame(const Reply& reply, std::uint64_t counter) {
    constexpr char escape = '\x1A';
    constexpr char signal = 100;
    std::string body;
    for (unsigned bits = 48; bits > 0; bits -= 8) {
        body += static_cast<char>((counter >> (bits - 8)) & 0xFFU);
    }
    body += signal + reply.bytes;
    std::string bytes = {escape, reply.bytes.size() <= 7 ? '2' : '3'};
    for (const char byte : body) {
        bytes.append(byte == escape ? 2 : 1, byte);
    }
    return bytes;
}

} // namespace

std::string recorded(const Reply& reply, RecordingForm form, std::uint64_t startMs) {
    const std::uint64_t ticks = (reply.timeMs - startMs) * ticksPerMs;
    switch (form) {
    case RecordingForm::Seconds:
        return seconds(reply.timeMs) + "," + hex(reply.bytes) + "\n";
    case RecordingForm::Ticks:
        return "@" + hex(ticks, 12) + hex(reply.bytes) + ";\n";
    case RecordingForm::Frame:
        return "*" + hex(reply.bytes) + ";\n";
    case RecordingForm::Binary:
        return frame(reply, ticks + 1);
    default:
        return hex(reply.bytes) + "\n";
    }
}

std::size_t writeRecording(std::ostream& out, Traffic& traffic, RecordingForm form,
                           std::uint64_t startMs) {
    std::size_t count = 0;
    while (const auto reply = traffic.next()) {
        out << recorded(*reply, form, startMs);
        ++count;
    }
    return count;
}

} // namespace tolvarin::ondrel::simulator
