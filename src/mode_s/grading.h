/// @file
/// What recent replies have proved, and how far that makes the next reply believable.
///
/// Most replies overlay their address on their parity, so noise decodes into some address too. Two
/// tables tell replies from noise. One has the addresses that came in a frame with a good parity,
/// or through a reliable interrogator. The other has the interrogators whose all-call replies come
/// from such addresses. All times are whole seconds of the system clock.
#pragma once

#include <ondrel/mode_s_message.h>
#include <ondrel/types.h>

#include "proved_addresses.h"

#include <map>

namespace tolvarin::ondrel {

/// The two tables and the rules of grading. An entry that is too old counts as no entry. Entries
/// are never removed: there are at most 2^24 addresses and 80 interrogators. If memory runs out,
/// nothing is learnt.
class Grading {
public:
    using Seconds = ProvedAddresses::Seconds;

    /// Notes that the address has proved itself: a squitter with good parity carried it.
    void refresh(u32 address, Seconds now) { _icaoAddresses.set(address, now); }

    /// Grades a surveillance or Comm-B reply. It is High, and refreshes the address, if the address
    /// proved itself in the last 600 seconds; else it is Low.
    ModeSMessage::Confidence gradeByAddress(u32 address, Seconds now);

    /// Grades an all-call reply of a valid interrogator, 0 to 79. An interrogator is reliable from
    /// its tenth reply in a row on. A reply counts if its address is known, and it continues the
    /// row if it comes at most 60 seconds after the one before. A reliable interrogator makes
    /// unknown addresses known.
    ///
    /// For a known address the first reply of a row is Low, the second to ninth are Medium and all
    /// later ones High. With identifier 0 they are High from the second on. An unknown address is
    /// High through a reliable interrogator, and None otherwise.
    ModeSMessage::Confidence gradeAllCall(u32 address, u32 interrogator, Seconds now);

private:
    struct InterrogatorRecord {
        Seconds lastSeen = 0;
        u32 hitCount = 0; ///< replies in the current unbroken run
    };

    ProvedAddresses _icaoAddresses;
    std::map<u32, InterrogatorRecord> _interrogators;
};

} // namespace tolvarin::ondrel
