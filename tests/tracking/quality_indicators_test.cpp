#include "quality_indicators.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace tolvarin::ondrel {
namespace {

// A position integrity category (PIC) stands for a radius of containment. NIC and NUCp have
// categories for the same radii. The type code chooses the PIC, some type codes with supplements.

const std::vector<int> picOfVersion0 = {0,  0, 0, 0, 0, 14, 13, 11, 0,  14, 13, 11,
                                        10, 8, 6, 5, 2, 1,  0,  0,  14, 13, 0};
const std::vector<int> picOfLaterVersions = {0,  0, 0, 0, 0, 14, 13, 11, 0,  14, 13, 11,
                                             10, 7, 6, 5, 3, 1,  0,  0,  14, 13, 0};

/// Supplements that choose another category: a letter for one that is set, in lower case for one
/// that was received and is clear. The other supplements have no influence.
struct Exception {
    int typeCode;
    const char* supplements;
    int pic;
};
const std::vector<Exception> exceptionsOfVersion1 = {
    {7, "A", 12}, {8, "A", 10}, {11, "A", 12}, {13, "a", 8}, {16, "A", 4}};
const std::vector<Exception> exceptionsOfVersion2 = {{7, "A", 12},  {8, "AC", 10}, {8, "Ac", 9},
                                                     {8, "aC", 7},  {11, "B", 12}, {13, "b", 8},
                                                     {13, "aB", 9}, {16, "B", 4}};

int picOf(const std::vector<Exception>& exceptions, int typeCode, const std::string& received) {
    for (const Exception& exception : exceptions) {
        const std::string wanted = exception.supplements;
        if (exception.typeCode == typeCode &&
            wanted.find_first_not_of(received) == std::string::npos) {
            return exception.pic;
        }
    }
    return typeCode < 23 ? picOfLaterVersions.at(static_cast<std::size_t>(typeCode)) : 0;
}

void expectQuality(const PositionQuality& quality, int pic) {
    static const int nucp[] = {0, 1, 2, 2, 2, 3, 4, 4, 5, 5, 6, 7, 7, 8, 9};
    static const int nic[] = {0, 1, 1, 2, 3, 4, 5, 6, 6, 6, 7, 8, 9, 10, 11};
    EXPECT_EQ(quality.pic, pic);
    EXPECT_EQ(quality.nucp, nucp[pic]);
    EXPECT_EQ(quality.nic, nic[pic]);
}

TEST(QualityIndicators, AreThoseOfTypeCodeVersionAndSupplements) {
    for (int typeCode = 0; typeCode < 256; ++typeCode) {
        SCOPED_TRACE(typeCode);
        const auto code = static_cast<u8>(typeCode);
        const PositionQualityV0 version0 = positionQualityV0(code);
        const int pic = typeCode < 23 ? picOfVersion0.at(code) : 0;
        expectQuality(version0, pic);
        EXPECT_EQ(version0.nacp, version0.nic) << "the accuracy that goes with the integrity";
        EXPECT_EQ(version0.sil, pic == 0 ? 0 : 2);
        for (int i = 0; i < 27; ++i) {
            const auto state = [](int value) { return static_cast<Supplement>(value % 3); };
            static_assert(static_cast<Supplement>(1) == Supplement::Clear);
            static_assert(static_cast<Supplement>(2) == Supplement::Set);
            const Supplements supplements{state(i), state(i / 3), state(i / 9)};
            const std::string received = {"?aA"[i % 3], "?bB"[i / 3 % 3], "?cC"[i / 9]};
            SCOPED_TRACE(received);
            expectQuality(positionQualityV1(code, supplements),
                          picOf(exceptionsOfVersion1, typeCode, received));
            expectQuality(positionQualityV2(code, supplements),
                          picOf(exceptionsOfVersion2, typeCode, received));
        }
    }
}

} // namespace
} // namespace tolvarin::ondrel
