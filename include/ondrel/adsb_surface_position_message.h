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
    /// A message with no data yet.
    ADSBSurfacePositionMessage();

    /// The raw code, 0 to 127 (RTCA DO-260B, table 2-20). One above 124 is noted in the log.
    u8 movementCode() const { return _movementCode; }

    /// True for codes 1 to 124, which give a speed. Code 1 is a standstill.
    bool movement() const { return _movement; }

    /// Knots, 0 to 175: the lower end of the range that the code stands for.
    double groundSpeed() const { return _groundSpeed; }

    /// The status bit of the heading.
    bool headingValid() const { return _headingValid; }

    /// Degrees clockwise from north, 0 to 357.1875 in steps of 2.8125; 0 when it is not valid.
    double heading() const { return _heading; }

    /// Whether the position is that of a UTC 0.2 second epoch.
    bool timeApplicability() const { return _timeApplicability; }

    /// The zone grid of the position; `Odd` before a decode.
    CPRFormat cprFormat() const { return _cprFormat; }

    /// The raw value of the compact position report, 0 to 131071: a fraction of a zone in steps of
    /// 1/131072 (RTCA DO-260B, A.1.7). The library does not work out positions on the ground.
    ///@{
    i32 cprLatitude() const { return _cprLatitude; }
    i32 cprLongitude() const { return _cprLongitude; }
    ///@}

    /// Such as "TC=POS_GND, SPD=17, HDG=92.8125, CPR=EVEN, LAT=57500, LON=80000".
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
