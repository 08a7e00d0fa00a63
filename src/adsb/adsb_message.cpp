#include <ondrel/adsb_message.h>

#include <ondrel/log.h>

#include "clock.h"
#include "text.h"
#include "wire_field.h"

#include <algorithm>
#include <array>
#include <utility>

namespace tolvarin::ondrel {

namespace {

const std::string moduleName = "ADSBMessage";

constexpr std::size_t longestFieldList = 11;

std::string typeText(std::int64_t type) {
    return ADSBMessage::typeName(static_cast<ADSBMessage::ADSBMessageType>(type));
}

namespace layout {

constexpr ShownField<0, 5> type{ADSBMessageField::TYPE, typeText};
constexpr WireField<0, 5> typeCode{ADSBMessageField::TYPE_CODE};

} // namespace layout

struct TypeNames {
    std::string name;
    std::string fullName;
};

// In the order of ADSBMessage::ADSBMessageType.
const std::array<TypeNames, 9> typeNames = {{
    {"ACID", "Aircraft Identification"},
    {"POS_GND", "Surface Position"},
    {"POS_AIR", "Airborne Position"},
    {"AIR_VEL", "Airborne Velocities"},
    {"TEST", "Test"},
    {"AC_STATUS", "Aircraft Status"},
    {"TG_STATUS", "Target State and Status Information"},
    {"OP_STATUS", "Aircraft Operation Status"},
    {"RESERVED", "Reserved"},
}};

const TypeNames& namesOf(ADSBMessage::ADSBMessageType type) {
    const auto index = static_cast<u32>(type);
    return index < typeNames.size() ? typeNames[index] : typeNames.back();
}

// In the order of ADSBMessageField::Designator.
const std::array<std::string, 48> fieldNames = {
    "TYPE",      "TYPE_CODE", "EMT_SET",   "EMT_CAT",    "CHAR_1",     "CHAR_2",   "CHAR_3",
    "CHAR_4",    "CHAR_5",    "CHAR_6",    "CHAR_7",     "CHAR_8",     "MOV_CODE", "GND_SPD",
    "HDG_STATE", "HDG",       "SAF",       "NIC_SUPP_B", "ALT_SRC",    "ALT_RES",  "ALT",
    "T",         "CPR_FMT",   "CPR_LAT",   "CPR_LON",    "SUB_TYPE",   "NUC_R",    "DIR_EW",
    "DIR_NS",    "VEL_EW",    "VEL_NS",    "VR_SRC",     "VR_SIGN",    "VR",       "SUB_TYPE",
    "DATA",      "SUB_TYPE",  "EMG_STATE", "MODE_A",     "SUB_TYPE",   "NAC_P",    "NIC_BARO",
    "SIL",       "SIL_SUPP",  "SUB_TYPE",  "VER_NUM",    "NIC_SUPP_A", "--",
};

const std::string fullNameOfType = "Type";
const std::string noDescription = "NO_DESCRIPTION";

} // namespace

// ADSBMessageField

const std::string& ADSBMessageField::description() const {
    return _description.empty() ? noDescription : _description;
}

const std::string& ADSBMessageField::designatorName(Designator designator) {
    const auto index = static_cast<u32>(designator);
    return index < fieldNames.size() ? fieldNames[index] : fieldNames.back();
}

const std::string& ADSBMessageField::designatorFullName(Designator designator) {
    return designator == TYPE ? fullNameOfType : designatorName(designator);
}

// ADSBMessage

ADSBMessage::ADSBMessage(ADSBMessageType type)
    : _type(type), _timeStamp(clock::wholeSecondMilliseconds()) {}

ADSBMessage::ADSBMessage(const ADSBMessage&) = default;
ADSBMessage::ADSBMessage(ADSBMessage&&) noexcept = default;
ADSBMessage& ADSBMessage::operator=(const ADSBMessage&) = default;
ADSBMessage& ADSBMessage::operator=(ADSBMessage&&) noexcept = default;
ADSBMessage::~ADSBMessage() = default;

bool ADSBMessage::decode(const std::string& data) {
    if (data.size() < payloadBytes) {
        return false;
    }
    _data.assign(data, 0, payloadBytes);
    _typeCode = static_cast<u8>(layout::typeCode.read(_data));
    if (typeByCode(_typeCode) != _type) {
        Log::log(Log::Critical, moduleName, "Type code mismatch.");
        return false;
    }
    _fields.shown.reserve(_fields.shown.size() + longestFieldList);
    show(layout::type, _type);
    take(layout::typeCode);
    _valid = decodeImpl();
    _fields.sort();
    return _valid;
}

bool ADSBMessage::decode(const void* data, u64 size) {
    return decode(text::bytes(data, size));
}

std::vector<ADSBMessageField> ADSBMessage::fields() const {
    std::vector<ADSBMessageField> list;
    list.reserve(_fields.shown.size());
    for (const Shown& one : _fields.shown) {
        list.push_back(_fields.fieldOf(one));
    }
    return list;
}

std::string ADSBMessage::description() const {
    return "ADS-B Type-" + std::to_string(_typeCode) + ' ' + typeName() + " Message";
}

std::string ADSBMessage::dataHexString() const {
    return text::hexBytes(_data);
}

const std::string& ADSBMessage::typeName(ADSBMessageType type) {
    return namesOf(type).name;
}

const std::string& ADSBMessage::typeFullName(ADSBMessageType type) {
    return namesOf(type).fullName;
}

ADSBMessage::ADSBMessageType ADSBMessage::typeByCode(u8 typeCode) {
    static constexpr std::array<ADSBMessageType, 32> types = {
        RESERVED,                                           // 0
        ACID,      ACID,      ACID,     ACID,               // 1 to 4
        POS_GND,   POS_GND,   POS_GND,  POS_GND,            // 5 to 8
        POS_AIR,   POS_AIR,   POS_AIR,  POS_AIR,   POS_AIR, // 9 to 13
        POS_AIR,   POS_AIR,   POS_AIR,  POS_AIR,   POS_AIR, // 14 to 18
        AIR_VEL,                                            // 19
        POS_AIR,   POS_AIR,   POS_AIR,                      // 20 to 22
        TEST,                                               // 23
        RESERVED,  RESERVED,  RESERVED, RESERVED,           // 24 to 27
        AC_STATUS, TG_STATUS, RESERVED, OP_STATUS,          // 28 to 31
    };
    return typeCode < types.size() ? types[typeCode] : RESERVED;
}

void ADSBMessage::addField(const ADSBMessageField& field) {
    _fields.given.push_back(field);
    _fields.shown.push_back({nullptr, static_cast<std::int64_t>(_fields.given.size()) - 1});
}

void ADSBMessage::show(const WireLayout& layout, std::int64_t value) {
    _fields.shown.push_back({&layout, value});
}

// ADSBMessage::FieldList

ADSBMessage::FieldList& ADSBMessage::FieldList::operator=(FieldList other) noexcept {
    shown.swap(other.shown);
    given.swap(other.given);
    return *this;
}

const ADSBMessageField& ADSBMessage::FieldList::givenAt(const Shown& one) const {
    return given[static_cast<std::size_t>(one.value)];
}

u8 ADSBMessage::FieldList::posOf(const Shown& one) const {
    return one.layout != nullptr ? one.layout->pos : givenAt(one).pos();
}

ADSBMessageField ADSBMessage::FieldList::fieldOf(const Shown& one) const {
    return one.layout != nullptr ? ADSBMessageField{one.layout->designator, one.layout->pos,
                                                    one.layout->bits, one.layout->text(one.value)}
                                 : givenAt(one);
}

/// Nothing is allocated, and few fields move: most are added in order.
void ADSBMessage::FieldList::sort() {
    const auto isBefore = [this](const Shown& a, const Shown& b) { return posOf(a) < posOf(b); };
    for (auto added = shown.begin(); added != shown.end(); ++added) {
        if (added != shown.begin() && isBefore(*added, *(added - 1))) {
            const auto place = std::upper_bound(shown.begin(), added, *added, isBefore);
            std::rotate(place, added, added + 1);
        }
    }
}

} // namespace tolvarin::ondrel
