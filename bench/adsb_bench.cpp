// Decoding of each kind of ADS-B payload, beside reading its values into a plain struct.

#include "compare.h"

#include <ondrel/adsb_airborne_position_message.h>
#include <ondrel/adsb_airborne_velocity_message.h>
#include <ondrel/adsb_aircraft_operational_status_message.h>
#include <ondrel/adsb_aircraft_status_message.h>
#include <ondrel/adsb_decoder.h>
#include <ondrel/adsb_identity_message.h>
#include <ondrel/adsb_surface_position_message.h>
#include <ondrel/adsb_target_status_message.h>
#include <ondrel/adsb_test_message.h>

#include "bits.h"
#include "simulator/bit_writer.h"
#include "surveillance_codes.h"

#include <array>
#include <cmath>
#include <cstddef>
#include <cstring>
#include <memory>
#include <numeric>
#include <random>
#include <string>
#include <string_view>
#include <vector>

namespace tolvarin::ondrel::bench {
namespace {

// The values of each payload in plain structs. The floor of a message reads these values and makes
// no field list. It has no branches for reserved codes.

struct Identity {
    u32 category;
    std::array<char, 8> callsign;

    explicit Identity(const std::string& payload)
        : category(bits::read<5, 3>(payload)), callsign{character(bits::read<8, 6>(payload)),
                                                        character(bits::read<14, 6>(payload)),
                                                        character(bits::read<20, 6>(payload)),
                                                        character(bits::read<26, 6>(payload)),
                                                        character(bits::read<32, 6>(payload)),
                                                        character(bits::read<38, 6>(payload)),
                                                        character(bits::read<44, 6>(payload)),
                                                        character(bits::read<50, 6>(payload))} {}

    static char character(u32 code) {
        constexpr std::string_view all =
            "?ABCDEFGHIJKLMNOPQRSTUVWXYZ????? ???????????????0123456789??????";
        return all[code];
    }
};

struct CompactPosition {
    u32 time;
    u32 odd;
    u32 latitude;
    u32 longitude;

    explicit CompactPosition(const std::string& payload)
        : time(bits::read<20, 1>(payload)), odd(bits::read<21, 1>(payload)),
          latitude(bits::read<22, 17>(payload)), longitude(bits::read<39, 17>(payload)) {}
};

/// A speed for each movement code. The values do not matter, only the time of the look-up.
const std::array<double, 128> speeds = [] {
    std::array<double, 128> all{};
    std::iota(all.begin(), all.end(), 0.5);
    return all;
}();

struct SurfacePosition {
    u32 movementCode;
    double groundSpeed;
    double heading;
    CompactPosition position;

    explicit SurfacePosition(const std::string& payload)
        : movementCode(bits::read<5, 7>(payload)), groundSpeed(speeds[movementCode]),
          heading(bits::read<12, 1>(payload) * bits::read<13, 7>(payload) * 2.8125),
          position(payload) {}
};

struct AirbornePosition {
    bool gnss;
    AltitudeCode altitude;
    u32 supplement;
    CompactPosition position;

    explicit AirbornePosition(const std::string& payload)
        : gnss(bits::read<0, 5>(payload) >= 20),
          altitude(squitterAltitudeCode(bits::read<8, 12>(payload))),
          supplement(bits::read<7, 1>(payload)), position(payload) {}
};

struct AirborneVelocity {
    u32 subtype;
    u32 uncertainty;
    double groundSpeed;
    double heading;
    u32 verticalRateSource;
    i32 verticalRate;

    explicit AirborneVelocity(const std::string& payload)
        : subtype(bits::read<5, 3>(payload)), uncertainty(bits::read<10, 3>(payload)),
          verticalRateSource(bits::read<35, 1>(payload)),
          verticalRate(signedSteps(bits::read<36, 1>(payload), bits::read<37, 9>(payload)) * 64) {
        const i32 east = signedSteps(bits::read<13, 1>(payload), bits::read<14, 10>(payload));
        const i32 north = signedSteps(bits::read<24, 1>(payload), bits::read<25, 10>(payload));
        groundSpeed = std::sqrt(static_cast<double>(east * east + north * north));
        heading = std::atan2(east, north);
    }

    static i32 signedSteps(u32 negative, u32 code) {
        const i32 steps = static_cast<i32>(code) - 1;
        return negative != 0 ? -steps : steps;
    }
};

struct TestData {
    u32 subtype;
    std::array<char, 6> data{};

    explicit TestData(const std::string& payload) : subtype(bits::read<5, 3>(payload)) {
        std::memcpy(data.data(), payload.data() + 1, data.size());
    }
};

struct AircraftStatus {
    u32 subtype;
    u32 emergencyState;
    u32 modeACode;

