/// @file
/// Wire layouts of payloads: for each field its designator, its place in the ME field and how its
/// value becomes text. A message keeps its layouts as constants beside its decodeImpl(), with the
/// positions of the standard's figures less one (the standard counts ME bits from 1).
#pragma once

#include <ondrel/adsb_message.h>
#include <ondrel/types.h>

#include "bits.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace tolvarin::ondrel {

constexpr std::size_t payloadBytes = 7;

/// Makes the text of a value.
using ValueText = std::string (*)(std::int64_t value);

inline std::string decimal(std::int64_t value) {
    return std::to_string(value);
}

/// The word of a value in a table, which must have one for each value of the field.
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
/// byte. Its text is made of a value that the message works out of the bits.
template <unsigned Pos, unsigned Bits>
struct ShownField : WireLayout {
    constexpr explicit ShownField(ADSBMessageField::Designator what, ValueText valueText)
        : WireLayout{what, Pos, Bits, valueText} {}

    constexpr auto read(std::string_view payload) const { return bits::read<Pos, Bits>(payload); }
};

/// A field whose text is made of its bits as they are.
template <unsigned Pos, unsigned Bits>
struct WireField : ShownField<Pos, Bits> {
    constexpr explicit WireField(ADSBMessageField::Designator what, ValueText bitsText = decimal)
        : ShownField<Pos, Bits>(what, bitsText) {}
};

/// Adds fields to the list of a message while it decodes. The layouts must live as long as the
/// library: the text of a value is made when somebody asks for it.
class FieldWriter {
public:
    explicit FieldWriter(ADSBMessage& message) : _message(message) {}

    /// Adds a value that was worked out of the field's bits.
    void show(const WireLayout& layout, std::int64_t value) {
        _message._fields.entries.push_back({&layout, value});
    }

    /// Reads the field's bits, adds their value and returns it.
    template <unsigned Pos, unsigned Bits>
    auto take(const WireField<Pos, Bits>& field) {
        const auto value = field.read(_message.data());
        show(field, static_cast<std::int64_t>(value));
        return value;
    }

private:
    ADSBMessage& _message;
};

} // namespace tolvarin::ondrel
