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
        GROUND_SPEED = 1,
        GROUND_SPEED_SUPER_SONIC = 2,
        AIR_SPEED = 3,
        AIR_SPEED_SUPER_SONIC = 4,
    };

    AirborneVelocityType velocityType() const { return _velocityType; }

    /// Knots; 0 when one of the two components is not available.
    double groundSpeed() const { return _groundSpeed; }

    /// Degrees clockwise from north, from 0 to below 360; 0 when the ground speed is 0.
    double heading() const { return _heading; }

    AltitudeSource verticalRateSource() const { return _verticalRateSource; }

    /// Feet per minute, positive upward; 0 when it is not available.
    i32 verticalRate() const { return _verticalRate; }

    std::string description() const override;

protected:
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
    ADSBAirborneVelocityMessageV0();

    /// Navigation uncertainty category of the velocity, 0 to 7.
    u8 nucr() const { return _nucr; }

    std::string description() const override;

protected:
    bool decodeImpl() override;

private:
    u8 _nucr = 0;
};

/// Airborne velocity of MOPS version 1.
class ONDREL_EXPORT ADSBAirborneVelocityMessageV1 : public ADSBAirborneVelocityMessage {
public:
    ADSBAirborneVelocityMessageV1();
};

} // namespace tolvarin::ondrel
