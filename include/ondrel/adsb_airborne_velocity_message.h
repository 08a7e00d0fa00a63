/// @file
/// Airborne velocity, by MOPS version.
#pragma once

#include <ondrel/adsb_message.h>
#include <ondrel/export.h>
#include <ondrel/types.h>

#include <string>

namespace tolvarin::ondrel {

/// Airborne velocity, type code 19 (RTCA DO-260B, 2.2.3.2.6). The ground speed subtypes decode;
/// those of air speed are refused with a line in the log.
class ONDREL_EXPORT ADSBAirborneVelocityMessage : public ADSBMessage {
public:
    /// The subtype on the wire.
    enum AirborneVelocityType : i32 {
        GROUND_SPEED = 1,             ///< over ground, in steps of one knot
        GROUND_SPEED_SUPER_SONIC = 2, ///< over ground, in steps of four knots
        AIR_SPEED = 3,                ///< through the air; refused
        AIR_SPEED_SUPER_SONIC = 4,    ///< through the air, in steps of four knots; refused
    };

    /// The subtype of the last decode that found one of the four; `GROUND_SPEED` before.
    AirborneVelocityType velocityType() const { return _velocityType; }

    /// Knots, worked out from the two components; 0 when one of them is not available.
    double groundSpeed() const { return _groundSpeed; }

    /// The direction over ground in degrees clockwise from north, from 0 to below 360; 0 when the
    /// ground speed is 0.
    double heading() const { return _heading; }

    /// What the vertical rate is measured by: `Baro` for a source bit of 0, `Gnss` for 1. RTCA
    /// DO-260B assigns the bit the other way round.
    AltitudeSource verticalRateSource() const { return _verticalRateSource; }

    /// Feet per minute, positive upward, -32640 to 32640 in steps of 64; 0 when it is not
    /// available.
    i32 verticalRate() const { return _verticalRate; }

    /// Such as "TC=AIR_VEL, ST=GS, GS=159.201, HDG=182.88, VR=-832".
    std::string description() const override;

protected:
    /// A message with no data yet.
    ADSBAirborneVelocityMessage();

    bool decodeImpl() override;

private:
    AirborneVelocityType _velocityType = GROUND_SPEED;
    double _groundSpeed = 0;
    double _heading = 0;
    AltitudeSource _verticalRateSource = Baro;
    i32 _verticalRate = 0;
};

/// Airborne velocity of MOPS version 0.
class ONDREL_EXPORT ADSBAirborneVelocityMessageV0 : public ADSBAirborneVelocityMessage {
public:
    /// A message with no data yet.
    ADSBAirborneVelocityMessageV0();

    /// Navigation uncertainty category of the velocity, 0 to 7.
    u8 nucr() const { return _nucr; }

    /// The text of the base class with NUCr at its end, such as "..., VR=-832, NUCr=2".
    std::string description() const override;

protected:
    bool decodeImpl() override;

private:
    u8 _nucr = 0;
};

/// Airborne velocity of MOPS version 1.
class ONDREL_EXPORT ADSBAirborneVelocityMessageV1 : public ADSBAirborneVelocityMessage {
public:
    /// A message with no data yet.
    ADSBAirborneVelocityMessageV1();
};

} // namespace tolvarin::ondrel
