// Surface position, type codes 5 to 8 (RTCA DO-260B, 2.2.3.2.4): ground speed as a movement code,
// heading and a compact position of the surface grid. The layout is the same in all versions.

#include <ondrel/adsb_surface_position_message.h>

#include <ondrel/log.h>

#include "shared_fields.h"
#include "text.h"
#include "wire_field.h"

#include <algorithm>
#include <array>

namespace tolvarin::ondrel {

namespace {

constexpr const char* moduleName = "ADSBGndPosMsg";

/// A run of movement codes (RTCA DO-260B, table 2-20): its first code has the speed `base`, each
/// further code one step more. Both are in knots. A code stands for a range of speeds, and the
/// table has its lower end. Only code 2 has the upper end of its range, 0 to 0.125 knots.
struct MovementRun {
    u8 firstCode;
    double step;
    double base; // knots
};

// 125 to 127 are reserved. Such a code gives speed 0 and a line in the log. The message is not
// refused, since its position can still be good.
constexpr u8 lastMovementCode = 124;

// From the highest codes down: the first run whose first code is not above a code holds it.
constexpr std::array<MovementRun, 10> movementRuns = {{
    {lastMovementCode + 1, 0, 0},
    {lastMovementCode, 0, 175.0}, // 175 knots or more
    {109, 5, 100.0},
    {94, 2, 70.0},
    {39, 1, 15.0},
    {13, 0.5, 2.0},
    {9, 0.25, 1.0},
    {3, 0.14583332, 0.125}, // nearly 7/48; the speeds depend on these digits, so they stay
    {2, 0, 0.125},
    {0, 0, 0}, // 0 has no movement information, 1 is stopped
}};

double speedOf(u8 movementCode) {
    const auto isIn = [movementCode](const MovementRun& run) {
        return movementCode >= run.firstCode;
    };
    const MovementRun& run = *std::find_if(movementRuns.begin(), movementRuns.end(), isIn);
    return (movementCode - run.firstCode) * run.step + run.base;
}

/// Degrees of a heading code: 128 steps of 2.8125 degrees.
double headingOf(u32 code) {
    return code * 360.0 / 128;
}

std::string speedText(u64 movementCode) {
    return text::fixed(speedOf(static_cast<u8>(movementCode)));
}

std::string headingText(u64 code) {
    return text::fixed(headingOf(static_cast<u32>(code)));
}

namespace layout {

constexpr WireField<5, 7> movementCode{ADSBMessageField::MOV_CODE};
constexpr WireField<5, 7> groundSpeed{ADSBMessageField::GND_SPD, speedText};
constexpr WireField<12, 1> headingStatus{ADSBMessageField::HDG_STATE};
constexpr WireField<13, 7> heading{ADSBMessageField::HDG, headingText};
constexpr FieldGroup motionFields{movementCode, groundSpeed, headingStatus};
constexpr FieldGroup headingFields{heading};

} // namespace layout

} // namespace

ADSBSurfacePositionMessage::ADSBSurfacePositionMessage() : ADSBMessage(POS_GND) {}

bool ADSBSurfacePositionMessage::decodeImpl() {
    PayloadAccess payload(*this);
    _movementCode = static_cast<u8>(payload.read(layout::movementCode));
    const bool reserved = _movementCode > lastMovementCode;
    if (reserved) {
        Log::log(Log::Critical, moduleName, "Reserved Movement Code: %u.", unsigned{_movementCode});
    }
    _movement = _movementCode != 0 && !reserved;
    _groundSpeed = speedOf(_movementCode);
    _headingValid = payload.read(layout::headingStatus) != 0;
    // Without a set status bit the heading bits mean nothing.
    const u32 headingCode = _headingValid ? payload.read(layout::heading) : 0;
    _heading = headingOf(headingCode);
    _timeApplicability = payload.read(cpr_layout::timeBit) != 0;
    _cprFormat = cpr_layout::formatOf(payload.read(cpr_layout::format));
    _cprLatitude = static_cast<i32>(payload.read(cpr_layout::latitude));
    _cprLongitude = static_cast<i32>(payload.read(cpr_layout::longitude));
    payload.list(layout::motionFields);
    payload.list(layout::headingFields, layout::heading.payloadWith(headingCode));
    payload.list(cpr_layout::fields);
    return true;
}

std::string ADSBSurfacePositionMessage::description() const {
    return text::Line() << "TC=POS_GND, SPD=" << _groundSpeed << ", HDG=" << _heading
                        << ", CPR=" << word<cprFormatTokens>(_cprFormat) << ", LAT=" << _cprLatitude
                        << ", LON=" << _cprLongitude;
}

} // namespace tolvarin::ondrel
