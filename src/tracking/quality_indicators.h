/// @file
/// The quality of a position, as the type code of its message tells it. From MOPS version 1 on one
/// type code can stand for several radii, and NIC supplement bits of this and other messages tell
/// which.
#pragma once

#include <ondrel/types.h>

namespace tolvarin::ondrel {

/// What is known of a NIC supplement bit. Unknown until the first message that has it.
enum class Supplement {
    Unknown,
    Clear,
    Set,
};

struct Supplements {
    Supplement a = Supplement::Unknown; ///< of the operational status message
    Supplement b = Supplement::Unknown; ///< of the airborne position message of version 2
    Supplement c = Supplement::Unknown; ///< of the operational status message on the ground
};

/// The containment radius of a position, as a category on each of the three scales. The three
/// belong together, so one row of a table has them all.
struct PositionQuality {
    u8 nucp = 0;
    u8 nic = 0;
    u8 pic = 0;
};

/// At MOPS version 0 no message has NACp (accuracy) and SIL (how sure the radius is), so the type
/// code stands for these two as well.
struct PositionQualityV0 : PositionQuality {
    u8 nacp = 0;
    u8 sil = 0;
};

// Each gives zeros for a type code without a row, such as 18, 22 and the codes of other messages.

PositionQualityV0 positionQualityV0(u8 typeCode);
PositionQuality positionQualityV1(u8 typeCode, const Supplements& supplements);
PositionQuality positionQualityV2(u8 typeCode, const Supplements& supplements);

} // namespace tolvarin::ondrel
