#include "apps/terminal/reply_text.h"

#include "apps/common/text.h"

#include <cstddef>
#include <string_view>

namespace tolvarin::ondrel::client {

namespace {

constexpr std::size_t stampWidth = 14;     // "1700000000.000"
constexpr std::size_t formatWidth = 5;     // "DF-17"
constexpr std::size_t confidenceWidth = 7; // "refused"

// For the list of fields. Positions and widths have at most two digits.
constexpr std::string_view listIndentation = "    ";
constexpr std::size_t positionWidth = 4;
constexpr std::size_t bitsWidth = 2;
constexpr std::size_t nameWidth = 10; // "NIC_SUPP_B"

std::string columns(const DecodedReply& decoded, const std::string& address,
                    std::string_view confidence) {
    const auto& stamp = decoded.reply.stampMs;
    std::string line = toTheRight(stamp ? secondsText(*stamp) : "-", stampWidth);
    line += columnGap;
    line += toTheLeft(decoded.formatName(), formatWidth);
    line += columnGap;
    line += address;
    line += columnGap;
    line += toTheLeft(confidence, confidenceWidth);
    line += columnGap;
    return line;
}

/// One line for a field of a reply or of a payload.
template <class Field>
std::string fieldLine(const Field& field) {
    std::string line(listIndentation);
    line += toTheRight(std::to_string(field.pos()), positionWidth);
    line += columnGap;
    line += toTheRight(std::to_string(field.bits()), bitsWidth);
    line += columnGap;
    line += toTheLeft(field.name(), nameWidth);
    line += columnGap;
    line += field.description() + '\n';
    return line;
}

std::string payloadFields(const AdsbPayload& payload) {
    std::string lines(listIndentation);
    if (!payload.message) {
        return lines + "ME: " + payload.description() + '\n';
    }
    lines += "ME, read as in MOPS version " + std::to_string(payload.version) + '\n';
    for (const ADSBMessageField& field : payload.message->fields()) {
        lines += fieldLine(field);
    }
    return lines;
}

} // namespace

std::string replyText(const DecodedReply& decoded) {
    if (decoded.refused()) {
        return columns(decoded, "------", "refused") + hexBytes(decoded.reply.bytes);
    }
    const DFMessage& message = *decoded.message;
    return columns(decoded, hex24(message.icaoAddress()), confidenceName(message.confidence())) +
           message.description() + (decoded.payload ? " | " + decoded.payload->description() : "") +
           (decoded.repaired() ? " [repaired]" : "");
}

std::string fieldsText(const DecodedReply& decoded) {
    if (decoded.refused()) {
        return {};
    }
    std::string lines = std::string(listIndentation) + decoded.formatName() + '\n';
    for (const ModeSMessageField* field : decoded.message->fields()) {
        lines += fieldLine(*field);
    }
    return decoded.payload ? lines + payloadFields(*decoded.payload) : lines;
}

} // namespace tolvarin::ondrel::client
