/// @file
/// The published tables of the ADS-B payloads as a plain reading takes them: a payload is 56
/// characters, ME bits count from 1 as the standards count them, and no code is the library's.
#pragma once

#include <ondrel/types.h>

#include <bitset>
#include <cmath>
#include <cstddef>
#include <functional>
#include <iomanip>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

namespace tolvarin::ondrel::plain {

using Bits = std::string; // 56 characters '0' and '1'
using Tokens = std::vector<std::string>;

inline long number(const Bits& bits, unsigned first, unsigned last) {
    long value = 0;
    for (unsigned i = first; i <= last; ++i) {
        value = 2 * value + (bits.at(i - 1) == '1' ? 1 : 0);
    }
    return value;
}

inline std::string packed(const Bits& bits) {
    std::string bytes;
    for (std::size_t i = 0; i < bits.size(); i += 8) {
        bytes += static_cast<char>(std::bitset<8>(bits, i, 8).to_ulong());
    }
    return bytes;
}

inline std::string hexadecimal(const std::string& bytes) {
    std::ostringstream out;
    out << std::hex << std::uppercase << std::setfill('0');
    for (const char byte : bytes) {
        out << std::setw(2) << unsigned{static_cast<u8>(byte)};
    }
    return out.str();
}

inline std::string exact(double value) {
    std::ostringstream out;
    out << std::setprecision(17) << value;
    return out.str();
}

inline std::string sixDecimals(double value) {
    std::ostringstream out;
    out << std::fixed << value;
    return out.str();
}

inline std::string motion(double speed, double heading) {
    std::ostringstream out;
    out << speed << ", HDG=" << heading;
    return out.str();
}

// What the numbers mean.

inline std::string decimal(const Bits&, long value) {
    return std::to_string(value);
}

inline std::string character(const Bits&, long code) {
    const bool letter = code >= 1 && code <= 26;
    const bool itself = code == 32 || (code >= 48 && code <= 57); // as in ASCII
    return {static_cast<char>(letter ? 'A' + code - 1 : itself ? code : '?')};
}

inline std::string callsign(const Bits& bits, long) {
    std::string text;
    for (unsigned first = 9; first < 56; first += 6) {
        text += character(bits, number(bits, first, first + 5));
    }
    return text;
}

inline double surfaceSpeed(const Bits& bits) {
    const auto x = static_cast<double>(number(bits, 6, 12));
    return x < 2 || x > 124 ? 0
           : x == 2         ? 0.125
           : x <= 8         ? (x - 3) * 0.14583332 + 0.125
           : x <= 12        ? (x - 9) / 4 + 1
           : x <= 38        ? (x - 13) / 2 + 2
           : x <= 93        ? x - 39 + 15
           : x <= 108       ? (x - 94) * 2 + 70
           : x <= 123       ? (x - 109) * 5 + 100
                            : 175;
}

inline double surfaceHeading(const Bits& bits) {
    return number(bits, 13, 13) == 0 ? 0 : static_cast<double>(number(bits, 14, 20)) * 2.8125;
}

inline std::string surfaceMotion(const Bits& bits, long) {
    return motion(surfaceSpeed(bits), surfaceHeading(bits));
}

inline std::string altitudeSource(const Bits&, long typeCode) {
    return typeCode < 19 ? "BARO" : "GNSS";
}

inline std::string feet(long code) {
    const long count = code / 32 * 16 + code % 16;
    return std::to_string(count * (code / 16 % 2 == 1 ? 25 : 100) - 1000);
}

/// Knots along an axis, whose direction bit leads its code; 0 if either code is 0.
inline double knots(const Bits& bits, unsigned first) {
    const bool known = number(bits, 15, 24) != 0 && number(bits, 26, 35) != 0;
    const long unit = !known ? 0 : number(bits, 6, 8) == 1 ? 1 : 4;
    const long sign = 1 - 2 * number(bits, first, first);
    return static_cast<double>(sign * unit * (number(bits, first + 1, first + 10) - 1));
}

inline double airborneSpeed(const Bits& bits) {
    return std::sqrt(knots(bits, 14) * knots(bits, 14) + knots(bits, 25) * knots(bits, 25));
}

inline double airborneHeading(const Bits& bits) {
    const double degrees = std::atan2(knots(bits, 14), knots(bits, 25)) * 360.0 / 6.283185307179586;
    return degrees < 0 ? 360.0 + degrees : degrees;
}

inline std::string airborneMotion(const Bits& bits, long subtype) {
    const std::string unit = subtype % 2 == 0 ? "_SS" : "";
    return subtype > 2 ? "AS" + unit
                       : "GS" + unit + ", GS=" + motion(airborneSpeed(bits), airborneHeading(bits));
}

/// Feet per minute; the sign bit leads the code.
inline std::string verticalRate(const Bits&, long code) {
    return std::to_string(code % 512 == 0 ? 0 : (code % 512 - 1) * (code < 512 ? 64 : -64));
}

/// How a description tells of an emergency; the subtype leads the state.
inline std::string emergency(const Bits&, long value) {
    return value / 8 == 1 ? ", ST=EMG, EMG=" + std::to_string(value % 8) : "";
}

/// The wire's order is C1 A1 C2 A2 C4 A4 X B1 D1 B2 D2 B4 D4, as in a surveillance reply.
inline std::string squawk(long code) {
    const std::string wire = std::bitset<13>(static_cast<unsigned long>(code)).to_string();
    std::string digits;
    for (const std::size_t four : {5U, 11U, 4U, 12U}) {
        const std::string bits = {wire[four], wire[four - 2], wire[four - 4]};
        digits += std::to_string(std::stol(bits, nullptr, 2));
    }
    return digits;
}

// The tables. A kind of payload is a letter, in the order of the types; with digits behind it only
// these versions are meant.

inline const std::string kinds = "ISPVTAGO-";
inline const std::string kindByTypeCode = "-IIIISSSSPPPPPPPPPPVPPPT----AG-O";
inline const Tokens typeNames = {"ACID",      "POS_GND",   "POS_AIR",   "AIR_VEL", "TEST",
                                 "AC_STATUS", "TG_STATUS", "OP_STATUS", "RESERVED"};

inline char kindOf(long typeCode) {
    return kindByTypeCode.at(static_cast<std::size_t>(typeCode));
}

inline bool isFor(const std::string& kindOfRow, char kind, int version) {
    const bool everyVersion = kindOfRow.find_first_of("012") == std::string::npos;
    return kindOfRow.find(kind) != std::string::npos &&
           (everyVersion || kindOfRow.find(std::to_string(version)) != std::string::npos);
}

/// A text of a message: a field, or, in small letters, one that is not listed.
struct Row {
    using Show = std::function<std::string(const Bits& all, long value)>;

