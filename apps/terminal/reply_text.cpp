#include "apps/terminal/reply_text.h"

#include "apps/common/text.h"

#include <array>
#include <cstddef>
#include <string_view>

namespace tolvarin::ondrel::client {

namespace {

constexpr std::size_t stampWidth = 14;     // "1700000000.000"
constexpr std::size_t formatWidth = 7;     // "DF-17" and the gap to the next column
constexpr std::size_t addressWidth = 8;    // "40621D" and the gap
constexpr std::size_t confidenceWidth = 9; // "refused" and the gap
constexpr std::string_view noAddress = "------";

// For the list of fields. Positions and widths have at most two digits.
constexpr std::string_view listIndentation = "    ";
constexpr std::size_t positionWidth = 4;
constexpr std::size_t bitsWidth = 2;
constexpr std::size_t nameWidth = 10; // "NIC_SUPP_B"

void appendColumns(std::string& text, const DecodedReply& decoded, std::string_view address,
                   std::string_view confidence) {
    const auto& stampMs = decoded.reply.stampMs;
    const std::string stamp = stampMs ? secondsText(*stampMs) : "-";
    if (stamp.size() < stampWidth) {
        text.append(stampWidth - stamp.size(), ' ');
    }
    text += stamp;
    // The columns behind the stamp have no longer values, so they are filled in between blanks.
    std::array<char, columnGap.size() + formatWidth + addressWidth + confidenceWidth> columns;
    columns.fill(' ');
    char* column = columns.data() + columnGap.size();
    decoded.formatName().copy(column, formatWidth);
    column += formatWidth;
    address.copy(column, addressWidth);
    column += addressWidth;
    confidence.copy(column, confidenceWidth);
    text.append(columns.data(), columns.size());
}

/// One line for a field of a reply or of a payload.
template <class Field>
void appendField(std::string& text, const Field& field) {
    text += listIndentation;
    appendToTheRight(text, std::to_string(field.pos()), positionWidth);
    text += columnGap;
    appendToTheRight(text, std::to_string(field.bits()), bitsWidth);
    text += columnGap;
    appendToTheLeft(text, field.name(), nameWidth);
    text += columnGap;
    text += field.description();
    text += '\n';
}

void appendPayloadFields(std::string& text, const AdsbPayload& payload) {
    text += listIndentation;
    if (!payload.message) {
        text += "ME: " + payload.description() + '\n';
        return;
    }
    text += "ME, read as in MOPS version " + std::to_string(payload.version) + '\n';
    for (const ADSBMessageField& field : payload.message->fields()) {
        appendField(text, field);
    }
}

} // namespace

void appendReply(std::string& text, const DecodedReply& decoded) {
    if (decoded.refused()) {
        appendColumns(text, decoded, noAddress, "refused");
        text += hexBytes(decoded.reply.bytes);
        text += '\n';
        return;
    }
    const DFMessage& message = *decoded.message;
    const std::string address =
        decoded.hasAddress() ? hex24(message.icaoAddress()) : std::string(noAddress);
    appendColumns(text, decoded, address, confidenceName(message.confidence()));
    text += message.description();
    if (decoded.payload) {
        text += " | ";
        text += decoded.payload->description();
    }
    text += decoded.repaired() ? " [repaired]\n" : "\n";
}

void appendFields(std::string& text, const DecodedReply& decoded) {
    if (decoded.refused()) {
        return;
    }
    text += listIndentation;
    text += decoded.formatName();
    text += '\n';
    for (const ModeSMessageField* field : decoded.message->fields()) {
        appendField(text, *field);
    }
    if (decoded.payload) {
        appendPayloadFields(text, *decoded.payload);
    }
}

} // namespace tolvarin::ondrel::client
