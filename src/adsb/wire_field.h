/// @file
/// Wire layouts of payloads: for each field its designator, its place in the ME field and how its
/// value becomes text. A message keeps its layouts as constants beside its decodeImpl(). Positions
/// are those of the figures in RTCA DO-260B less one, since the standard counts ME bits from 1.
#pragma once

#include <ondrel/adsb_message.h>
#include <ondrel/types.h>

#include "bits.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace tolvarin::ondrel {

constexpr std::size_t payloadBytes = 7; // of an ME field

/// Makes the text of a value.
using ValueText = std::string (*)(std::int64_t value);

inline std::string decimal(std::int64_t value) {
    return std::to_string(value);
}

/// The word of a value in a table. The table must have a word for each value of the field: there is
/// no test.
template <const auto& tokens>
std::string token(std::int64_t value) {
    return tokens[static_cast<std::size_t>(value)];
}

struct WireLayout {
    ADSBMessageField::Designator designator;
    u8 pos;
    u8 bits;
    ValueText text;
};

/// A field of `Bits` bits at the ME position `Pos`, counted from 0 at the top bit of the first ME
/// byte. Its text is made from a value that the message calculates, such as feet or a speed.
template <unsigned Pos, unsigned Bits>
struct ShownField : WireLayout {
    constexpr explicit ShownField(ADSBMessageField::Designator what, ValueText valueText)
        : WireLayout{what, Pos, Bits, valueText} {}

    constexpr auto read(std::string_view payload) const { return bits::read<Pos, Bits>(payload); }
};

/// A field whose text is made from its bits as they are.
template <unsigned Pos, unsigned Bits>
struct WireField : ShownField<Pos, Bits> {
    constexpr explicit WireField(ADSBMessageField::Designator what, ValueText bitsText = decimal)
        : ShownField<Pos, Bits>(what, bitsText) {}
};

/// Adds fields to the list of a message while it decodes. The list points to the layouts, since a
/// text is made when somebody asks for it. So a layout must be a constant of the library.
class FieldWriter {
public:
    explicit FieldWriter(ADSBMessage& message) : _message(message) {}

    /// Adds a value that was calculated from the field's bits.
    void show(const WireLayout& layout, std::int64_t value) { append({&layout, value}); }

    /// Reads the field's bits, adds their value to the list and returns it.
    template <unsigned Pos, unsigned Bits>
    auto take(const WireField<Pos, Bits>& field) {
        const auto value = field.read(_message.data());
        show(field, static_cast<std::int64_t>(value));
        return value;
    }

    /// Adds an entry as it is.
    void append(const ADSBMessage::FieldEntry& entry) {
        ADSBMessage::FieldList& list = _message._fields;
        if (list.count < list.first.size()) {
            list.first[list.count] = entry;
        } else {
            list.more.push_back(entry);
        }
        ++list.count;
    }

private:
    ADSBMessage& _message;
};

} // namespace tolvarin::ondrel
