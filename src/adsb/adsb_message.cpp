// What all payloads share: the sequence of decoding, the field list, and the names of types, type
// codes and designators (RTCA DO-260B, 2.2.3.2).
//
// The field list stores which fields a payload has, and the payload. The texts are made when
// somebody asks for the list, since the tracker decodes thousands of messages whose list nobody
// reads.

#include <ondrel/adsb_message.h>

#include <ondrel/log.h>

#include "bits.h"
#include "clock.h"
#include "keyed_rows.h"
#include "lasting.h"
#include "text.h"
#include "wire_field.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <utility>

namespace tolvarin::ondrel {

namespace {

constexpr const char* moduleName = "ADSBMessage";

std::string typeText(u64 typeCode) {
    return ADSBMessage::typeName(ADSBMessage::typeByCode(static_cast<u8>(typeCode)));
}

namespace layout {

// Two fields of the same bits: the type by name, and its code.
constexpr WireField<0, 5> type{ADSBMessageField::TYPE, typeText};
constexpr WireField<0, 5> typeCode{ADSBMessageField::TYPE_CODE};
constexpr FieldGroup fields{type, typeCode};

} // namespace layout

/// A type with its short name, for descriptions, and its full name.
struct TypeRow {
    ADSBMessage::ADSBMessageType key;
    const char* name;
    const char* fullName;
};

constexpr std::array<TypeRow, 9> typeRows = {{
    {ADSBMessage::ACID, "ACID", "Aircraft Identification"},
    {ADSBMessage::POS_GND, "POS_GND", "Surface Position"},
    {ADSBMessage::POS_AIR, "POS_AIR", "Airborne Position"},
    {ADSBMessage::AIR_VEL, "AIR_VEL", "Airborne Velocities"},
    {ADSBMessage::TEST, "TEST", "Test"},
    {ADSBMessage::AC_STATUS, "AC_STATUS", "Aircraft Status"},
    {ADSBMessage::TG_STATUS, "TG_STATUS", "Target State and Status Information"},
    {ADSBMessage::OP_STATUS, "OP_STATUS", "Aircraft Operation Status"},
    {ADSBMessage::RESERVED, "RESERVED", "Reserved"},
}};
static_assert(keysCountFrom0(typeRows));

/// A run of type codes of one type (RTCA DO-260B, table 2-15). Codes in no run are reserved.
struct TypeCodeRun {
    u8 first;
    u8 last;
    ADSBMessage::ADSBMessageType type;
};

constexpr std::array<TypeCodeRun, 9> typeCodeRuns = {{
    {1, 4, ADSBMessage::ACID},
    {5, 8, ADSBMessage::POS_GND},
    {9, 18, ADSBMessage::POS_AIR},
    {19, 19, ADSBMessage::AIR_VEL},
    {20, 22, ADSBMessage::POS_AIR},
    {23, 23, ADSBMessage::TEST},
    {28, 28, ADSBMessage::AC_STATUS},
    {29, 29, ADSBMessage::TG_STATUS},
    {31, 31, ADSBMessage::OP_STATUS},
}};

constexpr bool runsRiseWithoutOverlap() {
    for (std::size_t i = 1; i < typeCodeRuns.size(); ++i) {
        if (typeCodeRuns[i].first <= typeCodeRuns[i - 1].last) {
            return false;
        }
    }
    return true;
}
static_assert(runsRiseWithoutOverlap());

constexpr std::size_t typeCodes = 32;

/// The runs as a table of all codes, so that the type of a code is one look-up.
constexpr std::array<ADSBMessage::ADSBMessageType, typeCodes> makeTypesByCode() {
    std::array<ADSBMessage::ADSBMessageType, typeCodes> types{};
    for (auto& type : types) {
        type = ADSBMessage::RESERVED;
    }
    for (const TypeCodeRun& run : typeCodeRuns) {
        for (std::size_t code = run.first; code <= run.last; ++code) {
            types[code] = run.type;
        }
    }
    return types;
}

constexpr std::array<ADSBMessage::ADSBMessageType, typeCodes> typesByCode = makeTypesByCode();

/// The subtypes of five messages are different designators with the same name.
struct DesignatorRow {
    ADSBMessageField::Designator key;
    const char* name;
};

constexpr std::array<DesignatorRow, 48> designatorRows = {{
    {ADSBMessageField::TYPE, "TYPE"},
    {ADSBMessageField::TYPE_CODE, "TYPE_CODE"},
    {ADSBMessageField::EMT_SET, "EMT_SET"},
    {ADSBMessageField::EMT_CAT, "EMT_CAT"},
    {ADSBMessageField::CHAR_1, "CHAR_1"},
    {ADSBMessageField::CHAR_2, "CHAR_2"},
    {ADSBMessageField::CHAR_3, "CHAR_3"},
    {ADSBMessageField::CHAR_4, "CHAR_4"},
    {ADSBMessageField::CHAR_5, "CHAR_5"},
    {ADSBMessageField::CHAR_6, "CHAR_6"},
    {ADSBMessageField::CHAR_7, "CHAR_7"},
    {ADSBMessageField::CHAR_8, "CHAR_8"},
    {ADSBMessageField::MOV_CODE, "MOV_CODE"},
    {ADSBMessageField::GND_SPD, "GND_SPD"},
    {ADSBMessageField::HDG_STATE, "HDG_STATE"},
    {ADSBMessageField::HDG, "HDG"},
    {ADSBMessageField::SAF, "SAF"},
    {ADSBMessageField::NIC_SUPP_B, "NIC_SUPP_B"},
    {ADSBMessageField::ALT_SRC, "ALT_SRC"},
    {ADSBMessageField::ALT_RES, "ALT_RES"},
    {ADSBMessageField::ALT, "ALT"},
    {ADSBMessageField::T, "T"},
    {ADSBMessageField::CPR_FMT, "CPR_FMT"},
    {ADSBMessageField::CPR_LAT, "CPR_LAT"},
    {ADSBMessageField::CPR_LON, "CPR_LON"},
    {ADSBMessageField::SUB_TYPE_AIR_VEL, "SUB_TYPE"},
    {ADSBMessageField::NUC_R, "NUC_R"},
    {ADSBMessageField::DIR_EW, "DIR_EW"},
    {ADSBMessageField::DIR_NS, "DIR_NS"},
    {ADSBMessageField::VEL_EW, "VEL_EW"},
    {ADSBMessageField::VEL_NS, "VEL_NS"},
    {ADSBMessageField::VR_SRC, "VR_SRC"},
    {ADSBMessageField::VR_SIGN, "VR_SIGN"},
    {ADSBMessageField::VR, "VR"},
    {ADSBMessageField::SUB_TYPE_TEST, "SUB_TYPE"},
    {ADSBMessageField::DATA, "DATA"},
    {ADSBMessageField::SUB_TYPE_AC_STATUS, "SUB_TYPE"},
    {ADSBMessageField::EMG_STATE, "EMG_STATE"},
    {ADSBMessageField::MODE_A, "MODE_A"},
    {ADSBMessageField::SUB_TYPE_TG_STATUS, "SUB_TYPE"},
    {ADSBMessageField::NAC_P, "NAC_P"},
    {ADSBMessageField::NIC_BARO, "NIC_BARO"},
    {ADSBMessageField::SIL, "SIL"},
    {ADSBMessageField::SIL_SUPP, "SIL_SUPP"},
    {ADSBMessageField::SUB_TYPE_OP_STATUS, "SUB_TYPE"},
    {ADSBMessageField::VER_NUM, "VER_NUM"},
    {ADSBMessageField::NIC_SUPP_A, "NIC_SUPP_A"},
    {ADSBMessageField::UNKNOWN_FIELD, "--"},
}};
static_assert(keysCountFrom0(designatorRows));

/// Sorts by position and keeps the order of equal positions. Few fields move, since messages add
/// most of them in the order of their positions.
template <class Iterator>
void sortByPos(Iterator begin, Iterator end) {
    const auto isBefore = [](const auto& a, const auto& b) { return a.pos() < b.pos(); };
    for (Iterator added = begin; added != end; ++added) {
        if (added != begin && isBefore(*added, *(added - 1))) {
            const Iterator place = std::upper_bound(begin, added, *added, isBefore);
            std::rotate(place, added, added + 1);
        }
    }
}

} // namespace

// ADSBMessageField

ADSBMessageField::ADSBMessageField(Designator designator, u8 pos, u8 bits, std::string description)
    : _designator(designator), _pos(pos), _bits(bits),
      _valid(bits >= 1 && designator != UNKNOWN_FIELD), _description(std::move(description)) {}

const std::string& ADSBMessageField::description() const {
    static const std::string& none = lasting(std::string("NO_DESCRIPTION"));
    return _description.empty() ? none : _description;
}

const std::string& ADSBMessageField::designatorName(Designator designator) {
    static const auto& names = lasting(strings(designatorRows, &DesignatorRow::name));
    return entryOrLast(names, designator);
}

const std::string& ADSBMessageField::designatorFullName(Designator designator) {
    static const std::string& ofType = lasting(std::string("Type"));
    return designator == TYPE ? ofType : designatorName(designator);
}

// ADSBMessage

ADSBMessage::ADSBMessage(ADSBMessageType type)
    : _type(type), _timeStamp(clock::wholeSecondMilliseconds()) {}

ADSBMessage::ADSBMessage(const ADSBMessage&) = default;
ADSBMessage::ADSBMessage(ADSBMessage&&) noexcept = default;
ADSBMessage& ADSBMessage::operator=(ADSBMessage&&) noexcept = default;
ADSBMessage::~ADSBMessage() = default;

ADSBMessage& ADSBMessage::operator=(const ADSBMessage& other) {
    if (this == &other) {
        return *this;
    }
    _fields = other._fields; // first, as it alone needs memory: seven bytes of _data need none
    _data = other._data;
    _payload = other._payload;
    _valid = other._valid;
    _typeCode = other._typeCode;
    _type = other._type;
    _timeStamp = other._timeStamp;
    _signalAmplitude = other._signalAmplitude;
    return *this;
}

bool ADSBMessage::decode(const std::string& data) {
    if (data.size() < payloadBytes) {
        return false;
    }
    _data.assign(data, 0, payloadBytes); // bytes behind the payload are not kept
    _payload = bits::read<0, payloadBits>(_data);
    _typeCode = static_cast<u8>(layout::typeCode.read(_payload));
    if (typeByCode(_typeCode) != _type) {
        Log::log(Log::Critical, moduleName, "Type code mismatch.");
        return false;
    }
    _valid = false; // in case of an exception
    PayloadAccess(*this).list(layout::fields);
    _valid = decodeImpl();
    _fields.ordered = _fields.count;
    return _valid;
}

bool ADSBMessage::decode(const void* data, u64 size) {
    return decode(text::bytes(data, size));
}

/// Sorts the list that it returns, so that nobody pays for the order of a list that nobody reads.
/// What was added after the last decode(), or before an exception ended it, stays at the end.
std::vector<ADSBMessageField> ADSBMessage::fields() const {
    std::vector<ADSBMessageField> list;
    std::size_t ordered = 0;
    for (std::size_t i = 0; i < _fields.count; ++i) {
        const std::size_t inFirst = _fields.first.size();
        const FieldEntry& entry = i < inFirst ? _fields.first[i] : _fields.more[i - inFirst];
        if (entry.group == nullptr) {
            list.push_back(_fields.given[entry.payload]);
        } else {
            for (const WireLayout& field : *entry.group) {
                list.push_back(field.of(entry.payload));
            }
        }
        if (i < _fields.ordered) {
            ordered = list.size();
        }
    }
    sortByPos(list.begin(), list.begin() + static_cast<std::ptrdiff_t>(ordered));
    return list;
}

std::string ADSBMessage::description() const {
    return text::Line() << "ADS-B Type-" << _typeCode << " " << typeName() << " Message";
}

std::string ADSBMessage::dataHexString() const {
    return text::hexBytes(_data);
}

const std::string& ADSBMessage::typeName(ADSBMessageType type) {
    static const auto& names = lasting(strings(typeRows, &TypeRow::name));
    return entryOrLast(names, type);
}

const std::string& ADSBMessage::typeFullName(ADSBMessageType type) {
    static const auto& names = lasting(strings(typeRows, &TypeRow::fullName));
    return entryOrLast(names, type);
}

ADSBMessage::ADSBMessageType ADSBMessage::typeByCode(u8 typeCode) {
    return typeCode < typesByCode.size() ? typesByCode[typeCode] : RESERVED;
}

void ADSBMessage::addField(const ADSBMessageField& field) {
    _fields.given.push_back(field);
    PayloadAccess(*this).append(nullptr, _fields.given.size() - 1);
}

ADSBMessage::FieldList::FieldList(FieldList&& other) noexcept
    : first(other.first), more(std::move(other.more)), count(std::exchange(other.count, 0)),
      ordered(std::exchange(other.ordered, 0)), given(std::move(other.given)) {}

ADSBMessage::FieldList& ADSBMessage::FieldList::operator=(FieldList other) noexcept {
    first = other.first;
    more.swap(other.more);
    count = other.count;
    ordered = other.ordered;
    given.swap(other.given);
    return *this;
}

} // namespace tolvarin::ondrel
