#include <ondrel/adsb_target_report.h>

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <cstdio>
#include <ctime>
#include <limits>
#include <random>
#include <string>

namespace tolvarin::ondrel {
namespace {

std::string latitude(double degrees) {
    ADSBTargetReport report;
    report.setPosition(degrees, 0);
    return report.latitudeString();
}

std::string longitude(double degrees) {
    ADSBTargetReport report;
    report.setPosition(0, degrees);
    return report.longitudeString();
}

/// A time as the page shows it, in its first row.
std::string shown(u64 time) {
    ADSBTargetReport report;
    report.setLastUpdate(time);
    const std::string page = report.toHtml("");
    const std::string before = "<td>0</td>\n        <td>";
    const std::size_t start = page.find(before) + before.size();
    return page.substr(start, page.find('<', start) - start);
}

/// Whether the C library can print the time: a time_t of 32 bits ends in 2038.
bool isPrintable(u64 time) {
    return time / 1000 <= static_cast<u64>(std::numeric_limits<std::time_t>::max());
}

/// "2023-11-14T22:13:20.123Z" by the C library, from milliseconds since 1970.
std::string printedTime(u64 time) {
    const auto seconds = static_cast<std::time_t>(time / 1000);
    std::tm fields{};
    gmtime_r(&seconds, &fields);
    std::array<char, 64> text{};
    std::snprintf(text.data(), text.size(), "%d-%02d-%02dT%02d:%02d:%02d.%03dZ",
                  fields.tm_year + 1900, fields.tm_mon + 1, fields.tm_mday, fields.tm_hour,
                  fields.tm_min, fields.tm_sec, static_cast<int>(time % 1000));
    return text.data();
}

TEST(ReportText, WritesAngles) {
    const std::pair<double, const char*> latitudes[] = {
        {52.5, "523000N"},
        {-33.8688, "335208S"},
        {10.1, "100560N"},
        {1.99999, "015960N"},
        {0.0, "000000S"},
        {-0.0, "000000S"},
        {90.0, "900000N"},
        {-90.0, "900000S"},
        {5e-324, "000000N"},
        {122.25, "1221500N"},
        {2147483647.0, "21474836470000N"},
        {2147483648.0, "-------"},
        {1e300, "-------"},
        {std::nan(""), "-------"},
        {-std::numeric_limits<double>::infinity(), "-------"},
    };
    for (const auto& [degrees, text] : latitudes) {
        EXPECT_EQ(latitude(degrees), text) << degrees;
    }
    EXPECT_EQ(longitude(116.3972), "1162350E");
    EXPECT_EQ(longitude(-4.25), "0041500W");
    EXPECT_EQ(longitude(-180.0), "1800000W");
    EXPECT_EQ(longitude(std::nan("")), "--------");
    ADSBTargetReport report;
    EXPECT_EQ(report.positionString(), "000000S0000000W");
    report.setPosition(52.5, -4.25);
    EXPECT_EQ(report.positionString(), "523000N0041500W");
}

// Every second of arc, the double before it, and an angle behind it.
TEST(ReportText, WritesAnglesToTheNearestSecond) {
    const auto check = [](double degrees) {
        const std::string text = longitude(degrees);
        ASSERT_EQ(text.size(), 8U) << degrees;
        const int minutes = std::stoi(text.substr(3, 2));
        const int seconds = std::stoi(text.substr(5, 2));
        const double written = std::stoi(text.substr(0, 3)) + minutes / 60.0 + seconds / 3600.0;
        ASSERT_NEAR(written, std::fabs(degrees), 0.5000001 / 3600) << text;
        ASSERT_TRUE(minutes < 60 && seconds <= 60) << text;
        ASSERT_EQ(text.back(), degrees > 0 ? 'E' : 'W') << degrees;
        if (std::fabs(degrees) < 100) {
            ASSERT_EQ(latitude(degrees), text.substr(1, 6) + (degrees > 0 ? 'N' : 'S'));
        }
    };
    for (int seconds = 1; seconds < 180 * 3600; ++seconds) {
        const double degrees = seconds / 3600.0;
        for (const double angle : {degrees, std::nextafter(degrees, 0), degrees + 0.0001}) {
            check(seconds % 2 == 0 ? angle : -angle);
        }
    }
}

TEST(ReportText, WritesTimes) {
    const std::pair<u64, const char*> times[] = {
        {0, ""},
        {1, "1970-01-01T00:00:00.001Z"},
        {1000, "1970-01-01T00:00:01.000Z"},
        {86399999, "1970-01-01T23:59:59.999Z"},
        {86400000, "1970-01-02T00:00:00.000Z"},
        {951782400000, "2000-02-29T00:00:00.000Z"},
        {1700000000123, "2023-11-14T22:13:20.123Z"},
        {253402300800000, "10000-01-01T00:00:00.000Z"},
        {~u64{0}, "584556019-04-03T14:25:51.615Z"},
    };
    for (const auto& [time, text] : times) {
        EXPECT_EQ(shown(time), text);
    }
}

TEST(ReportText, WritesTimesLikeTheCLibrary) {
    constexpr u64 day = 86400000;
    for (u64 time = day - 1; time < 161000 * day && isPrintable(time + 1);
         time += 17 * day) { // first and last millisecond of days until 2410
        ASSERT_EQ(shown(time), printedTime(time));
        ASSERT_EQ(shown(time + 1), printedTime(time + 1));
    }
    std::mt19937_64 random(1);
    for (int i = 0; i < 3000; ++i) {
        const u64 time = random() >> random() % 40 | 1;
        if (isPrintable(time)) {
            ASSERT_EQ(shown(time), printedTime(time));
        }
    }
}

TEST(ReportText, WritesAddressesAndSquawks) {
    ADSBTargetReport report;
    EXPECT_EQ(report.icaoAddressString(), "");
    EXPECT_EQ(report.squawkString(), "0000");
    const std::pair<u32, const char*> addresses[] = {
        {0, "    00"},        {0xAB, "    AB"},      {0x1234, "  1234"},     {0x4840D6, "4840D6"},
        {0xFFFFFF, "FFFFFF"}, {0x1234567, "123456"}, {0xFEDCBA98, "FEDCBA"},
    };
    for (const auto& [address, text] : addresses) {
        report.setIcaoAddress(address);
        report.setIcaoAddressValid(true);
        EXPECT_EQ(report.icaoAddressString(), text);
    }
    report.setIcaoAddressValid(false);
    EXPECT_EQ(report.icaoAddressString(), "");
    for (const auto& [squawk, text] :
         {std::pair(8U, "0010"), {0xFFFU, "7777"}, {0x1000U, "10000"}, {~0U, "37777777777"}}) {
        report.setSquawk(squawk);
        EXPECT_EQ(report.squawkString(), text);
    }
}

} // namespace
} // namespace tolvarin::ondrel
