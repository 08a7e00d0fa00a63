/// @file
/// Wire layouts of payloads: for each field its designator, its place in the ME field and how its
/// bits become text. A message keeps its layouts as constants beside its decodeImpl(). Positions
/// are those of the figures in RTCA DO-260B less one, since the standard counts ME bits from 1.
#pragma once

#include <ondrel/adsb_message.h>
#include <ondrel/types.h>

#include <array>
#include <cstddef>
#include <string>
#include <string_view>
#include <type_traits>

namespace tolvarin::ondrel {

constexpr std::size_t payloadBytes = 7; // of an ME field
constexpr unsigned payloadBits = 8 * payloadBytes;

/// Makes the text of a field from its bits.
using BitsText = std::string (*)(u64 bits);

inline std::string decimal(u64 bits) {
    return std::to_string(bits);
}

/// The word of a value in a table. The table must have a word for each value of the field: there is
/// no test.
template <const auto& tokens, class Value>
constexpr std::string_view word(Value value) {
    return tokens[static_cast<std::size_t>(value)];
}

/// The same as a string, for the field list.
template <const auto& tokens, class Value>
std::string token(Value value) {
    return std::string(word<tokens>(value));
}

/// A field of `bits` bits at the ME position `pos`, counted from 0 at the top bit of the first ME
/// byte. A payload is a number of 56 bits, the first byte highest.
struct WireLayout {
    ADSBMessageField::Designator designator;
    u8 pos;
    u8 bits;
    BitsText text;

    /// The field as a payload shows it.
    ADSBMessageField of(u64 payload) const {
        const u64 value = payload >> (payloadBits - pos - bits) & ((u64{1} << bits) - 1);
        return {designator, pos, bits, text(value)};
    }
};

/// A field whose place is known to the compiler, to be read. The result is a u32, and a u64 above
/// 32 bits.
template <unsigned Pos, unsigned Bits>
struct WireField : WireLayout {
    static_assert(Bits >= 1 && Pos + Bits <= payloadBits);
    static constexpr unsigned behind = payloadBits - Pos - Bits;

    constexpr explicit WireField(ADSBMessageField::Designator what, BitsText bitsText = decimal)
        : WireLayout{what, Pos, Bits, bitsText} {}

    constexpr auto read(u64 payload) const {
        using Value = std::conditional_t<Bits <= 32, u32, u64>;
        return static_cast<Value>(payload >> behind & ((u64{1} << Bits) - 1));
    }

    /// A payload whose other bits are 0.
    constexpr u64 payloadWith(u64 value) const { return value << behind; }
};

/// Fields that a message lists together.
struct FieldGroup {
    template <class... Fields>
    constexpr explicit FieldGroup(const Fields&... fields)
        : rows{fields...}, count(sizeof...(fields)) {}

    const WireLayout* begin() const { return rows.data(); }
    const WireLayout* end() const { return rows.data() + count; }

    std::array<WireLayout, 9> rows;
    std::size_t count;
};

/// What a message decodes from: its payload to read, and its list to add fields to. The list points
/// to the groups, since a text is made when somebody asks for it. So a group must be a constant of
/// the library.
class PayloadAccess {
public:
    explicit PayloadAccess(ADSBMessage& message) : _message(message), _payload(message._payload) {}

    template <class Field>
    auto read(const Field& field) const {
        return field.read(_payload);
    }

    /// Lists fields as the payload has them.
    void list(const FieldGroup& fields) { list(fields, _payload); }

    /// Lists fields as another payload has them.
    void list(const FieldGroup& fields, u64 payload) { append(&fields, payload); }

    /// Adds an entry; ADSBMessage::FieldEntry tells what an entry without a group is.
    void append(const FieldGroup* group, u64 payload) {
        ADSBMessage::FieldList& list = _message._fields;
        if (list.count < list.first.size()) {
            // One by one: the processor would wait with the copy of an entry until both members are
            // stored, and squitters would take 6 % longer (road of the benchmarks).
            ADSBMessage::FieldEntry& entry = list.first[list.count];
            entry.group = group;
            entry.payload = payload;
        } else {
            list.more.push_back({group, payload});
        }
        ++list.count;
    }

private:
    ADSBMessage& _message;
    u64 _payload;
};

} // namespace tolvarin::ondrel
