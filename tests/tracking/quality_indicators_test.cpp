#include "quality_indicators.h"

#include <gtest/gtest.h>

#include <cctype>
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

bool names(const char* typeCodes, unsigned typeCode) {
    std::istringstream in(typeCodes);
    for (unsigned code = 0; in >> code;) {
        if (code == typeCode) {
            return true;
        }
    }
    return false;
}

bool holds(const std::string& condition, const Supplements& supplements) {
    for (const char letter : condition) {
        const bool isSet = std::isupper(static_cast<unsigned char>(letter)) != 0;
        const int which = std::toupper(static_cast<unsigned char>(letter));
        const Supplement state = which == 'A'   ? supplements.a
                                 : which == 'B' ? supplements.b
                                                : supplements.c;
        if (state != (isSet ? Supplement::Set : Supplement::Clear)) {
            return false;
        }
    }
    return true;
}

std::string lookUp(const Table& table, unsigned typeCode, const Supplements& supplements,
                   const char* nothing) {
    for (const PublishedRow& row : table) {
        if (names(row.typeCodes, typeCode) && holds(row.condition, supplements)) {
            return row.quality;
        }
    }
    return nothing;
}

std::string textOf(const PositionQuality& quality) {
    std::ostringstream out;
    out << +quality.nucp << ' ' << +quality.nic << ' ' << +quality.pic;
    return out.str();
}

std::string textOf(const PositionQualityV0& quality) {
    std::ostringstream out;
    out << textOf(static_cast<const PositionQuality&>(quality)) << ' ' << +quality.nacp << ' '
        << +quality.sil;
    return out.str();
}

TEST(QualityIndicators, AreThoseOfThePublishedTables) {
    constexpr Supplement states[] = {Supplement::Unknown, Supplement::Clear, Supplement::Set};
    for (unsigned typeCode = 0; typeCode < 256; ++typeCode) {
        const auto code = static_cast<u8>(typeCode);
        EXPECT_EQ(textOf(positionQualityV0(code)), lookUp(version0, typeCode, {}, "0 0 0 0 0"));
        for (int i = 0; i < 27; ++i) {
            const Supplements s{states[i % 3], states[i / 3 % 3], states[i / 9]};
            EXPECT_EQ(textOf(positionQualityV1(code, s)), lookUp(version1, typeCode, s, "0 0 0"))
                << typeCode << " state " << i;
            EXPECT_EQ(textOf(positionQualityV2(code, s)), lookUp(version2, typeCode, s, "0 0 0"))
                << typeCode << " state " << i;
        }
    }
}

} // namespace
} // namespace tolvarin::ondrel
