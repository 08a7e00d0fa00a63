#include "apps/terminal/console.h"
#include "apps/terminal/summaries.h"

#include "apps/decoded_lines.h"

#include <gtest/gtest.h>

#include <string>

namespace tolvarin::ondrel::client {

namespace {

TEST(DecodeSummary, CountsEveryReplyOnce) {
    DecodeSummary summary;
    for (const auto& line :
         {good, oneBitWrong, squitter("", 0x40621D), beyondRepair, std::string("00000000000000")}) {
        summary.count(decodedLast({line}), line != beyondRepair);
    }
    EXPECT_EQ(summary.text({7, 5}), "replies read                  5\n"
                                    "  decoded                     4   80.0 %\n"
                                    "    repaired                  1   20.0 %\n"
                                    "  refused                     1   20.0 %\n"
                                    "replies not shown             1   20.0 %\n"
                                    "decoded by format\n"
                                    "  DF-0                        1   20.0 %\n"
                                    "  DF-17                       3   60.0 %\n"
                                    "decoded by confidence\n"
                                    "  High                        3   60.0 %\n"
                                    "  Medium                      0    0.0 %\n"
                                    "  Low                         1   20.0 %\n"
                                    "  None                        0    0.0 %\n"
                                    "ADS-B payloads                3\n"
                                    "  not decoded                 1   33.3 %\n"
                                    "not readable                  7\n"
                                    "  not shown                   5");
}

TEST(ProgressBar, IsFullOnlyAtTheEnd) {
    const std::string tens(10, '#');
    EXPECT_EQ(progressText(0, 8), "[" + std::string(40, '.') + "]   0 %");
    EXPECT_EQ(progressText(2, 8), "[" + tens + std::string(30, '.') + "]  25 %");
    EXPECT_EQ(progressText(999999, 1000000).substr(39), "#.]  99 %");
    EXPECT_EQ(progressText(8, 8), "[" + tens + tens + tens + tens + "] 100 %");
    EXPECT_EQ(progressText(9, 8), progressText(8, 8)); // a file that grows meanwhile
}

} // namespace

} // namespace tolvarin::ondrel::client
