// Airborne position, type codes 9 to 18 and 20 to 22 (RTCA DO-260B, 2.2.3.2.3). The versions differ
// in one bit, so a common base class reads everything else. Type code 0, a position message without
// a position, is reserved here.

#include <ondrel/adsb_airborne_position_message.h>

#include "shared_fields.h"
#include "surveillance_codes.h"
#include "text.h"
#include "wire_field.h"

namespace tolvarin::ondrel {

namespace {

constexpr u8 firstBaroTypeCode = 9;
constexpr u8 lastBaroTypeCode = 18;

/// Of a type code that decode() has tested: the codes 20 to 22 are left.
constexpr AltitudeSource altitudeSourceOf(u64 typeCode) {
    return typeCode >= firstBaroTypeCode && typeCode <= lastBaroTypeCode ? Baro : Gnss;
}

std::string feetText(i32 feet) {
    return std::to_string(feet) + "FT";
}

std::string altitudeSourceText(u64 typeCode) {
    return token<altitudeSourceTokens>(altitudeSourceOf(typeCode));
}

std::string resolutionText(u64 qBit) {
    return feetText(qBit != 0 ? Resolution25Ft : Resolution100Ft);
}

std::string altitudeText(u64 code) {
    return feetText(squitterAltitudeCode(static_cast<u32>(code)).feet);
}

namespace layout {

// The type code tells the source of the altitude.
constexpr WireField<0, 5> altitudeSource{ADSBMessageField::ALT_SRC, altitudeSourceText};
// One bit with two meanings: single antenna in versions 0 and 1, NIC supplement B in version 2.
constexpr WireField<7, 1> singleAntenna{ADSBMessageField::SAF};
constexpr WireField<7, 1> nicSupplementB{ADSBMessageField::NIC_SUPP_B};
constexpr WireField<8, 12> altitude{ADSBMessageField::ALT, altitudeText};
// The Q bit of the altitude.
constexpr WireField<15, 1> altitudeResolution{ADSBMessageField::ALT_RES, resolutionText};
constexpr FieldGroup fields{altitudeSource,       altitudeResolution, altitude,
                            cpr_layout::timeBit,  cpr_layout::format, cpr_layout::latitude,
                            cpr_layout::longitude};
constexpr FieldGroup antennaFields{singleAntenna};
constexpr FieldGroup supplementFields{nicSupplementB};

} // namespace layout

} // namespace

ADSBAirbornePositionMessage::ADSBAirbornePositionMessage() : ADSBMessage(POS_AIR) {}

bool ADSBAirbornePositionMessage::decodeImpl() {
    if (typeByCode(typeCode()) != POS_AIR) { // a subclass calls this without decode()
        return false;
    }
    PayloadAccess payload(*this);
    _altitudeSource = altitudeSourceOf(typeCode());
    const AltitudeCode code = squitterAltitudeCode(payload.read(layout::altitude));
    _altResolution = code.resolution;
    _altitude = code.feet;
    _timeApplicability = payload.read(cpr_layout::timeBit) != 0;
    _cprFormat = cpr_layout::formatOf(payload.read(cpr_layout::format));
    _cprLatitude = static_cast<i32>(payload.read(cpr_layout::latitude));
    _cprLongitude = static_cast<i32>(payload.read(cpr_layout::longitude));
    payload.list(layout::fields);
    return true;
}

std::string ADSBAirbornePositionMessage::description() const {
    return text::Line() << "TC=POS_AIR, AT=" << word<altitudeSourceTokens>(_altitudeSource)
                        << ", ALT=" << _altitude << ", CPR=" << word<cprFormatTokens>(_cprFormat)
                        << ", LAT=" << _cprLatitude << ", LON=" << _cprLongitude;
}

ADSBAirbornePositionMessageV0::ADSBAirbornePositionMessageV0() = default;

bool ADSBAirbornePositionMessageV0::decodeImpl() {
    if (!ADSBAirbornePositionMessage::decodeImpl()) {
        return false;
    }
    PayloadAccess payload(*this);
    _singalAntena = payload.read(layout::singleAntenna) != 0;
    payload.list(layout::antennaFields);
    return true;
}

ADSBAirbornePositionMessageV1::ADSBAirbornePositionMessageV1() = default;

bool ADSBAirbornePositionMessageV1::decodeImpl() {
    if (!ADSBAirbornePositionMessage::decodeImpl()) {
        return false;
    }
    PayloadAccess payload(*this);
    _singalAntena = payload.read(layout::singleAntenna) != 0;
    payload.list(layout::antennaFields);
    return true;
}

ADSBAirbornePositionMessageV2::ADSBAirbornePositionMessageV2() = default;

bool ADSBAirbornePositionMessageV2::decodeImpl() {
    if (!ADSBAirbornePositionMessage::decodeImpl()) {
        return false;
    }
    PayloadAccess payload(*this);
    _nicSupplementB = payload.read(layout::nicSupplementB) != 0;
    payload.list(layout::supplementFields);
    return true;
}

} // namespace tolvarin::ondrel
