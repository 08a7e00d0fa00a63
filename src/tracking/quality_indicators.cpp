// Quality of a position by the type code of its message. The tables follow the type codes and NIC
// supplements of RTCA DO-260, DO-260A and DO-260B, one table for each version.

#include "quality_indicators.h"

#include <algorithm>
#include <array>

namespace tolvarin::ondrel {

namespace {

// Conditions of a row. A supplement that was never received is neither set nor clear, so it leads
// to a row that does not ask for it, which has the lower quality, or to no row.

using Condition = bool (*)(const Supplements&);

constexpr bool always(const Supplements& /*unused*/) {
    return true;
}
constexpr bool aSet(const Supplements& s) {
    return s.a == Supplement::Set;
}
constexpr bool aClear(const Supplements& s) {
    return s.a == Supplement::Clear;
}
constexpr bool bSet(const Supplements& s) {
    return s.b == Supplement::Set;
}
constexpr bool bClear(const Supplements& s) {
    return s.b == Supplement::Clear;
}
constexpr bool bSetAClear(const Supplements& s) {
    return bSet(s) && aClear(s);
}
constexpr bool aSetCSet(const Supplements& s) {
    return aSet(s) && s.c == Supplement::Set;
}
constexpr bool aSetCClear(const Supplements& s) {
    return aSet(s) && s.c == Supplement::Clear;
}
constexpr bool aClearCSet(const Supplements& s) {
    return aClear(s) && s.c == Supplement::Set;
}

/// The first row of a type code whose condition holds applies.
template <class Quality>
struct Row {
    u8 typeCode;
    Condition condition;
    Quality quality;
};

template <class Quality, std::size_t Size>
Quality find(const std::array<Row<Quality>, Size>& rows, u8 typeCode,
             const Supplements& supplements) {
    const auto row = std::find_if(rows.begin(), rows.end(), [&](const Row<Quality>& candidate) {
        return candidate.typeCode == typeCode && candidate.condition(supplements);
    });
    return row != rows.end() ? row->quality : Quality{};
}

// The columns are categories of one and the same containment radius. NUCp (0 to 9) is the scale of
// version 0, NIC (0 to 11) that of the later versions, PIC (0 to 14) one that all versions share.
// In all of them a larger number is a smaller radius, and 0 is unknown.
//
// Type codes 5 to 8 belong to surface positions, 9 to 17 to airborne ones with a barometric
// altitude, 20 and 21 to those with a GNSS height. 18 and 22 say that the radius is unknown, so
// they have no row.

// clang-format off

// Version 0 sends no supplements.
constexpr std::array<Row<PositionQualityV0>, 14> rowsV0 = {{
    // type code     NUCp NIC PIC   NACp SIL
    { 5, always, {{9, 11, 14}, 11, 2}},
    { 6, always, {{8, 10, 13}, 10, 2}},
    { 7, always, {{7,  8, 11},  8, 2}},
    { 9, always, {{9, 11, 14}, 11, 2}},
    {10, always, {{8, 10, 13}, 10, 2}},
    {11, always, {{7,  8, 11},  8, 2}},
    {12, always, {{6,  7, 10},  7, 2}},
    {13, always, {{5,  6,  8},  6, 2}},
    {14, always, {{4,  5,  6},  5, 2}},
    {15, always, {{3,  4,  5},  4, 2}},
    {16, always, {{2,  1,  2},  1, 2}},
    {17, always, {{1,  1,  1},  1, 2}},
    {20, always, {{9, 11, 14}, 11, 2}},
    {21, always, {{8, 10, 13}, 10, 2}},
}};

// Version 1: supplement A divides the codes whose range of radii is wide.
constexpr std::array<Row<PositionQuality>, 19> rowsV1 = {{
    // type code, condition, NUCp NIC PIC
    { 5, always, {9, 11, 14}},
    { 6, always, {8, 10, 13}},
    { 7, aSet,   {7,  9, 12}},
    { 7, always, {7,  8, 11}},
    { 8, aSet,   {6,  7, 10}},
    { 9, always, {9, 11, 14}},
    {10, always, {8, 10, 13}},
    {11, aSet,   {7,  9, 12}},
    {11, always, {7,  8, 11}},
    {12, always, {6,  7, 10}},
    {13, aClear, {5,  6,  8}},
    {13, always, {4,  6,  7}},
    {14, always, {4,  5,  6}},
    {15, always, {3,  4,  5}},
    {16, aSet,   {2,  3,  4}},
    {16, always, {2,  2,  3}},
    {17, always, {1,  1,  1}},
    {20, always, {9, 11, 14}},
    {21, always, {8, 10, 13}},
}};

// Version 2: airborne codes read B, which comes with each airborne position, and code 13 reads A
// too. Surface codes read A and C. No message that the tracker reads has C, so the rows that need
// it apply to direct calls only.
constexpr std::array<Row<PositionQuality>, 22> rowsV2 = {{
    // type code, condition, NUCp NIC PIC
    { 5, always,     {9, 11, 14}},
    { 6, always,     {8, 10, 13}},
    { 7, aSet,       {7,  9, 12}},
    { 7, always,     {7,  8, 11}},
    { 8, aSetCSet,   {6,  7, 10}},
    { 8, aSetCClear, {5,  6,  9}},
    { 8, aClearCSet, {4,  6,  7}},
    { 9, always,     {9, 11, 14}},
    {10, always,     {8, 10, 13}},
    {11, bSet,       {7,  9, 12}},
    {11, always,     {7,  8, 11}},
    {12, always,     {6,  7, 10}},
    {13, bClear,     {5,  6,  8}},
    {13, bSetAClear, {5,  6,  9}},
    {13, always,     {4,  6,  7}},
    {14, always,     {4,  5,  6}},
    {15, always,     {3,  4,  5}},
    {16, bSet,       {2,  3,  4}},
    {16, always,     {2,  2,  3}},
    {17, always,     {1,  1,  1}},
    {20, always,     {9, 11, 14}},
    {21, always,     {8, 10, 13}},
}};

// clang-format on

} // namespace

PositionQualityV0 positionQualityV0(u8 typeCode) {
    return find(rowsV0, typeCode, {});
}

PositionQuality positionQualityV1(u8 typeCode, const Supplements& supplements) {
    return find(rowsV1, typeCode, supplements);
}

PositionQuality positionQualityV2(u8 typeCode, const Supplements& supplements) {
    return find(rowsV2, typeCode, supplements);
}

} // namespace tolvarin::ondrel
