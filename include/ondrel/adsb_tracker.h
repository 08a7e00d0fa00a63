/// @file
/// The table of aircraft.
#pragma once

#include <ondrel/adsb_airborne_position_message.h>
#include <ondrel/adsb_airborne_velocity_message.h>
#include <ondrel/adsb_aircraft_operational_status_message.h>
#include <ondrel/adsb_decoder.h>
#include <ondrel/adsb_identity_message.h>
#include <ondrel/adsb_target.h>
#include <ondrel/adsb_target_report.h>
#include <ondrel/df_messages.h>
#include <ondrel/export.h>
#include <ondrel/types.h>

#include <memory>
#include <string>
#include <vector>

namespace tolvarin::ondrel {

class TargetTable;

/// Takes decoded messages into a table with one target for each aircraft, and uses those that
/// ModeSDecoder graded high enough. At most 4095 aircraft, each with a track number of its own.
///
/// The tracker has no clock: times come with messages and calls, in milliseconds since 1970-01-01
/// UTC, and nothing expires by itself. It keeps no pointer to a message. A tracker belongs to one
/// thread at a time, together with its copies: copies share their targets.
///
/// Only exhausted memory throws. A message or report that it interrupts can be taken in part, but
/// each datum whole: with its times it is as it was, or as after the call, and so is the number of
/// the target. Every other operation that it interrupts changes nothing. Lines that are in the log
/// stay.
class ONDREL_EXPORT ADSBTracker {
public:
    /// A tracker without targets, its altitude check off. Writes two lines to the log.
    ADSBTracker();

    /// A copy has its own table, which shares the targets of the other tracker: a message that one
    /// of the two processes shows in both. Settings and the next track number are copied.
    ///@{
    ADSBTracker(const ADSBTracker&);
    ADSBTracker& operator=(const ADSBTracker&);
    ///@}

    /// Takes over the targets and copies the settings. The other tracker is left with an empty
    /// table.
    ///@{
    ADSBTracker(ADSBTracker&&) noexcept;
    ADSBTracker& operator=(ADSBTracker&&) noexcept;
    ///@}

    /// Destroys the targets, except those that a copy of the tracker still holds.
    ~ADSBTracker();

    /// Takes a message into the target of its address, which it makes if there is none. It
    /// believes DF-0, 4, 5, 11, 16, 20 and 21 from ModeSMessage::Medium on, and DF-17 with
    /// ModeSMessage::High only. A DF-11 makes no target.
    ///
    /// Gives the target, which belongs to the tracker and lives until it leaves the table. Gives
    /// null and changes nothing for a null message, an uplink, another format (a line in the log),
    /// a confidence too low, a DF-11 of an address that is not in the table, and a new address when
    /// the table is full. A DF-17 whose payload does not decode still sets last update and signal
    /// amplitude.
    const ADSBTarget* procModeSMsg(const ModeSMessage* message);

    /// Takes a report into the target of its address, which it makes if there is none. The report
    /// wins over what the target holds, older or not, and its track number is not checked against
    /// other targets. A datum is taken over if its flag is set; the altitude check applies. Quality
    /// indicators, MOPS version, SPI and alert are not taken over.
    ///
    /// Gives the target, which belongs to the tracker and lives until it leaves the table. Gives
    /// null and changes nothing for a null report, a report that is not valid, and a new address
    /// when the table is full.
    const ADSBTarget* procTargetReport(const ADSBTargetReport* report);

    /// Decodes an ME field by the MOPS version of the target of that address, or by version 0 when
    /// there is none. Gives a new message, which the caller owns and deletes, or null for what
    /// ADSBDecoder::decode refuses. No target changes.
    ADSBMessage* decodeADSBMsg(u32 icaoAddress, const std::string& data) const;

    /// Sets the altitude check: off at the start, with 4 seconds and 150 feet. When it is on, an
    /// altitude less than `seconds` after the last one accepted is believed only if it lies at most
    /// `limit` feet from it. More than 4294967 seconds wrap around. reset() leaves these values.
    void setAltituteBaroChecking(bool enabled, u32 seconds, u32 limit);

    /// Copies of all targets, in ascending order of address; so are all lists below.
    std::vector<ADSBTarget> allTargets() const;

    /// Copies of the targets whose last update is above `from` and, where it is given, at most
    /// `to`: calls with (a, b) and (b, c) miss no update and see none twice.
    ///@{
    std::vector<ADSBTarget> allTargetsSince(u64 from);
    std::vector<ADSBTarget> allTargetsSince(u64 from, u64 to);
    ///@}

    /// Removes every target whose last update is at most `time`; gives copies of them. Writes a
    /// line for each to the log. Pointers to these targets are no longer valid.
    std::vector<ADSBTarget> killTargets(u64 time);

    /// Empties the table and numbers from 1 again. The altitude check stays as set. Pointers to
    /// targets are no longer valid.
    void reset();

private:
    struct Steps; // steps of the processing that have no place in the interface

    ONDREL_HIDDEN ADSBTarget* createTarget(u32 icaoAddress);
    ONDREL_HIDDEN ADSBTarget* findTarget(u32 icaoAddress) const;
    ONDREL_HIDDEN const ADSBTarget* findConstTarget(u32 icaoAddress) const;
    ONDREL_HIDDEN u32 getNextTrackId();

    ONDREL_HIDDEN const ADSBTarget* procDFMsg(const DFMessage* message);
    ONDREL_HIDDEN const ADSBTarget* procDF0Msg(const DF0Message* message);
    ONDREL_HIDDEN const ADSBTarget* procDF4Msg(const DF4Message* message);
    ONDREL_HIDDEN const ADSBTarget* procDF5Msg(const DF5Message* message);
    ONDREL_HIDDEN const ADSBTarget* procDF11Msg(const DF11Message* message);
    ONDREL_HIDDEN const ADSBTarget* procDF16Msg(const DF16Message* message);
    ONDREL_HIDDEN const ADSBTarget* procDF17Msg(const DF17Message* message);
    ONDREL_HIDDEN const ADSBTarget* procDF20Msg(const DF20Message* message);
    ONDREL_HIDDEN const ADSBTarget* procDF21Msg(const DF21Message* message);
    ONDREL_HIDDEN bool updateTargetAltituteBaro(ADSBTarget* target, i32 altitude, u64 time) const;

    ONDREL_HIDDEN static void procADSBIdentificationMsg(ADSBTarget* target,
                                                        const ADSBIdentityMessage* message);
    ONDREL_HIDDEN void procADSBAirbornePositionMsg(ADSBTarget* target,
                                                   const ADSBAirbornePositionMessage* message);
    ONDREL_HIDDEN static void
    procADSBAirbornePositionMsgV2(ADSBTarget* target, const ADSBAirbornePositionMessageV2* message);
    ONDREL_HIDDEN static void
    procADSBAirborneVelocityMsg(ADSBTarget* target, const ADSBAirborneVelocityMessage* message);
    ONDREL_HIDDEN static void
    procADSBAirborneVelocityMsgV0(ADSBTarget* target, const ADSBAirborneVelocityMessageV0* message);
    ONDREL_HIDDEN static void
    procADSBAircraftOperationalStatusMsg(ADSBTarget* target,
                                         const ADSBAircraftOperationalStatusMessage* message);

    ADSBDecoder _decoder;
    std::unique_ptr<TargetTable> _targets; ///< null: the table is empty
    u32 _nextTrackId;
    bool _altitudeBaroChecking = false;
    u32 _altitudeBaroCheckingSeconds = 4;
    u32 _altitudeBaroCheckingLimit = 150;
};

} // namespace tolvarin::ondrel