    std::string kind;
    std::string name;
    unsigned first; ///< ME bits
    unsigned last;
    Show show = decimal;
    std::string initially = "0"; ///< before any payload
};

inline Row::Show oneOf(const Tokens& tokens) {
    return [=](const Bits&, long value) { return tokens.at(static_cast<std::size_t>(value)); };
}

inline const std::vector<Row> rows = {
    {kinds, "TYPE", 1, 5, [](const Bits&, long v) { return typeNames.at(kinds.find(kindOf(v))); }},
    {kinds, "TYPE_CODE", 1, 5},
    {"I", "EMT_CAT", 6, 8},
    {"I", "CHAR_1", 9, 14, character},
    {"I", "CHAR_2", 15, 20, character},
    {"I", "CHAR_3", 21, 26, character},
    {"I", "CHAR_4", 27, 32, character},
    {"I", "CHAR_5", 33, 38, character},
    {"I", "CHAR_6", 39, 44, character},
    {"I", "CHAR_7", 45, 50, character},
    {"I", "CHAR_8", 51, 56, character},
    {"I", "callsign", 9, 56, callsign, "        "},
    {"S", "MOV_CODE", 6, 12},
    {"S", "movement", 6, 12, [](const Bits&, long v) { return exact(v > 0 && v < 125 ? 1 : 0); }},
    {"S", "GND_SPD", 6, 12, [](const Bits& b, long) { return sixDecimals(surfaceSpeed(b)); }},
    {"S", "speed", 6, 12, [](const Bits& b, long) { return exact(surfaceSpeed(b)); }},
    {"S", "HDG_STATE", 13, 13},
    {"S", "HDG", 14, 20, [](const Bits& b, long) { return sixDecimals(surfaceHeading(b)); }},
    {"S", "heading", 14, 20, [](const Bits& b, long) { return exact(surfaceHeading(b)); }},
    {"S", "motion", 6, 20, surfaceMotion, "0, HDG=0"},
    {"P", "ALT_SRC", 1, 5, altitudeSource, "BARO"},
    {"P", "ALT_RES", 16, 16, oneOf({"100FT", "25FT"})},
    {"P", "step", 16, 16, oneOf({"100", "25"}), "25"},
    {"P", "ALT", 9, 20, [](const Bits&, long v) { return feet(v) + "FT"; }},
    {"P", "feet", 9, 20, [](const Bits&, long v) { return feet(v); }},
    {"SP", "T", 21, 21},
    {"SP", "CPR_FMT", 22, 22, oneOf({"EVEN", "ODD"}), "ODD"},
    {"SP", "CPR_LAT", 23, 39},
    {"SP", "CPR_LON", 40, 56},
    {"P01", "SAF", 8, 8},
    {"P2", "NIC_SUPP_B", 8, 8},
    {"V", "SUB_TYPE", 6, 8,
     oneOf({"", "GROUND_SPEED", "GROUND_SPEED_SUPER_SONIC", "AIR_SPEED", "AIR_SPEED_SUPER_SONIC"})},
    {"V", "subtype", 6, 8, decimal, "1"},
    {"V", "motion", 6, 8, airborneMotion, "GS, GS=0, HDG=0"},
    {"V", "DIR_EW", 14, 14, oneOf({"W->E", "E->W"})},
    {"V", "VEL_EW", 15, 24},
    {"V", "DIR_NS", 25, 25, oneOf({"S->N", "N->S"})},
    {"V", "VEL_NS", 26, 35},
    {"V", "speed", 14, 35, [](const Bits& b, long) { return exact(airborneSpeed(b)); }},
    {"V", "heading", 14, 35, [](const Bits& b, long) { return exact(airborneHeading(b)); }},
    {"V", "VR_SRC", 36, 36, oneOf({"BARO", "GNSS"}), "BARO"},
    {"V", "VR_SIGN", 37, 37, oneOf({"UP", "DOWN"})},
    {"V", "VR", 38, 46},
    {"V", "rate", 37, 46, verticalRate},
    {"V0", "NUC_R", 11, 13},
    {"T", "SUB_TYPE", 6, 8},
    {"T", "DATA", 9, 56, [](const Bits& b, long) { return hexadecimal(packed(b).substr(1)); }},
    {"T", "bytes", 9, 56, [](const Bits& b, long) { return packed(b).substr(1); }, ""},
    {"A", "subtype", 6, 8, oneOf({"0", "1", "2", "3", "3", "3", "3", "3"}), "3"},
    {"A", "emergency", 6, 11, emergency, ""},
    {"A", "SUB_TYPE", 6, 8, oneOf({"NO_INFO", "EMERGENCY", "TCAS_RA"})},
    {"A", "EMG_STATE", 9, 11,
     oneOf({"NO_EMG", "EMERGENCY", "MEDICAL", "MIN_FUEL", "NO_COMM", "HIJACK", "AC_DOWNED",
            "UNDEFINED"}),
     "NO_EMG"},
    {"A", "state", 9, 11},
    {"A2", "MODE_A", 12, 24, [](const Bits&, long v) { return squawk(v); }, "0000"},
    {"A2", "code", 12, 24,
     [](const Bits&, long v) { return exact(std::stoi(squawk(v), nullptr, 8)); }},
    {"G", "subtype", 6, 7},
    {"G", "SUB_TYPE", 6, 7},
    {"G", "NAC_P", 40, 43},
    {"G", "NIC_BARO", 44, 44},
    {"G", "SIL", 45, 46},
    {"G2", "SIL_SUPP", 8, 8},
    {"O", "number", 41, 43},
    {"O", "version", 41, 43, oneOf({"0", "1", "2", "3", "3", "3", "3", "3"})},
    {"O", "VER_NUM", 41, 43},
    {"O", "NIC_SUPP_A", 44, 44},
};

/// What happens when the number in some ME bits is in a range: a line in the log, in which % is the
/// number, no more than so many fields, and possibly the payload's refusal.
struct Rule {
    std::string kind;
    unsigned first;
    unsigned last;
    long from;
    long to;
    std::string line;
    std::size_t mostFields;
    bool refuses;
};

inline const std::vector<Rule> rules = {
    {"S", 6, 12, 125, 127, "[CRITICAL][ADSBGndPosMsg] Reserved Movement Code: %.", 99, false},
    {"V", 6, 8, 0, 0, "[CRITICAL][ADSBAirVelMsg] Unknown Subtype=%.", 2, true},
    {"V", 6, 8, 5, 7, "[CRITICAL][ADSBAirVelMsg] Unknown Subtype=%.", 2, true},
    {"V", 6, 8, 3, 4, "[WARNING ][ADSBAirVelMsg] Unsupported AIR_SPD message detected.", 3, true},
    {"T", 6, 8, 1, 7, "[CRITICAL][ADSBTestMsg] Unknown Subtype=%.", 99, false},
    {"A", 6, 8, 3, 7, "[CRITICAL][ADSBAcStatMsg] Unknown Subtype=%.", 2, true},
    {"A", 6, 8, 0, 0, "[CRITICAL][ADSBAcStatMsg] Unsupported subtype % detected.", 4, false},
    {"A", 6, 8, 2, 2, "[CRITICAL][ADSBAcStatMsg] Unsupported subtype % detected.", 4, false},
    {"A2", 6, 8, 2, 2, "[WARNING ][ADSBAcStatMsg] Unsupported TCAS RA message detected.", 4, true},
    {"G", 6, 7, 2, 3, "[CRITICAL][ADSBTgStatMsg] Unknown Subtype=%.", 2, true},
    {"G2", 6, 7, 0, 0, "", 6, true},
    {"O", 41, 43, 0, 0, "[CRITICAL][ADSBOpStatMsg] MOPS Version 0 detected.", 2, true},
    {"O", 41, 43, 3, 7, "[CRITICAL][ADSBOpStatMsg] Unsupported MOPS Version % detected.", 99,
     false},
};

/// The descriptions, part by part; what stands in braces is a text of the message.
inline const std::vector<std::pair<std::string, std::string>> descriptions = {
    {"I", "TC=ACID, EC={EMT_CAT}, CS={callsign}"},
    {"S", "TC=POS_GND, SPD={motion}"},
    {"P", "TC=POS_AIR, AT={ALT_SRC}, ALT={feet}"},
    {"SP", ", CPR={CPR_FMT}, LAT={CPR_LAT}, LON={CPR_LON}"},
    {"V", "TC=AIR_VEL, ST={motion}, VR={rate}"},
    {"V0", ", NUCr={NUC_R}"},
    {"T", "TC=TEST, ST={SUB_TYPE}"},
    {"A", "TC=AC_STATUS{emergency}"},
    {"A2", ", MA={MODE_A}"},
    {"G", "TC=TG_STATUS, ST={subtype}, NACp={NAC_P}, NICbaro={NIC_BARO}, SIL={SIL}"},
    {"G2", ", SILsupp={SIL_SUPP}"},
    {"O", "TC=OP_STAT, VN={number}, NICsa={NIC_SUPP_A}"},
};

} // namespace tolvarin::ondrel::plain
