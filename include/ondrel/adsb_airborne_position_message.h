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
    AltitudeSource altitudeSource() const { return _altitudeSource; }

    AltitudeResolution altResolution() const { return _altResolution; }

    /// Feet, -1000 to 203700: a plain count of the resolution.
    i32 altitude() const { return _altitude; }

    /// Whether the position is that of a UTC 0.2 second epoch.
    bool timeApplicability() const { return _timeApplicability; }

    CPRFormat cprFormat() const { return _cprFormat; }

    /// The raw 17-bit values of the compact position report.
    i32 cprLatitude() const { return _cprLatitude; }
    i32 cprLongitude() const { return _cprLongitude; }

    std::string description() const override;

protected:
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
    ADSBAirbornePositionMessageV0();

    /// The single antenna flag.
    bool singalAntena() const { return _singalAntena; }

protected:
    bool decodeImpl() override;

private:
    bool _singalAntena = false;
};

/// Airborne position of MOPS version 1.
class ONDREL_EXPORT ADSBAirbornePositionMessageV1 : public ADSBAirbornePositionMessage {
public:
    ADSBAirbornePositionMessageV1();

    /// The single antenna flag.
    bool singalAntena() const { return _singalAntena; }

protected:
    bool decodeImpl() override;

private:
    bool _singalAntena = false;
};

/// Airborne position of MOPS version 2.
class ONDREL_EXPORT ADSBAirbornePositionMessageV2 : public ADSBAirbornePositionMessage {
public:
    ADSBAirbornePositionMessageV2();

    bool nicSupplementB() const { return _nicSupplementB; }

protected:
    bool decodeImpl() override;

private:
    bool _nicSupplementB = false;
};

} // namespace tolvarin::ondrel
