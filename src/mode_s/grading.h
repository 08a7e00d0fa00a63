/// @file
/// What recent replies have proved, and how far that makes the next reply believable.
///
/// Most replies overlay their address on their parity, so noise decodes into some address too. Two
/// tables tell replies from noise: addresses that were received in a frame whose parity holds, and
/// interrogators whose all-call replies come from such addresses. All times are whole seconds of
/// the system clock.
#pragma once

#include <ondrel/mode_s_message.h>
#include <ondrel/types.h>

#include "address_table.h"

#include <cstdint>
#include <map>

namespace tolvarin::ondrel {

/// The two tables and the rules of grading. An entry that is too old counts as no entry. Entries
/// are never removed: there are at most 2^24 addresses and 80 interrogators.
class Grading {
public:
    using Seconds = std::int64_t;

    /// Notes that the address has proved itself: a squitter with good parity carried it.
    void refresh(u32 address, Seconds now) { _icaoAddresses[address] = now; }

    /// Grades a surveillance or Comm-B reply. It is High, and refreshes the address, if the address
    /// proved itself in the last 600 seconds; else it is Low.
    ModeSMessage::Confidence gradeByAddress(u32 address, Seconds now);

    /// Grades an all-call reply of a valid interrogator, 0 to 79. Known addresses make an
    /// interrogator reliable: with its tenth reply from known addresses in a row, none more than 60
    /// seconds after the one before. A reliable interrogator makes unknown addresses known.
    ModeSMessage::Confidence gradeAllCall(u32 address, u32 interrogator, Seconds now);

private:
    struct InterrogatorRecord {
        Seconds lastSeen = 0;
        u32 hitCount = 0; ///< replies in the current unbroken run
    };

    AddressTable<Seconds> _icaoAddresses; ///< the second in which each address last proved itself
    std::map<u32, InterrogatorRecord> _interrogators;
};

} // namespace tolvarin::ondrel
