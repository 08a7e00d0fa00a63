// Simulated traffic through decoder and tracker: targets must have the values that were sent.
#include <ondrel/adsb_tracker.h>
#include <ondrel/mode_s_decoder.h>

#include "simulator/cpr_encoder.h"
#include "simulator/traffic.h"
#include "support/bytes.h"
#include "support/captured_log.h"
#include "support/movable_clock.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <utility>

namespace tolvarin::ondrel {
namespace {

using simulator::AircraftState;
using simulator::EmitterKind;
using simulator::Reply;
using simulator::TrafficOptions;
using test::CapturedLog;
using test::MovableClock;

/// Decoder and tracker, connected as in an application.
class Receiver {
public:
    Receiver() { _log.take(); }

    /// The target that took the reply in, or null.
    const ADSBTarget* hear(const Reply& reply) {
        _clock.advance(static_cast<std::int64_t>(reply.timeMs / 1000) - _clock.seconds());
        const std::unique_ptr<ModeSMessage> message(
            _decoder.decode(ModeSMessage::Downlink, reply.bytes, reply.timeMs));
        _decoderLines = _log.take();
        return _tracker.procModeSMsg(message.get());
    }

    /// Whether the last reply was a squitter that needed a repair.
    bool repaired() const {
        return std::any_of(_decoderLines.begin(), _decoderLines.end(), [](const auto& line) {
            return line.find("[ModeSDecoder] Fix ") != std::string::npos &&
                   line.find(" in DF-17 message at ") != std::string::npos;
        });
    }

    std::vector<ADSBTarget> targets() const { return _tracker.allTargets(); }

private:
    CapturedLog _log;
    MovableClock _clock;
    ModeSDecoder _decoder;
    ADSBTracker _tracker;
    test::Lines _decoderLines;
};

class RoundTrip {
public:
    void check(const TrafficOptions& options) {
        simulator::Traffic traffic(options);
        while (const auto reply = traffic.next()) {
            const unsigned format = static_cast<u8>(reply->sent.at(0)) >> 3U;
            const ADSBTarget* target = _receiver.hear(*reply);
            if (target == nullptr) {
                // An all-call reply, or one of an aircraft that has not sent a squitter yet.
                ASSERT_TRUE(format != 17) << "from aircraft " << reply->aircraft;
                continue;
            }
            ASSERT_EQ(target->icaoAddr(), reply->truth.address);
            ASSERT_EQ(target->lastUpdate(), reply->timeMs);
            if (format == 17) {
                checkSquitter(*target, reply->truth, reply->sent);
            } else if (format != 11) {
                checkReply(*target, reply->truth, format == 5 || format == 21);
            }
            _senders[reply->truth.address] = reply->truth;
        }
        checkTable();
    }

    std::map<std::string, unsigned> seen;

private:
    Receiver _receiver;
    std::map<u32, AircraftState> _senders;

    void checkReply(const ADSBTarget& target, const AircraftState& truth, bool isIdentity) {
        if (isIdentity) {
            EXPECT_EQ(target.squawk(), truth.squawk);
        } else {
            EXPECT_EQ(target.altitudeBaro(), truth.altitudeFt);
        }
        if (target.groundStatus() != ADSBTarget::GroundStatusUnknown) {
            EXPECT_EQ(target.groundStatus() == ADSBTarget::OnGround, truth.onGround);
        }
        ++seen[isIdentity ? "identity" : "altitude"];
    }

    void checkSquitter(const ADSBTarget& target, const AircraftState& truth,
                       const std::string& sent) {
        const unsigned typeCode = static_cast<u8>(sent.at(4)) >> 3U;
        if (typeCode <= 4) {
            EXPECT_EQ(target.callsign(), truth.callsign);
            EXPECT_EQ(target.emitterCategory(), truth.emitterCategory);
            ++seen["callsign"];
        } else if (typeCode == 19 && !truth.sendsAirSpeed) {
            checkVelocity(target, truth);
        } else if (typeCode == 31) {
            EXPECT_EQ(target.mopsVersion(), static_cast<MOPSVersion>(truth.mopsVersion));
            EXPECT_TRUE(target.mopsVersionConfirmed());
            ++seen["version " + std::to_string(truth.mopsVersion)];
        } else if (typeCode >= 9 && typeCode <= 22 && typeCode != 19) {
            EXPECT_EQ(target.altitudeBaro(),
                      truth.sendsGnssHeight ? truth.gnssHeightFt : truth.altitudeFt);
            EXPECT_EQ(target.groundStatus(), ADSBTarget::Airborne);
            if (target.positionLastUpdate() == target.lastUpdate()) {
                checkPosition(target, truth, test::bitOf(sent, 53));
            }
        }
    }

