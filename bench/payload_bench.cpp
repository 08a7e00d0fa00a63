// Decoding of each kind of ADS-B payload.

#include "compare.h"
#include "floor.h"

#include <ondrel/adsb_airborne_position_message.h>
#include <ondrel/adsb_airborne_velocity_message.h>
#include <ondrel/adsb_aircraft_operational_status_message.h>
#include <ondrel/adsb_aircraft_status_message.h>
#include <ondrel/adsb_decoder.h>
#include <ondrel/adsb_identity_message.h>
#include <ondrel/adsb_surface_position_message.h>
#include <ondrel/adsb_target_status_message.h>
#include <ondrel/adsb_test_message.h>

#include "simulator/bit_writer.h"

#include <array>
#include <cstddef>
#include <memory>
#include <random>
#include <string>
#include <tuple>
#include <vector>

namespace tolvarin::ondrel::bench {
namespace {

const InTable payloads({"payload", "Decoding of the payload of an extended squitter.",
                        "memory for one message, and the values of the payload; no list of its "
                        "fields."});

/// Random payloads of the type code and subtype, so that the processor cannot learn the values.
std::vector<std::string> makePayloads(unsigned typeCode, unsigned subtypeBits, unsigned subtype) {
    std::mt19937_64 random(3); // NOLINT(cert-msc*): every run measures the same
    std::vector<std::string> all(4096);
    for (std::string& payload : all) {
        simulator::BitWriter writer(7);
        writer.put(0, 56, random()).put(0, 5, typeCode).put(5, subtypeBits, subtype);
        payload = writer.bytes();
    }
    return all;
}

/// `values` reads the values of a payload for the floor.
template <class Message, class Values>
void add(const char* name, MOPSVersion version, const std::vector<std::string>& all,
         Values values) {
    struct alignas(Message) Block {
        std::array<std::byte, sizeof(Message)> bytes; // not initialised
    };
    const auto measure = [=](benchmark::State& state) {
        const ADSBDecoder decoder;
        const auto decoded = [&](std::size_t i) {
            return std::unique_ptr<ADSBMessage>(decoder.decode(version, all[i]));
        };
        if (dynamic_cast<const Message*>(decoded(0).get()) == nullptr) {
            state.SkipWithError("the payloads are not those of the message");
            return;
        }
        compare(
            state, all.size(), [&](std::size_t i) { benchmark::DoNotOptimize(decoded(i)); },
            [&](std::size_t i) {
                const std::unique_ptr<Block> block(new Block);
                benchmark::DoNotOptimize(block.get());
                benchmark::DoNotOptimize(values(PayloadBits(all[i])));
            });
    };
    inTurns(benchmark::RegisterBenchmark(name, measure));
}

/// The fields of both kinds of position: format, latitude, longitude.
auto position(PayloadBits bits) {
    return std::tuple(bits.read(21, 1), bits.read(22, 17), bits.read(39, 17));
}

[[maybe_unused]] const bool added = [] {
    using Bits = PayloadBits;
    add<ADSBIdentityMessage>(
        "payload/Identity", MOPSVersion0, makePayloads(4, 0, 0),
        [](Bits bits) { return std::tuple(bits.read(5, 3), callsignOf(bits)); });
    static std::array<double, 128> speeds{}; // by movement code; only the look-up matters
    add<ADSBSurfacePositionMessage>(
        "payload/SurfacePosition", MOPSVersion0, makePayloads(7, 0, 0), [](Bits bits) {
            return std::tuple(speeds[bits.read(5, 7)], bits.read(12, 1), bits.read(13, 7) * 2.8125,
                              bits.read(20, 1), position(bits));
        });
    add<ADSBAirbornePositionMessageV2>(
        "payload/AirbornePosition", MOPSVersion2, makePayloads(11, 0, 0), [](Bits bits) {
            return std::tuple(altitudeFeet(bits.read(8, 12)), bits.read(7, 1), bits.read(20, 1),
                              position(bits));
        });
    add<ADSBAirborneVelocityMessageV0>(
        "payload/AirborneVelocity", MOPSVersion0, makePayloads(19, 3, 1),
        [](Bits bits) { return std::tuple(bits.read(10, 3), bits.read(35, 1), velocityOf(bits)); });
    add<ADSBTestMessage>("payload/Test", MOPSVersion0, makePayloads(23, 3, 0), [](Bits bits) {
        return std::tuple(bits.read(5, 3), bits.read(8, 24), bits.read(32, 24));
    });
    add<ADSBAircraftStatusMessageV2>(
        "payload/AircraftStatus", MOPSVersion2, makePayloads(28, 3, 1), [](Bits bits) {
            return std::tuple(bits.read(5, 3), bits.read(8, 3), modeACode(bits.read(11, 13)));
        });
    add<ADSBTargetStatusMessageV2>(
        "payload/TargetStatus", MOPSVersion2, makePayloads(29, 2, 1), [](Bits bits) {
            return std::tuple(bits.read(5, 2), bits.read(7, 1), bits.read(39, 4), bits.read(43, 1),
                              bits.read(44, 2));
        });
    // Its version stands in bits 40 to 42; random ones are all versions, and some above 2.
    add<ADSBAircraftOperationalStatusMessage>(
        "payload/OperationalStatus", MOPSVersion2, makePayloads(31, 3, 0),
        [](Bits bits) { return std::tuple(bits.read(40, 3), bits.read(43, 1)); });
    return true;
}();

} // namespace
} // namespace tolvarin::ondrel::bench
