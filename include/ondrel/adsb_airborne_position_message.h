/// @file
/// Airborne position, by MOPS version.
#pragma once

#include <ondrel/adsb_message.h>
#include <ondrel/export.h>
#include <ondrel/types.h>

#include <string>

namespace tolvarin::ondrel {

/// Airborne position, type codes 9 to 18 and 20 to 22 (RTCA DO-260B, 2.2.3.2.3). Built as one of
/// the three classes below, which differ in the meaning of one bit.
class ONDREL_EXPORT ADSBAirbornePositionMessage : public ADSBMessage {
public:
    /// `Baro` for type codes 9 to 18, `Gnss` for 20 to 22.
    AltitudeSource altitudeSource() const { return _altitudeSource; }

    /// The step that the Q bit announces.
    AltitudeResolution altResolution() const { return _altResolution; }

    /// Feet, -1000 to 203700: a plain count of the resolution, whatever the source.
    i32 altitude() const { return _altitude; }

    /// Whether the position is that of a UTC 0.2 second epoch.
    bool timeApplicability() const { return _timeApplicability; }

    /// The zone grid of the position; `Odd` before a decode. One message of each format gives a
    /// position.
    CPRFormat cprFormat() const { return _cprFormat; }

    /// The raw value of the compact position report, 0 to 131071: a fraction of a zone in steps of
    /// 1/131072 (RTCA DO-260B, A.1.7).
    ///@{
    i32 cprLatitude() const { return _cprLatitude; }
    i32 cprLongitude() const { return _cprLongitude; }
    ///@}

    /// Such as "TC=POS_AIR, AT=BARO, ALT=38000, CPR=EVEN, LAT=93000, LON=51372".
    std::string description() const override;

protected:
    /// A message with no data yet.
    ADSBAirbornePositionMessage();

    bool decodeImpl() override;

private:
    AltitudeSource _altitudeSource = Baro;
    AltitudeResolution _altResolution = Resolution25Ft;
    i32 _altitude = 0;
    bool _timeApplicability = false;
    CPRFormat _cprFormat = Odd;
    i32 _cprLatitude = 0;
    i32 _cprLongitude = 0;
};

/// Airborne position of MOPS version 0.
class ONDREL_EXPORT ADSBAirbornePositionMessageV0 : public ADSBAirbornePositionMessage {
public:
    /// A message with no data yet.
    ADSBAirbornePositionMessageV0();

    /// The single antenna flag: true when the aircraft sends from one antenna only.
    bool singalAntena() const { return _singalAntena; }

protected:
    bool decodeImpl() override;

private:
    bool _singalAntena = false;
};

/// Airborne position of MOPS version 1.
class ONDREL_EXPORT ADSBAirbornePositionMessageV1 : public ADSBAirbornePositionMessage {
public:
    /// A message with no data yet.
    ADSBAirbornePositionMessageV1();

    /// The single antenna flag: true when the aircraft sends from one antenna only.
    bool singalAntena() const { return _singalAntena; }

protected:
    bool decodeImpl() override;

private:
    bool _singalAntena = false;
};

/// Airborne position of MOPS version 2.
class ONDREL_EXPORT ADSBAirbornePositionMessageV2 : public ADSBAirbornePositionMessage {
public:
    /// A message with no data yet.
    ADSBAirbornePositionMessageV2();

    /// NIC supplement B. With the type code it gives the navigation integrity category.
    bool nicSupplementB() const { return _nicSupplementB; }

protected:
    bool decodeImpl() override;

private:
    bool _nicSupplementB = false;
};

} // namespace tolvarin::ondrel
