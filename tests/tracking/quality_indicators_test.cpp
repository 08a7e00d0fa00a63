#include "quality_indicators.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <sstream>
#include <string>
#include <vector>

namespace tolvarin::ondrel {
namespace {

/// A row of the published tables. A letter of the condition asks for a supplement that is set, or,
/// in lower case, for one that is known to be clear. The first row that fits applies.
struct PublishedRow {
    const char* typeCodes;
    const char* condition;
    const char* quality;
};
using Table = std::vector<PublishedRow>;

// NUCp NIC PIC NACp SIL
const Table version0 = {
    {"5 9 20", "", "9 11 14 11 2"}, {"6 10 21", "", "8 10 13 10 2"}, {"7 11", "", "7 8 11 8 2"},
    {"12", "", "6 7 10 7 2"},       {"13", "", "5 6 8 6 2"},         {"14", "", "4 5 6 5 2"},
    {"15", "", "3 4 5 4 2"},        {"16", "", "2 1 2 1 2"},         {"17", "", "1 1 1 1 2"},
};

// NUCp NIC PIC
const Table version1 = {
    {"5 9 20", "", "9 11 14"}, {"6 10 21", "", "8 10 13"}, {"7 11", "A", "7 9 12"},
    {"7 11", "", "7 8 11"},    {"8", "A", "6 7 10"},       {"12", "", "6 7 10"},
    {"13", "a", "5 6 8"},      {"13", "", "4 6 7"},        {"14", "", "4 5 6"},
    {"15", "", "3 4 5"},       {"16", "A", "2 3 4"},       {"16", "", "2 2 3"},
    {"17", "", "1 1 1"},
};

const Table version2 = {
    {"5 9 20", "", "9 11 14"}, {"6 10 21", "", "8 10 13"}, {"7", "A", "7 9 12"},
    {"7", "", "7 8 11"},       {"8", "AC", "6 7 10"},      {"8", "Ac", "5 6 9"},
    {"8", "aC", "4 6 7"},      {"11", "B", "7 9 12"},      {"11", "", "7 8 11"},
    {"12", "", "6 7 10"},      {"13", "b", "5 6 8"},       {"13", "aB", "5 6 9"},
    {"13", "", "4 6 7"},       {"14", "", "4 5 6"},        {"15", "", "3 4 5"},
    {"16", "B", "2 3 4"},      {"16", "", "2 2 3"},        {"17", "", "1 1 1"},
};

bool names(const std::string& typeCodes, unsigned typeCode) {
    return (' ' + typeCodes + ' ').find(' ' + std::to_string(typeCode) + ' ') != std::string::npos;
}

/// `known` has the letter of each supplement that was received, as a condition asks for it.
std::string lookUp(const Table& table, unsigned typeCode, const std::string& known,
                   const char* nothing) {
    for (const auto& [typeCodes, condition, quality] : table) {
        const std::string letters = condition;
        const bool holds = std::all_of(letters.begin(), letters.end(), [&](char letter) {
            return known.find(letter) != std::string::npos;
        });
        if (holds && names(typeCodes, typeCode)) {
            return quality;
        }
    }
    return nothing;
}

std::string textOf(const PositionQuality& quality) {
    std::ostringstream out;
    out << +quality.nucp << ' ' << +quality.nic << ' ' << +quality.pic;
    return out.str();
}

TEST(QualityIndicators, AreThoseOfThePublishedTables) {
    for (unsigned typeCode = 0; typeCode < 256; ++typeCode) {
        const auto code = static_cast<u8>(typeCode);
        const PositionQualityV0 early = positionQualityV0(code);
        std::ostringstream text;
        text << textOf(early) << ' ' << +early.nacp << ' ' << +early.sil;
        EXPECT_EQ(text.str(), lookUp(version0, typeCode, "", "0 0 0 0 0")) << typeCode;
        for (int i = 0; i < 27; ++i) {
            const auto state = [](int value) { return static_cast<Supplement>(value % 3); };
            static_assert(static_cast<Supplement>(1) == Supplement::Clear);
            static_assert(static_cast<Supplement>(2) == Supplement::Set);
            const Supplements supplements{state(i), state(i / 3), state(i / 9)};
            const std::string known = {"?aA"[i % 3], "?bB"[i / 3 % 3], "?cC"[i / 9]};
            EXPECT_EQ(textOf(positionQualityV1(code, supplements)),
                      lookUp(version1, typeCode, known, "0 0 0"))
                << typeCode << known;
            EXPECT_EQ(textOf(positionQualityV2(code, supplements)),
                      lookUp(version2, typeCode, known, "0 0 0"))
                << typeCode << known;
        }
    }
}

} // namespace
} // namespace tolvarin::ondrel
