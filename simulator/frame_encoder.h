/// @file
/// Mode S downlink frames as ICAO Annex 10 Volume IV, chapter 3.1.2 lays them out, built bit by
/// bit. Every function returns the 7 or 14 bytes of a whole frame with its parity.
///
/// Addresses use 24 bits, interrogator identifiers 7 bits (code label and code); MV, MB and ME are
/// 7 bytes, and what is missing in a shorter string is sent as zero bits.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace tolvarin::ondrel::simulator {

/// CRC-24 of a frame without its last three bytes, by polynomial division one bit at a time with
/// the generator 0x1FFF409. A frame of three bytes or fewer gives 0.
std::uint32_t parity(std::string_view frame);

/// The 13-bit AC field in feet with Q set: steps of 25 ft, rounded to the nearest and limited to
/// -1000 to 50175 ft.
unsigned altitudeField(int altitudeFt);

/// The 13-bit ID field: the octal digits of `squawk` (12 bits, digit A highest) interleaved as
/// C1 A1 C2 A2 C4 A4 X B1 D1 B2 D2 B4 D4.
unsigned identityField(unsigned squawk);

/// What the air-air surveillance replies DF0 and DF16 have in addition to the address.
struct AirAirFields {
    bool onGround = false;
    bool crosslink = false;        ///< CC; sent only in DF0
    unsigned sensitivityLevel = 0; ///< SL, 0 to 7
    unsigned replyInformation = 0; ///< RI, 0 to 15
    int altitudeFt = 0;            ///< as altitudeField()
};

/// What the surveillance and Comm-B replies DF4, 5, 20 and 21 have in common.
struct SurveillanceFields {
    unsigned flightStatus = 0;    ///< FS, 0 to 7
    unsigned downlinkRequest = 0; ///< DR, 0 to 31
    unsigned utilityMessage = 0;  ///< UM, 0 to 63
};

std::string df0(std::uint32_t address, const AirAirFields& fields);
std::string df4(std::uint32_t address, const SurveillanceFields& fields, int altitudeFt);
std::string df5(std::uint32_t address, const SurveillanceFields& fields, unsigned squawk);
std::string df11(std::uint32_t address, unsigned capability, unsigned interrogatorId);
std::string df16(std::uint32_t address, const AirAirFields& fields, std::string_view mv);
std::string df17(std::uint32_t address, unsigned capability, std::string_view me);
std::string df18(std::uint32_t address, unsigned control, std::string_view me);

/// `application` 0 has the layout of DF17. The layout of the others is not published. They are sent
/// in the same layout: address and ME are then any 80 bits.
std::string df19(std::uint32_t address, unsigned application, std::string_view me);

std::string df20(std::uint32_t address, const SurveillanceFields& fields, int altitudeFt,
                 std::string_view mb);
std::string df21(std::uint32_t address, const SurveillanceFields& fields, unsigned squawk,
                 std::string_view mb);

} // namespace tolvarin::ondrel::simulator
