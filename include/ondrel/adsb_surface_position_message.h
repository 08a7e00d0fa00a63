/// @file
/// Surface position.
#pragma once

#include <ondrel/adsb_message.h>
#include <ondrel/export.h>
#include <ondrel/types.h>

#include <string>

namespace tolvarin::ondrel {

/// Surface position, type codes 5 to 8 (RTCA DO-260B, 2.2.3.2.4).
class ONDREL_EXPORT ADSBSurfacePositionMessage : public ADSBMessage {
public:
    ADSBSurfacePositionMessage();

    /// The raw code, 0 to 127.
    u8 movementCode() const { return _movementCode; }

    /// Whether the code tells a speed, a stand still included: 1 to 124.
    bool movement() const { return _movement; }

    /// Knots, 0 to 175: the lower end of the range that the code stands for.
    double groundSpeed() const { return _groundSpeed; }

    bool headingValid() const { return _headingValid; }

    /// Degrees clockwise from north, 0 to 357.1875; 0 when it is not valid.
    double heading() const { return _heading; }

    /// Whether the position is that of a UTC 0.2 second epoch.
    bool timeApplicability() const { return _timeApplicability; }

    CPRFormat cprFormat() const { return _cprFormat; }

    /// The raw 17-bit values of the compact position report.
    i32 cprLatitude() const { return _cprLatitude; }
    i32 cprLongitude() const { return _cprLongitude; }

    std::string description() const override;

protected:
    bool decodeImpl() override;

private:
    u8 _movementCode = 0;
    bool _movement = false;
    double _groundSpeed = 0;
    bool _headingValid = false;
    double _heading = 0;
    bool _timeApplicability = false;
    CPRFormat _cprFormat = Odd;
    i32 _cprLatitude = 0;
    i32 _cprLongitude = 0;
};

} // namespace tolvarin::ondrel
