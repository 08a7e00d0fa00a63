#include "apps/pages/style_sheets.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <functional>
#include <map>
#include <string>
#include <string_view>

namespace tolvarin::ondrel::client {

namespace {

using Colours = std::map<std::string, std::string, std::less<>>; ///< "ink" is "16202c"

/// The luminance of the Web Content Accessibility Guidelines (WCAG 2.1), 0 to 1.
double luminance(const std::string& colour) {
    constexpr std::array<double, 3> weights = {0.2126, 0.7152, 0.0722}; // red, green, blue
    double sum = 0;
    for (std::size_t i = 0; i < weights.size(); ++i) {
        const double part = std::stoi(colour.substr(2 * i, 2), nullptr, 16) / 255.0;
        sum +=
            weights[i] * (part <= 0.04045 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4));
    }
    return sum;
}

/// 1 to 21.
double contrast(const std::string& one, const std::string& other) {
    const double first = luminance(one);
    const double second = luminance(other);
    return (std::max(first, second) + 0.05) / (std::min(first, second) + 0.05);
}

/// Adds the colours that a style sheet defines ("--ink: #16202c;") for light or dark screens.
void addColours(std::string_view sheet, bool dark, Colours& colours) {
    constexpr std::string_view separator = ": #";
    const std::size_t darkPart = std::min(sheet.find("prefers-color-scheme: dark"), sheet.size());
    sheet = dark ? sheet.substr(darkPart) : sheet.substr(0, darkPart);
    for (std::size_t i = sheet.find("--"); i != std::string_view::npos;
         i = sheet.find("--", i + 1)) {
        const std::size_t end = std::min(sheet.find_first_of(":)", i), sheet.size());
        if (sheet.substr(end, separator.size()) == separator) {
            colours[std::string(sheet.substr(i + 2, end - i - 2))] =
                sheet.substr(end + separator.size(), 6);
        }
    }
}

Colours coloursOf(bool dark) {
    Colours colours;
    addColours(commonStyle, dark, colours);
    addColours(mapStyle, dark, colours);
    return colours;
}

TEST(Contrast, IsThatOfTheGuidelines) {
    EXPECT_DOUBLE_EQ(contrast("000000", "ffffff"), 21);
    EXPECT_NEAR(contrast("777777", "ffffff"), 4.48, 0.005);
    EXPECT_NEAR(contrast("ffffff", "0000ff"), 8.59, 0.005);
}

TEST(Contrast, OfTextIsEnoughOnAllGrounds) {
    for (const bool dark : {false, true}) {
        const Colours colours = coloursOf(dark);
        for (const char* text : {"ink", "quiet", "link", "alarm"}) {
            for (const char* ground : {"ground", "paper", "hover", "alarm-ground", "sea"}) {
                EXPECT_GE(contrast(colours.at(text), colours.at(ground)), 4.5)
                    << text << " on " << ground << (dark ? ", dark" : "");
            }
        }
    }
}

TEST(Contrast, OfTracksAndMarkersIsEnough) {
    for (const bool dark : {false, true}) {
        const Colours colours = coloursOf(dark);
        for (const char* band : {"b0", "b1", "b2", "b3", "b4", "b5"}) {
            for (const char* ground : {"paper", "sea"}) {
                EXPECT_GE(contrast(colours.at(band), colours.at(ground)), 3)
                    << band << " on " << ground << (dark ? ", dark" : "");
            }
        }
    }
}

/// Rules that do not name their colours by variables would escape the tests above.
TEST(Contrast, IsComputedForAllColours) {
    for (const std::string_view sheet : {commonStyle, mapStyle, indexStyle, aircraftStyle}) {
        for (std::size_t i = sheet.find('#'); i != std::string_view::npos;
             i = sheet.find('#', i + 1)) {
            const std::size_t name = sheet.find_last_of(" ;{", i - 2) + 1;
            EXPECT_EQ(sheet.substr(name, 2), "--") << sheet.substr(name, 40);
        }
    }
}

} // namespace

} // namespace tolvarin::ondrel::client
