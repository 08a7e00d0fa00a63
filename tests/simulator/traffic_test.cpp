#include "simulator/frame_encoder.h"
#include "simulator/traffic.h"

#include "crowd.h"
#include "wire.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <bitset>
#include <map>
#include <set>
#include <string>
#include <utility>
#include <vector>

using namespace tolvarin::ondrel::simulator;

namespace {

std::size_t inverted(const std::string& a, const std::string& b) {
    std::size_t count = 0;
    for (std::size_t i = 0; i < a.size(); ++i) {
        count += std::bitset<8>(static_cast<unsigned char>(a[i] ^ b.at(i))).count();
    }
    return count;
}

TEST(Traffic, IsInOrderOfTimeAndEnds) {
    const std::uint64_t start = TrafficOptions().startMs;
    std::uint64_t last = start;
    for (const Reply& reply : crowd()) {
        ASSERT_GE(reply.timeMs, last);
        last = reply.timeMs;
    }
    EXPECT_LT(last, start + 120000);
    EXPECT_GT(last, start + 119900);
}

TEST(Traffic, HasEveryFormatAndPayload) {
    std::set<std::string> seen;
    for (const Reply& reply : crowd()) {
        seen.insert(kindOf(reply.sent));
    }
    for (const char* kind :
         {"DF0",       "DF4",       "DF5",       "DF11",      "DF16",      "DF20",    "DF21",
          "DF19 AF",   "DF17/1",    "DF17/3",    "DF17/4",    "DF17/7",    "DF17/9",  "DF17/10",
          "DF17/11",   "DF17/12",   "DF17/19.1", "DF17/19.2", "DF17/19.3", "DF17/22", "DF17/23",
          "DF17/28.1", "DF17/28.2", "DF17/29",   "DF17/31",   "DF18/2",    "DF18/11", "DF18/19.1",
          "DF19/4",    "DF19/11",   "DF19/19.1", "DF19/31"}) {
        EXPECT_EQ(seen.count(kind), 1U) << kind;
    }
}

bool fliesFullyEquipped(const AircraftState& truth) {
    return !truth.onGround && truth.kind == EmitterKind::Transponder && truth.mopsVersion == 2 &&
           truth.sendsTargetState;
}

TEST(Traffic, KeepsTheRatesOfTransponders) {
    std::map<std::size_t, std::map<std::string, double>> rates;
    std::set<std::size_t> others;
    for (const Reply& reply : crowd()) {
        rates[reply.aircraft][rhythmOf(reply)] += 1.0 / 120;
        if (!fliesFullyEquipped(reply.truth)) {
            others.insert(reply.aircraft);
        }
    }
    const struct {
        const char* rhythm;
        double least;
        double most;
    } rows[] = {{"even position", 0.95, 1.05},
                {"odd position", 0.95, 1.05},
                {"velocity", 1.9, 2.1},
                {"acquisition", 0.95, 1.05},
                {"identification", 0.18, 0.22},
                {"DF17/31", 0.38, 0.42},
                {"DF17/29", 0.78, 0.82},
                {"radar", 0.3, 7},
                {"air-air", 0, 1.05}};
    EXPECT_GT(rates.size() - others.size(), 20U);
    for (auto& [aircraft, perSecond] : rates) {
        for (const auto& row : rows) {
            if (others.count(aircraft) == 0) {
                EXPECT_GE(perSecond[row.rhythm], row.least) << row.rhythm;
                EXPECT_LE(perSecond[row.rhythm], row.most) << row.rhythm;
            }
        }
    }
}

TEST(Traffic, InterrogatorsAreValidAndDifferent) {
    TrafficOptions options;
    options.seconds = 25;
    options.interrogators = 64;
    std::set<unsigned> identifiers;
    for (const Reply& reply : all(options)) {
        if (kindOf(reply.sent) == "DF11") {
            identifiers.insert(parity(reply.sent) ^ wire::field(reply.sent, 32, 24));
        }
    }
    EXPECT_EQ(identifiers.size(), 65U) << "with the squitter's 0";
    EXPECT_LT(*identifiers.rbegin(), 80U);
    EXPECT_EQ(identifiers.count(16), 0U) << "no SI code";
}

TEST(Traffic, DamageHasTheSharesOfTheOptions) {
    TrafficOptions options;
    options.aircraft = 60;
    options.damage = {0.05, 0.04, 0.03, 0.02, 0.06};
    const std::vector<Reply> replies = all(options);
    std::map<Damage, double> shares;
    for (const Reply& reply : replies) {
        shares[reply.damage] += 1.0 / static_cast<double>(replies.size());
        const bool whole = reply.bytes.size() == reply.sent.size();
        const std::size_t wrong = whole ? inverted(reply.bytes, reply.sent) : 0;
        ASSERT_EQ(wrong == 0 && whole, reply.damage == Damage::None);
        ASSERT_EQ(wrong == 1, reply.damage == Damage::OneBit);
        ASSERT_EQ(wrong == 2, reply.damage == Damage::TwoBits);
        ASSERT_EQ(wrong >= 3, reply.damage == Damage::ManyBits);
        ASSERT_EQ(reply.bytes.size() < reply.sent.size(), reply.damage == Damage::Cut);
        ASSERT_EQ(reply.sent.empty(), reply.damage == Damage::Noise);
        ASSERT_EQ(reply.aircraft == Reply::noAircraft, reply.damage == Damage::Noise);
        ASSERT_FALSE(reply.bytes.empty());
    }
    EXPECT_NEAR(shares[Damage::OneBit], 0.05, 0.006);
    EXPECT_NEAR(shares[Damage::TwoBits], 0.04, 0.006);
    EXPECT_NEAR(shares[Damage::ManyBits], 0.03, 0.006);
    EXPECT_NEAR(shares[Damage::Cut], 0.02, 0.006);
    EXPECT_NEAR(shares[Damage::Noise], 0.06, 0.006);

    options.damage = {};
    options.receptionShare = 0.25;
    const double heard = static_cast<double>(all(options).size());
    EXPECT_NEAR(heard / static_cast<double>(replies.size()), 0.25, 0.02);
}

TEST(Traffic, ReceiversHearTheirPartsOfTheSameTraffic) {
    TrafficOptions options;
    options.aircraft = 60;
    options.receiver = {options.centre, 10800};         // hears all
    using Sent = std::pair<std::uint64_t, std::string>; // when, and what
    std::set<Sent> traffic;
    for (const Reply& reply : all(options)) {
        traffic.insert({reply.timeMs, reply.sent});
    }
    options.receptionShare = 0.5;
    options.damage.oneBit = 0.2;
    const double sent = static_cast<double>(traffic.size());
    std::vector<std::set<Sent>> heard;
    for (const GeoPoint place : {GeoPoint{50, 8}, GeoPoint{50, 9}}) {
        options.receiver = {place, 100};
        heard.emplace_back();
        for (const Reply& reply : all(options)) {
            ASSERT_EQ(traffic.count({reply.timeMs, reply.sent}), 1U);
            ASSERT_LE(distanceNm(place, {reply.truth.latitude, reply.truth.longitude}), 100);
            heard.back().insert({reply.timeMs, reply.sent});
        }
    }
    const auto both = std::count_if(heard[0].begin(), heard[0].end(),
                                    [&](const Sent& one) { return heard[1].count(one) == 1; });
    EXPECT_GT(both, sent / 20);
    EXPECT_LT(both, static_cast<double>(heard[0].size()) * 0.6) << "each has losses of its own";
}

TEST(Traffic, FleetHasTheAreaAndSharesOfTheOptions) {
    TrafficOptions options;
    options.aircraft = 2000;
    options.df18Share = 0.2;
    options.df19Share = 0.1;
    Random random(9);
    std::map<EmitterKind, int> kinds;
    std::set<std::uint32_t> addresses;
    for (const Aircraft& aircraft : makeFleet(options, random)) {
        const AircraftState state = aircraft.state();
        addresses.insert(state.address);
        ++kinds[state.kind];
        EXPECT_LE(distanceNm({state.latitude, state.longitude}, options.centre),
                  state.onGround ? 2.001 : 150.001);
    }
    EXPECT_EQ(addresses.size(), 2000U);
    EXPECT_NEAR(kinds[EmitterKind::Vehicle] + kinds[EmitterKind::GroundStation], 400, 60);
    EXPECT_NEAR(kinds[EmitterKind::Military], 200, 45);

    options.worldwide = true;
    int south = 0;
    int west = 0;
    for (const Aircraft& aircraft : makeFleet(options, random)) {
        south += aircraft.state().latitude < 0 ? 1 : 0;
        west += aircraft.state().longitude < 0 ? 1 : 0;
    }
    EXPECT_NEAR(south, 1000, 100);
    EXPECT_NEAR(west, 1000, 100);
}

} // namespace
