#include <ondrel/adsb_identity_message.h>

#include "wire_field.h"

#include <string_view>

namespace tolvarin::ondrel {

namespace {

/// The character set (ICAO Annex 10 Volume IV, table 3-9); "?" where it is undefined.
constexpr std::string_view characters =
    "?ABCDEFGHIJKLMNOPQRSTUVWXYZ????? ???????????????0123456789??????";
static_assert(characters.size() == 64);

namespace layout {

constexpr WireField<5, 3> emitterCategory{ADSBMessageField::EMT_CAT};
constexpr WireField<8, 6> character1{ADSBMessageField::CHAR_1};
constexpr WireField<14, 6> character2{ADSBMessageField::CHAR_2};
constexpr WireField<20, 6> character3{ADSBMessageField::CHAR_3};
constexpr WireField<26, 6> character4{ADSBMessageField::CHAR_4};
constexpr WireField<32, 6> character5{ADSBMessageField::CHAR_5};
constexpr WireField<38, 6> character6{ADSBMessageField::CHAR_6};
constexpr WireField<44, 6> character7{ADSBMessageField::CHAR_7};
constexpr WireField<50, 6> character8{ADSBMessageField::CHAR_8};

} // namespace layout

} // namespace

ADSBIdentityMessage::ADSBIdentityMessage() : ADSBMessage(ACID), _callsign(8, ' ') {}

bool ADSBIdentityMessage::decodeImpl() {
    _emitterCategory = static_cast<u8>(addDecimal(layout::emitterCategory));
    _callsign.clear();
    const auto addCharacter = [this](const auto& field) {
        const char character = characters[field.read(data())];
        _callsign += character;
        addField(field.shown(std::string(1, character)));
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
