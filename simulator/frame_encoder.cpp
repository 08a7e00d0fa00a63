// Mode S frames, written field by field (ICAO Annex 10 Volume IV, 3.1.2). Slow and simple on
// purpose: the library has tables in the same places.

#include "simulator/frame_encoder.h"

#include "simulator/bit_writer.h"

#include <algorithm>
#include <cstddef>

namespace tolvarin::ondrel::simulator {
namespace {

constexpr std::uint32_t generator = 0x1FFF409;
constexpr std::size_t shortBytes = 7;
constexpr std::size_t longBytes = 14;

/// Bit of the squawk for each wire bit of the ID field, first to last; the X bit has none.
constexpr int identityOrder[] = {3, 9, 4, 10, 5, 11, -1, 6, 0, 7, 1, 8, 2};

/// MV, MB and ME all stand at bit 32.
void putMessage(BitWriter& frame, std::string_view message) {
    for (std::size_t i = 0; i < std::min<std::size_t>(message.size(), 7); ++i) {
        frame.put(32 + 8 * i, 8, static_cast<unsigned char>(message[i]));
    }
}

/// Ends a frame with its parity, overlaid with an address or an identifier.
std::string withParity(BitWriter& frame, std::uint32_t overlay) {
    const std::size_t parityPosition = 8 * frame.bytes().size() - 24;
    return frame.put(parityPosition, 24, parity(frame.bytes()) ^ overlay).bytes();
}

/// DF0 or DF16.
std::string airAir(unsigned format, std::uint32_t address, const AirAirFields& fields,
                   std::string_view mv) {
    BitWriter frame(format < 16 ? shortBytes : longBytes);
    frame.put(0, 5, format).put(5, 1, fields.onGround ? 1 : 0);
    frame.put(6, 1, format == 0 && fields.crosslink ? 1 : 0);
    frame.put(8, 3, fields.sensitivityLevel).put(13, 4, fields.replyInformation);
    frame.put(19, 13, altitudeField(fields.altitudeFt));
    putMessage(frame, mv);
    return withParity(frame, address);
}

/// DF4, 5, 20 or 21; `code` is the AC or ID field.
std::string surveillance(unsigned format, std::uint32_t address, const SurveillanceFields& fields,
                         unsigned code, std::string_view mb) {
    BitWriter frame(format < 16 ? shortBytes : longBytes);
    frame.put(0, 5, format).put(5, 3, fields.flightStatus).put(8, 5, fields.downlinkRequest);
    frame.put(13, 6, fields.utilityMessage).put(19, 13, code);
    putMessage(frame, mb);
    return withParity(frame, address);
}

/// DF17, 18 or 19; `threeBits` is CA, CF or AF.
std::string extendedSquitter(unsigned format, unsigned threeBits, std::uint32_t address,
                             std::string_view me) {
    BitWriter frame(longBytes);
    frame.put(0, 5, format).put(5, 3, threeBits).put(8, 24, address);
    putMessage(frame, me);
    return withParity(frame, 0);
}

} // namespace

std::uint32_t parity(std::string_view frame) {
    if (frame.size() <= 3) {
        return 0;
    }
    const std::size_t bits = 8 * (frame.size() - 3);
    std::uint32_t remainder = 0;
    for (std::size_t i = 0; i < bits + 24; ++i) {
        // The data are multiplied by x^24 first, so 24 zero bits follow them.
        const unsigned byte = i < bits ? static_cast<unsigned char>(frame[i / 8]) : 0U;
        remainder = remainder << 1U | ((byte >> (7 - i % 8)) & 1U);
        if ((remainder & 0x1000000U) != 0) {
            remainder ^= generator;
        }
    }
    return remainder;
}

unsigned altitudeField(int altitudeFt) {
    const int limited = std::clamp(altitudeFt, -1000, 50175);
    const auto count = static_cast<unsigned>((limited + 1000 + 12) / 25);
    return (count & 0x7E0U) << 2U | (count & 0x10U) << 1U | 0x10U | (count & 0xFU);
}

unsigned identityField(unsigned squawk) {
    unsigned field = 0;
    for (const int bit : identityOrder) {
        field = field << 1U | (bit < 0 ? 0U : (squawk >> bit) & 1U);
    }
    return field;
}

std::string df0(std::uint32_t address, const AirAirFields& fields) {
    return airAir(0, address, fields, {});
}

std::string df4(std::uint32_t address, const SurveillanceFields& fields, int altitudeFt) {
    return surveillance(4, address, fields, altitudeField(altitudeFt), {});
}

std::string df5(std::uint32_t address, const SurveillanceFields& fields, unsigned squawk) {
    return surveillance(5, address, fields, identityField(squawk), {});
}

std::string df11(std::uint32_t address, unsigned capability, unsigned interrogatorId) {
    BitWriter frame(shortBytes);
    frame.put(0, 5, 11).put(5, 3, capability).put(8, 24, address);
    return withParity(frame, interrogatorId & 0x7FU);
}

std::string df16(std::uint32_t address, const AirAirFields& fields, std::string_view mv) {
    return airAir(16, address, fields, mv);
}

std::string df17(std::uint32_t address, unsigned capability, std::string_view me) {
    return extendedSquitter(17, capability, address, me);
}

std::string df18(std::uint32_t address, unsigned control, std::string_view me) {
    return extendedSquitter(18, control, address, me);
}

std::string df19(std::uint32_t address, unsigned application, std::string_view me) {
    return extendedSquitter(19, application, address, me);
}

std::string df20(std::uint32_t address, const SurveillanceFields& fields, int altitudeFt,
                 std::string_view mb) {
    return surveillance(20, address, fields, altitudeField(altitudeFt), mb);
}

std::string df21(std::uint32_t address, const SurveillanceFields& fields, unsigned squawk,
                 std::string_view mb) {
    return surveillance(21, address, fields, identityField(squawk), mb);
}

} // namespace tolvarin::ondrel::simulator
