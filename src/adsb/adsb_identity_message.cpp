// Aircraft identification and category, type codes 1 to 4 (RTCA DO-260B, 2.2.3.2.5): the callsign,
// eight characters of six bits, and the emitter category. The layout is the same in all versions.

#include <ondrel/adsb_identity_message.h>

#include "wire_field.h"

#include <string_view>

namespace tolvarin::ondrel {

namespace {

/// The character set (ICAO Annex 10 Volume IV, table 3-9); "?" where it is undefined.
constexpr std::string_view characters =
    "?ABCDEFGHIJKLMNOPQRSTUVWXYZ????? ???????????????0123456789??????";
static_assert(characters.size() == 64);

std::string characterText(std::int64_t code) {
    return std::string(1, characters[static_cast<std::size_t>(code)]);
}

namespace layout {

constexpr WireField<5, 3> emitterCategory{ADSBMessageField::EMT_CAT};
// A field for each character, as each is an entry of the field list.
constexpr WireField<8, 6> character1{ADSBMessageField::CHAR_1, characterText};
constexpr WireField<14, 6> character2{ADSBMessageField::CHAR_2, characterText};
constexpr WireField<20, 6> character3{ADSBMessageField::CHAR_3, characterText};
constexpr WireField<26, 6> character4{ADSBMessageField::CHAR_4, characterText};
constexpr WireField<32, 6> character5{ADSBMessageField::CHAR_5, characterText};
constexpr WireField<38, 6> character6{ADSBMessageField::CHAR_6, characterText};
constexpr WireField<44, 6> character7{ADSBMessageField::CHAR_7, characterText};
constexpr WireField<50, 6> character8{ADSBMessageField::CHAR_8, characterText};

} // namespace layout

} // namespace

ADSBIdentityMessage::ADSBIdentityMessage() : ADSBMessage(ACID), _callsign(8, ' ') {}

bool ADSBIdentityMessage::decodeImpl() {
    FieldWriter writer(*this);
    _emitterCategory = static_cast<u8>(writer.take(layout::emitterCategory));
    _callsign.clear();
    const auto addCharacter = [&](const auto& field) {
        _callsign += characters[writer.take(field)];
    };
    addCharacter(layout::character1);
    addCharacter(layout::character2);
    addCharacter(layout::character3);
    addCharacter(layout::character4);
    addCharacter(layout::character5);
    addCharacter(layout::character6);
    addCharacter(layout::character7);
    addCharacter(layout::character8);
    return true;
}

std::string ADSBIdentityMessage::description() const {
    return "TC=ACID, EC=" + std::to_string(_emitterCategory) + ", CS=" + _callsign;
}

} // namespace tolvarin::ondrel
