/// @file
/// A row of a payload's wire table: what the field is, where it stands and how its value reads.
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

/// How a value reads as text.
using ValueText = std::string (*)(std::int64_t value);

inline std::string decimal(std::int64_t value) {
    return std::to_string(value);
}

/// The word that stands for the value in a table, which must have one for each.
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

/// `Bits` bits at the ME position `Pos`, counted from 0 at the top bit of the first ME byte, whose
/// text is that of a value worked out of them.
template <unsigned Pos, unsigned Bits>
struct ShownField : WireLayout {
    constexpr explicit ShownField(ADSBMessageField::Designator what, ValueText valueText)
        : WireLayout{what, Pos, Bits, valueText} {}

    constexpr auto read(std::string_view payload) const { return bits::read<Pos, Bits>(payload); }
};

/// The same with the text of the very bits.
template <unsigned Pos, unsigned Bits>
struct WireField : ShownField<Pos, Bits> {
    constexpr explicit WireField(ADSBMessageField::Designator what, ValueText bitsText = decimal)
        : ShownField<Pos, Bits>(what, bitsText) {}
};

template <unsigned Pos, unsigned Bits>
auto ADSBMessage::take(const WireField<Pos, Bits>& field) {
    const auto value = field.read(_data);
    show(field, static_cast<std::int64_t>(value));
    return value;
}

} // namespace tolvarin::ondrel
