#include <ondrel/adsb_airborne_position_message.h>

#include "cpr_fields.h"
#include "surveillance_codes.h"
#include "tokens.h"
#include "wire_field.h"

namespace tolvarin::ondrel {

namespace {

namespace layout {

constexpr WireField<0, 5> altitudeSource{ADSBMessageField::ALT_SRC}; // told by the type code
constexpr WireField<7, 1> singleAntenna{ADSBMessageField::SAF};
constexpr WireField<7, 1> nicSupplementB{ADSBMessageField::NIC_SUPP_B};
constexpr WireField<8, 12> altitude{ADSBMessageField::ALT};
constexpr WireField<15, 1> altitudeResolution{ADSBMessageField::ALT_RES}; // the Q bit within it

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
    if (isBetween(typeCode(), firstBaroTypeCode, lastBaroTypeCode)) {
        _altitudeSource = Baro;
    } else if (isBetween(typeCode(), firstGnssTypeCode, lastGnssTypeCode)) {
        _altitudeSource = Gnss;
    } else {
        return false;
    }
    addField(layout::altitudeSource.shown(altitudeSourceText(_altitudeSource)));

    const AltitudeCode code = squitterAltitudeCode(layout::altitude.read(data()));
    _altResolution = code.resolution;
    addField(layout::altitudeResolution.shown(_altResolution == Resolution25Ft ? "25FT" : "100FT"));
    _altitude = code.feet;
    addField(layout::altitude.shown(std::to_string(_altitude) + "FT"));

    _timeApplicability = addDecimal(cpr_layout::timeBit) != 0;
    _cprFormat = cpr_layout::format.read(data()) == 0 ? Even : Odd;
    addField(cpr_layout::format.shown(cprFormatText(_cprFormat)));
    _cprLatitude = static_cast<i32>(addDecimal(cpr_layout::latitude));
    _cprLongitude = static_cast<i32>(addDecimal(cpr_layout::longitude));
    return true;
}

std::string ADSBAirbornePositionMessage::description() const {
    return std::string("TC=POS_AIR, AT=") + altitudeSourceText(_altitudeSource) +
           ", ALT=" + std::to_string(_altitude) + ", CPR=" + cprFormatText(_cprFormat) +
           ", LAT=" + std::to_string(_cprLatitude) + ", LON=" + std::to_string(_cprLongitude);
}

ADSBAirbornePositionMessageV0::ADSBAirbornePositionMessageV0() = default;

bool ADSBAirbornePositionMessageV0::decodeImpl() {
    if (!ADSBAirbornePositionMessage::decodeImpl()) {
        return false;
    }
    _singalAntena = addDecimal(layout::singleAntenna) != 0;
    return true;
}

ADSBAirbornePositionMessageV1::ADSBAirbornePositionMessageV1() = default;

bool ADSBAirbornePositionMessageV1::decodeImpl() {
    if (!ADSBAirbornePositionMessage::decodeImpl()) {
        return false;
    }
    _singalAntena = addDecimal(layout::singleAntenna) != 0;
    return true;
}

ADSBAirbornePositionMessageV2::ADSBAirbornePositionMessageV2() = default;

bool ADSBAirbornePositionMessageV2::decodeImpl() {
    if (!ADSBAirbornePositionMessage::decodeImpl()) {
        return false;
    }
    _nicSupplementB = addDecimal(layout::nicSupplementB) != 0;
    return true;
}

} // namespace tolvarin::ondrel
