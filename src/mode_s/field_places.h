/// @file
/// Where fields stand in a frame (ICAO Annex 10 Volume IV, 3.1.2.3.2). A place is the number of
/// bits ahead of the field, so it is one less than the bit number in the standard.
#pragma once

#include <ondrel/mode_s_fields.h>
#include <ondrel/types.h>

#include "parity.h"

#include <type_traits>

namespace tolvarin::ondrel::place {

constexpr u8 status = 5;        ///< AF, CA, CF, FS, VS
constexpr u8 address = 8;       ///< AA
constexpr u8 code = 19;         ///< AC, ID
constexpr u8 payload = 32;      ///< MB, ME, MV
constexpr u8 shortOverlay = 32; ///< AP, PI of a short message
constexpr u8 longOverlay = 88;  ///< AP, PI of a long message

template <class Field, class... Others>
constexpr bool isOneOf = (std::is_same_v<Field, Others> || ...);

/// The place of a field in a frame of `frameBits`. It is the same in all formats that have the
/// field; only AP and PI, which end the frame, depend on the length. A new field class without a
/// place does not compile.
template <class Field>
constexpr u8 of(u8 frameBits) {
    if constexpr (isOneOf<Field, ModeSMessageFieldAA>) {
        return address;
    } else if constexpr (isOneOf<Field, ModeSMessageFieldAC, ModeSMessageFieldID>) {
        return code;
    } else if constexpr (isOneOf<Field, ModeSMessageFieldMB, ModeSMessageFieldME,
                                 ModeSMessageFieldMV>) {
        return payload;
    } else if constexpr (isOneOf<Field, ModeSMessageFieldAP, ModeSMessageFieldPI>) {
        return frameBits == parity::longBits ? longOverlay : shortOverlay;
    } else {
        static_assert(isOneOf<Field, ModeSMessageFieldAF, ModeSMessageFieldCA, ModeSMessageFieldCF,
                              ModeSMessageFieldFS, ModeSMessageFieldVS>);
        return status;
    }
}

} // namespace tolvarin::ondrel::place
