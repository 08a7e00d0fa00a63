/// @file
/// The floor of the whole road: what a program must at least do to turn replies into a table of
/// aircraft, as straightforward good code. It uses nothing of the library.
///
/// For each reply it makes a message on the heap, for a squitter a payload too, and destroys both.
/// It calculates the parity. It looks the address up among the known ones, and the aircraft among
/// its records, both in a std::unordered_map. It reads address, altitude, identity, callsign,
/// velocity and position, solves the position from a pair of even and odd frames by the formula of
/// the standard, and stores all this with its stamps in the record.
///
/// It does not repair, grade by time and interrogator, read the clock, list fields, give quality
/// indicators, count messages, recognise MOPS versions, write text or log.
#pragma once

#include "floor.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <memory>
#include <new>
#include <optional>

namespace tolvarin::ondrel::bench {

template <class Value>
struct Stamped {
    Value value{};
    u64 stamp = 0; ///< milliseconds, 0: never received
};

/// Fractions of a zone in a position message, degrees in a solved position.
struct Position {
    double latitude = 0;
    double longitude = 0;
};

struct AircraftRecord {
    u64 lastUpdate = 0;
    Stamped<i32> altitude;
    Stamped<u32> squawk;
    Stamped<u32> status; ///< flight status, vertical status or capability
    Stamped<std::array<char, 8>> callsign;
    Stamped<u32> category;
    Stamped<Velocity> velocity;
    Stamped<Position> even;
    Stamped<Position> odd;
    Stamped<Position> position;
};

/// The number of longitude zones, by the latitudes at which it drops by one (RTCA DO-260B,
/// A.1.7.2).
inline double longitudeZones(double latitude) {
    static const std::array<double, 58> limits = [] {
        constexpr double pi = 3.14159265358979324;
        const double top = 1 - std::cos(pi / 30);
        std::array<double, 58> all{};
        for (int i = 0; i < 58; ++i) {
            all.at(static_cast<std::size_t>(i)) =
                180 / pi * std::acos(std::sqrt(top / (1 - std::cos(2 * pi / (59 - i)))));
        }
        return all;
    }();
    const auto* const limit = std::upper_bound(limits.begin(), limits.end(), std::abs(latitude));
    return static_cast<double>(59 - (limit - limits.begin()));
}

/// RTCA DO-260B, A.1.7.7.
inline std::optional<Position> solve(const Position& even, const Position& odd, bool evenIsNewer) {
    const auto modulo = [](double a, double b) { return a - b * std::floor(a / b); };
    const auto latitude = [](double degrees) { return degrees >= 270 ? degrees - 360 : degrees; };
    const double j = std::floor(59 * even.latitude - 60 * odd.latitude + 0.5);
    const double evenLatitude = latitude(360.0 / 60 * (modulo(j, 60) + even.latitude));
    const double oddLatitude = latitude(360.0 / 59 * (modulo(j, 59) + odd.latitude));
    const double zones = longitudeZones(evenLatitude);
    if (zones != longitudeZones(oddLatitude)) {
        return std::nullopt;
    }
    const double m = std::floor(even.longitude * (zones - 1) - odd.longitude * zones + 0.5);
    const double n = std::max(evenIsNewer ? zones : zones - 1, 1.0);
    const double fraction = evenIsNewer ? even.longitude : odd.longitude;
    const double longitude = 360 / n * (modulo(m, n) + fraction);
    return Position{evenIsNewer ? evenLatitude : oddLatitude,
                    longitude > 180 ? longitude - 360 : longitude};
}

class RoadFloor {
public:
    /// Takes a frame of 7 or 14 bytes.
    void take(std::string_view frame, u64 stamp) {
        const bool isLong = frame.size() == longBytes;
        const auto message =
            onHeap(isLong ? longMessageBytes : shortMessageBytes, Message{stamp, 0, {}});
        frame.copy(message->frame.data(), longBytes);
        const u32 difference = parityDifference(frame);
        const unsigned format = static_cast<u8>(frame[0]) >> 3U;
        const bool isSquitter = format >= 17 && format <= 19;
        if (isSquitter && difference != 0) {
            return;
        }
        const bool isClear = isSquitter || format == 11;
        message->address = isClear ? threeBytes(frame.substr(1)) : difference;
        if (isSquitter || (format == 11 && difference < 80)) {
            _known[message->address] = static_cast<std::int64_t>(stamp / 1000);
        } else if (const auto known = _known.find(message->address); known != _known.end()) {
            known->second = static_cast<std::int64_t>(stamp / 1000);
        } else {
            return;
        }
        if (format == 17) {
            takeSquitter(frame, message->address, stamp);
        } else if (!isSquitter) {
            takeReply(format, frame, message->address, stamp);
        }
    }

