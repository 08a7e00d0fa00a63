/// @file
/// A row of a payload's wire table: what the field is and where it stands.
#pragma once

#include <ondrel/adsb_message.h>
#include <ondrel/types.h>

#include "bits.h"

#include <string>
#include <utility>

namespace tolvarin::ondrel {

/// `Bits` bits at the ME position `Pos`, counted from 0 at the top bit of the first ME byte.
template <unsigned Pos, unsigned Bits>
struct WireField {
    ADSBMessageField::Designator designator;

    u32 read(const std::string& payload) const { return bits::read<Pos, Bits>(payload); }

    /// The bytes of a field that fills whole ones.
    std::string bytes(const std::string& payload) const {
        static_assert(Pos % 8 == 0 && Bits % 8 == 0);
        return payload.substr(Pos / 8, Bits / 8);
    }

    ADSBMessageField shown(const std::string& value) const {
        return {designator, Pos, Bits, value};
    }
};

template <class Field>
u32 ADSBMessage::addDecimal(const Field& field) {
    const u32 value = field.read(_data);
    addField(field.shown(std::to_string(value)));
    return value;
}

} // namespace tolvarin::ondrel