    void checkVelocity(const ADSBTarget& target, const AircraftState& truth) {
        const double degrees = std::atan2(truth.eastKt, truth.northKt) * 180 / std::acos(-1.0);
        EXPECT_NEAR(target.groundSpeed(), std::hypot(truth.eastKt, truth.northKt), 1e-9);
        EXPECT_NEAR(std::remainder(target.heading() - degrees, 360), 0, 1e-9);
        EXPECT_GE(target.heading(), 0);
        EXPECT_EQ(target.verticalRateBaroValid(), !truth.verticalRateSourceBit);
        EXPECT_EQ(target.verticalRateBaro(),
                  truth.verticalRateSourceBit ? 0 : truth.verticalRateFtMin);
        ++seen[truth.supersonic ? "supersonic" : "velocity"];
    }

    /// Within half a step of the grid, plus the sender's rounding.
    void checkPosition(const ADSBTarget& target, const AircraftState& truth, bool odd) {
        constexpr double halfStep = 0.5000005 / 131072;
        const int rows = odd ? 59 : 60;
        const int columns = simulator::longitudeZones(target.latitude()) - (odd ? 1 : 0);
        const double east = std::remainder(target.longitude() - truth.longitude, 360);
        EXPECT_NEAR(target.latitude(), truth.latitude, 360.0 / rows * halfStep);
        EXPECT_NEAR(east, 0, 360.0 / std::max(columns, 1) * halfStep) << truth.latitude;
        const double north = std::fabs(truth.latitude);
        ++seen[north > 87                           ? "pole"
               : north < 1                          ? "equator"
               : std::fabs(truth.longitude) > 179.5 ? "date line"
                                                    : "position"];
    }

    void checkTable() {
        for (const ADSBTarget& target : _receiver.targets()) {
            const AircraftState& truth = _senders.at(target.icaoAddr());
            ++seen["aircraft"];
            if (truth.kind != EmitterKind::Transponder) {
                EXPECT_EQ(target.callsign(), "");
                continue;
            }
            EXPECT_EQ(target.callsign(), truth.callsign);
            EXPECT_EQ(target.mopsVersion(), static_cast<MOPSVersion>(truth.mopsVersion));
            EXPECT_EQ(target.positionValid(), target.nucpValid());
        }
    }
};

TEST(RoundTrip, TargetsHaveTheValuesSentAllOverTheEarth) {
    TrafficOptions options;
    options.worldwide = true;
    options.aircraft = 150;
    options.seconds = 40;
    std::map<std::string, unsigned> seen;
    const auto check = [&seen](const TrafficOptions& where) {
        RoundTrip trip;
        trip.check(where);
        for (const auto& [what, count] : trip.seen) {
            seen[what] += count;
        }
    };
    check(options);
    options.worldwide = false;
    options.aircraft = 40;
    for (const auto& [latitude, longitude] :
         {std::pair(90, 0), std::pair(-90, 0), std::pair(87, 10), std::pair(-87, 180),
          std::pair(0, 0), std::pair(0, 180), std::pair(-35, -179), std::pair(60, -70)}) {
        options.centre = {static_cast<double>(latitude), static_cast<double>(longitude)};
        ++options.seed;
        check(options);
    }
    for (const char* what :
         {"aircraft", "altitude", "callsign", "date line", "equator", "identity", "pole",
          "position", "supersonic", "velocity", "version 1", "version 2"}) {
        EXPECT_GT(seen[what], 100U) << what;
    }
}

// A repair that finds the wrong bits makes an aircraft that does not exist.
TEST(RoundTrip, OnlyWrongRepairsMakeAircraftThatDoNotExist) {
    TrafficOptions options;
    options.aircraft = 150;
    options.seconds = 200;
    options.receptionShare = 0.7;
    options.damage = {0.02, 0.02, 0.4, 0.02, 0.4};
    Receiver receiver;
    simulator::Traffic traffic(options);
    std::set<u32> senders;
    std::map<u32, bool> repaired; // of each aircraft in the table: whether a repair made it
    int replies = 0;
    while (const auto reply = traffic.next()) {
        ++replies;
        if (const ADSBTarget* target = receiver.hear(*reply)) {
            repaired.emplace(target->icaoAddr(), receiver.repaired());
        }
        if (reply->damage != simulator::Damage::Noise) {
            senders.insert(reply->truth.address);
        }
    }
    int phantoms = 0;
    for (const auto& [address, byRepair] : repaired) {
        if (senders.count(address) == 0) {
            EXPECT_TRUE(byRepair) << address;
            ++phantoms;
        }
    }
    RecordProperty("replies", replies);
    RecordProperty("phantoms", phantoms);
    EXPECT_GT(phantoms, 0); // else the test would show nothing
    EXPECT_LT(phantoms, replies / 1000);
}

} // namespace
} // namespace tolvarin::ondrel