    /// Null if there is none.
    const AircraftRecord* find(u32 address) const {
        const auto found = _aircraft.find(address);
        return found != _aircraft.end() ? &found->second : nullptr;
    }

private:
    // Sizes of the interface's classes when this was written. Numbers, so that the floor stays the
    // same.
    static constexpr std::size_t longMessageBytes = 208;
    static constexpr std::size_t shortMessageBytes = 176;
    static constexpr std::size_t payloadBytes = 152;

    struct Message {
        u64 stamp;
        u32 address;
        std::array<char, longBytes> frame;
    };
    struct Free {
        void operator()(void* block) const { ::operator delete(block); }
    };

    template <class Object>
    static std::unique_ptr<Object, Free> onHeap(std::size_t bytes, const Object& object) {
        std::unique_ptr<Object, Free> made(new (::operator new(bytes)) Object(object));
        benchmark::DoNotOptimize(made.get()); // a caller could read it
        return made;
    }

    void takeReply(unsigned format, std::string_view frame, u32 address, u64 stamp) {
        AircraftRecord& record = _aircraft[address];
        record.lastUpdate = stamp;
        record.status = {static_cast<u32>(frame[0]) & 7, stamp};
        const u32 code = threeBytes(frame.substr(1)) & 0x1FFF;
        if (format == 5 || format == 21) {
            record.squawk = {modeACode(code), stamp};
        } else if (format != 11) {
            record.altitude = {altitudeFeet((code & 0x1F80) >> 1 | (code & 0x3F)), stamp};
        }
    }

    void takeSquitter(std::string_view frame, u32 address, u64 stamp) {
        const auto payload = onHeap(payloadBytes, PayloadBits(frame.substr(4)));
        AircraftRecord& record = _aircraft[address];
        record.lastUpdate = stamp;
        const u32 typeCode = payload->read(0, 5);
        if (typeCode >= 1 && typeCode <= 4) {
            record.category = {payload->read(5, 3), stamp};
            record.callsign = {callsignOf(*payload), stamp};
        } else if ((typeCode >= 9 && typeCode <= 18) || (typeCode >= 20 && typeCode <= 22)) {
            takePosition(record, *payload, stamp);
        } else if (typeCode == 19 && (payload->read(5, 3) == 1 || payload->read(5, 3) == 2)) {
            record.velocity = {velocityOf(*payload), stamp};
        }
    }

    static void takePosition(AircraftRecord& record, PayloadBits payload, u64 stamp) {
        constexpr u64 longestInterval = 10000;
        constexpr double zone = 1U << 17;
        record.altitude = {altitudeFeet(payload.read(8, 12)), stamp};
        Stamped<Position>& frame = payload.read(21, 1) != 0 ? record.odd : record.even;
        frame = {{payload.read(22, 17) / zone, payload.read(39, 17) / zone}, stamp};
        const auto [first, second] = std::minmax(record.even.stamp, record.odd.stamp);
        if (first == 0 || second - first > longestInterval) {
            return;
        }
        const bool evenIsNewer = record.even.stamp > record.odd.stamp;
        if (const auto found = solve(record.even.value, record.odd.value, evenIsNewer)) {
            record.position = {*found, second};
        }
    }

    KnownAddresses _known;
    std::unordered_map<u32, AircraftRecord> _aircraft;
};

} // namespace tolvarin::ondrel::bench
