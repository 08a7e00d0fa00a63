// Airborne position, type codes 9 to 18 and 20 to 22 (RTCA DO-260B, 2.2.3.2.3). The versions differ
// in one bit, so a common base class reads everything else. Type code 0, a position message without
// a position, is reserved here.

#include <ondrel/adsb_airborne_position_message.h>

#include "shared_fields.h"
#include "surveillance_codes.h"
#include "wire_field.h"

namespace tolvarin::ondrel {

namespace {

std::string feetText(std::int64_t feet) {
    return decimal(feet) + "FT";
}

namespace layout {

// The type code tells the source of the altitude.
constexpr ShownField<0, 5> altitudeSource{ADSBMessageField::ALT_SRC, token<altitudeSourceTokens>};
// One bit with two meanings: single antenna in versions 0 and 1, NIC supplement B in version 2.
constexpr WireField<7, 1> singleAntenna{ADSBMessageField::SAF};
constexpr WireField<7, 1> nicSupplementB{ADSBMessageField::NIC_SUPP_B};
constexpr ShownField<8, 12> altitude{ADSBMessageField::ALT, feetText};
// The Q bit of the altitude.
constexpr ShownField<15, 1> altitudeResolution{ADSBMessageField::ALT_RES, feetText};

} // namespace layout

constexpr u8 firstBaroTypeCode = 9;
constexpr u8 lastBaroTypeCode = 18;
constexpr u8 firstGnssTypeCode = 20;
constexpr u8 lastGnssTypeCode = 22;

constexpr bool isBetween(u8 value, u8 first, u8 last) {
    return value >= first && value <= last;
}

} // namespace

ADSBAirbornePositionMessage::ADSBAirbornePositionMessage() : ADSBMessage(POS_AIR) {}

bool ADSBAirbornePositionMessage::decodeImpl() {
    FieldWriter writer(*this);
    if (isBetween(typeCode(), firstBaroTypeCode, lastBaroTypeCode)) {
        _altitudeSource = Baro;
    } else if (isBetween(typeCode(), firstGnssTypeCode, lastGnssTypeCode)) {
        _altitudeSource = Gnss;
    } else { // not behind decode(), which has tested the type code
        return false;
    }
    writer.show(layout::altitudeSource, _altitudeSource);

    const AltitudeCode code = squitterAltitudeCode(layout::altitude.read(data()));
    _altResolution = code.resolution;
    writer.show(layout::altitudeResolution, _altResolution);
    _altitude = code.feet;
    writer.show(layout::altitude, _altitude);

    _timeApplicability = writer.take(cpr_layout::timeBit) != 0;
    _cprFormat = cpr_layout::formatOf(cpr_layout::format.read(data()));
    writer.show(cpr_layout::format, _cprFormat);
    _cprLatitude = static_cast<i32>(writer.take(cpr_layout::latitude));
    _cprLongitude = static_cast<i32>(writer.take(cpr_layout::longitude));
    return true;
}

std::string ADSBAirbornePositionMessage::description() const {
    return "TC=POS_AIR, AT=" + token<altitudeSourceTokens>(_altitudeSource) +
           ", ALT=" + std::to_string(_altitude) + ", CPR=" + token<cprFormatTokens>(_cprFormat) +
           ", LAT=" + std::to_string(_cprLatitude) + ", LON=" + std::to_string(_cprLongitude);
}

ADSBAirbornePositionMessageV0::ADSBAirbornePositionMessageV0() = default;

bool ADSBAirbornePositionMessageV0::decodeImpl() {
    if (!ADSBAirbornePositionMessage::decodeImpl()) {
        return false;
    }
    FieldWriter writer(*this);
    _singalAntena = writer.take(layout::singleAntenna) != 0;
    return true;
}

ADSBAirbornePositionMessageV1::ADSBAirbornePositionMessageV1() = default;

bool ADSBAirbornePositionMessageV1::decodeImpl() {
    if (!ADSBAirbornePositionMessage::decodeImpl()) {
        return false;
    }
    FieldWriter writer(*this);
    _singalAntena = writer.take(layout::singleAntenna) != 0;
    return true;
}

ADSBAirbornePositionMessageV2::ADSBAirbornePositionMessageV2() = default;

bool ADSBAirbornePositionMessageV2::decodeImpl() {
    if (!ADSBAirbornePositionMessage::decodeImpl()) {
        return false;
    }
    FieldWriter writer(*this);
    _nicSupplementB = writer.take(layout::nicSupplementB) != 0;
    return true;
}

} // namespace tolvarin::ondrel
