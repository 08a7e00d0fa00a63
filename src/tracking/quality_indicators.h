/// @file
/// What the type code of a position message says of the position's quality.
#pragma once

#include <ondrel/types.h>

namespace tolvarin::ondrel {

/// What is known of a NIC supplement bit.
enum class Supplement {
    Unknown,
    Clear,
    Set,
};

struct Supplements {
    Supplement a = Supplement::Unknown;
    Supplement b = Supplement::Unknown;
    Supplement c = Supplement::Unknown;
};

/// What belongs together: integrity of the position by each of the scales in use.
struct PositionQuality {
    u8 nucp = 0;
    u8 nic = 0;
    u8 pic = 0;
};

/// What an aircraft of MOPS version 0 leaves to be concluded besides.
struct PositionQualityV0 : PositionQuality {
    u8 nacp = 0;
    u8 sil = 0;
};

/// Zeros for a type code that says nothing.
PositionQualityV0 positionQualityV0(u8 typeCode);
PositionQuality positionQualityV1(u8 typeCode, const Supplements& supplements);
PositionQuality positionQualityV2(u8 typeCode, const Supplements& supplements);

} // namespace tolvarin::ondrel