    explicit AircraftStatus(const std::string& payload)
        : subtype(bits::read<5, 3>(payload)), emergencyState(bits::read<8, 3>(payload)),
          modeACode(identityCode(bits::read<11, 13>(payload))) {}
};

struct TargetStatus {
    u32 subtype;
    u32 silSupplement;
    u32 nacp;
    u32 nicBaro;
    u32 sil;

    explicit TargetStatus(const std::string& payload)
        : subtype(bits::read<5, 2>(payload)), silSupplement(bits::read<7, 1>(payload)),
          nacp(bits::read<39, 4>(payload)), nicBaro(bits::read<43, 1>(payload)),
          sil(bits::read<44, 2>(payload)) {}
};

struct OperationalStatus {
    u32 version;
    u32 nicSupplementA;

    explicit OperationalStatus(const std::string& payload)
        : version(bits::read<40, 3>(payload)), nicSupplementA(bits::read<43, 1>(payload)) {}
};

/// Bits that are the same in all payloads of a benchmark, such as the type code.
struct Fixed {
    std::size_t position;
    unsigned width;
    unsigned value;
};

constexpr std::size_t payloadCount = 4096;

/// Random payloads, so that the processor cannot learn the values.
std::vector<std::string> payloads(const std::vector<Fixed>& fixed) {
    std::mt19937_64 random(3); // NOLINT(cert-msc*): every run measures the same
    std::vector<std::string> all;
    for (std::size_t i = 0; i < payloadCount; ++i) {
        simulator::BitWriter writer(7);
        writer.put(0, 56, random());
        for (const Fixed& field : fixed) {
            writer.put(field.position, field.width, field.value);
        }
        all.push_back(writer.bytes());
    }
    return all;
}

/// One allocation of the message's size and the values of the payload.
template <class Message, class Values>
void payloadFloor(const std::string& payload) {
    struct alignas(Message) Block {
        std::array<std::byte, sizeof(Message)> bytes; // not initialised
    };
    const std::unique_ptr<Block> block(new Block);
    benchmark::DoNotOptimize(block.get());
    Values values(payload);
    benchmark::DoNotOptimize(values);
}

/// The message that a benchmark decodes, and the values that its floor reads.
template <class MessageType, class ValuesType>
struct Kind {
    using Message = MessageType;
    using Values = ValuesType;
};

/// Decoding of random payloads, which have only `fixed` in common, beside the floor.
template <class Kind>
void decodePayload(benchmark::State& state, Kind, MOPSVersion version,
                   const std::vector<Fixed>& fixed) {
    using Message = typename Kind::Message;
    const std::vector<std::string> all = payloads(fixed);
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
        [&](std::size_t i) { payloadFloor<Message, typename Kind::Values>(all[i]); });
}

constexpr Kind<ADSBIdentityMessage, Identity> identity;
constexpr Kind<ADSBSurfacePositionMessage, SurfacePosition> surfacePosition;
constexpr Kind<ADSBAirbornePositionMessageV2, AirbornePosition> airbornePosition;
constexpr Kind<ADSBAirborneVelocityMessageV0, AirborneVelocity> velocity;
constexpr Kind<ADSBTestMessage, TestData> testData;
constexpr Kind<ADSBAircraftStatusMessageV2, AircraftStatus> aircraftStatus;
constexpr Kind<ADSBTargetStatusMessageV2, TargetStatus> targetStatus;
constexpr Kind<ADSBAircraftOperationalStatusMessage, OperationalStatus> operationalStatus;

BENCHMARK_CAPTURE(decodePayload, Identity, identity, MOPSVersion0, {{0, 5, 4}})->Apply(inTurns);
BENCHMARK_CAPTURE(decodePayload, SurfacePosition, surfacePosition, MOPSVersion0, {{0, 5, 7}})
    ->Apply(inTurns);
BENCHMARK_CAPTURE(decodePayload, AirbornePosition, airbornePosition, MOPSVersion2, {{0, 5, 11}})
    ->Apply(inTurns);
BENCHMARK_CAPTURE(decodePayload, AirborneVelocity, velocity, MOPSVersion0, {{0, 5, 19}, {5, 3, 1}})
    ->Apply(inTurns);
BENCHMARK_CAPTURE(decodePayload, Test, testData, MOPSVersion0, {{0, 5, 23}, {5, 3, 0}})
    ->Apply(inTurns);
BENCHMARK_CAPTURE(decodePayload, AircraftStatus, aircraftStatus, MOPSVersion2,
                  {{0, 5, 28}, {5, 3, 1}})
    ->Apply(inTurns);
BENCHMARK_CAPTURE(decodePayload, TargetStatus, targetStatus, MOPSVersion2, {{0, 5, 29}, {5, 2, 1}})
    ->Apply(inTurns);
BENCHMARK_CAPTURE(decodePayload, OperationalStatus, operationalStatus, MOPSVersion2,
                  {{0, 5, 31}, {40, 3, 2}})
    ->Apply(inTurns);

} // namespace
} // namespace tolvarin::ondrel::bench
