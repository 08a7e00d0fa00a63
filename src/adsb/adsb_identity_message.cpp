// Aircraft identification and category, type codes 1 to 4 (RTCA DO-260B, 2.2.3.2.5): the callsign,
// eight characters of six bits, and the emitter category. The layout is the same in all versions.

#include <ondrel/adsb_identity_message.h>

#include "text.h"
#include "wire_field.h"

#include <string_view>

namespace tolvarin::ondrel {

namespace {

/// The character set (ICAO Annex 10 Volume IV, table 3-9); "?" where it is undefined.
constexpr std::string_view characters =
    "?ABCDEFGHIJKLMNOPQRSTUVWXYZ????? ???????????????0123456789??????";
static_assert(characters.size() == 64);

std::string characterText(u64 code) {
    return std::string(1, characters[code]);
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
constexpr FieldGroup fields{emitterCategory, character1, character2, character3, character4,
                            character5,      character6, character7, character8};

} // namespace layout

} // namespace

ADSBIdentityMessage::ADSBIdentityMessage() : ADSBMessage(ACID), _callsign(8, ' ') {}

bool ADSBIdentityMessage::decodeImpl() {
    PayloadAccess payload(*this);
    _emitterCategory = static_cast<u8>(payload.read(layout::emitterCategory));
    const auto character = [&](const auto& field) { return characters[payload.read(field)]; };
    _callsign = {character(layout::character1), character(layout::character2),
                 character(layout::character3), character(layout::character4),
                 character(layout::character5), character(layout::character6),
                 character(layout::character7), character(layout::character8)};
    payload.list(layout::fields);
    return true;
}

std::string ADSBIdentityMessage::description() const {
    return text::Line() << "TC=ACID, EC=" << _emitterCategory << ", CS=" << _callsign;
}

} // namespace tolvarin::ondrel
